#include <benchmark/benchmark.h>

#include <memory>

#include "baseline.h"
#include "plain_database.h"
#include "qvtools/engineering/database_file.h"
#include "qvtools/system/saved_file.h"
#include "support/temporary_directory.h"

namespace {

using qvbench::Format;
using qvbench::kItems;
using qvbench::kSegments;
using qvbench::Values;

void name_arguments(benchmark::internal::Benchmark* bench) {
  bench->ArgName("values")->DenseRange(0, 2)->Iterations(1)->Unit(benchmark::kMillisecond);
}

/// Calls write(segment, file) for each segment between its beginning and its end.
template <class Write>
void write_database(const char* path, const Write& write) {
  CDataBaseFile file;
  file.Open_File(path, CDataBaseFile::IO_WRITE);
  for (int segment = 0; segment < kSegments; ++segment) {
    file.Begin_Segment("Item%d", segment);
    write(file, segment);
  }
  file.Close_File();
}

void write_at_once(const char* path, Values values) {
  write_database(path, [values](CDataBaseFile& file, int segment) {
    qvbench::for_each_item(values, segment, [&](const char* key, const Format& format, auto... value) {
      file.Write_Item(key, format.value, value...);
    });
    file.End_Segment();
  });
}

void write_kept(const char* path, Values values) {
  write_database(path, [values](CDataBaseFile& file, int segment) {
    qvbench::for_each_item(values, segment, [&](const char* key, const Format& format, auto... value) {
      file.Add_Item(key, format.value, value...);
    });
    file.Write_Segment();
  });
}

/// Bytes to a file, in blocks of 256 KB: what the disk itself takes.
void write_bytes(const char* path, const std::string& bytes) {
  constexpr std::size_t kBlock = 1 << 18;
  std::FILE* const file = std::fopen(path, "wb");
  for (std::size_t at = 0; at < bytes.size(); at += kBlock) {
    std::fwrite(bytes.data() + at, 1, std::min(kBlock, bytes.size() - at), file);
  }
  std::fclose(file);
}

// A database of 100,000 segments of 12 items, against one fprintf an item for the same bytes: items written at once,
// and items kept for their segment. "disk" is the time of the bytes alone, as a share of the first. Argument: one whole
// number an item, five of them, or the record of a beam.
void WriteDatabase(benchmark::State& state) {
  qv::SavedFile::SetFlushToDisk(false);  // nor do the baselines
  const qvtest::TemporaryDirectory directory;
  const auto values = static_cast<Values>(state.range(0));
  const std::string own = directory.path("own"), kept = directory.path("kept"), plain = directory.path("plain");
  write_at_once(own.c_str(), values);
  const std::string bytes = directory.read("own");
  for (auto _ : state) {
    const auto [once, segmentwise, baseline, disk] =
        qvbench::shortest([&] { write_at_once(own.c_str(), values); }, [&] { write_kept(kept.c_str(), values); },
                          [&] { qvbench::write_plain_database(plain.c_str(), values); },
                          [&] { write_bytes(directory.path("bytes").c_str(), bytes); });
    state.counters["ns/item"] = once / kSegments / kItems * 1e9;
    state.counters["ratio"] = baseline / once;
    state.counters["kept"] = baseline / segmentwise;
    state.counters["disk"] = disk / once;
    state.counters["least"] = 5;
  }
  if (bytes != directory.read("plain") || bytes != directory.read("kept"))
    state.SkipWithError("the baseline writes other bytes");
}
BENCHMARK(WriteDatabase)->Apply(name_arguments);

/// Reads every item by its key and returns the bytes of all values.
std::size_t read_every_item(const char* path, Values values) {
  CDataBaseFile file;
  file.Open_File(path, CDataBaseFile::IO_READ);
  std::size_t bytes = 0;
  for (int segment = 0; segment < kSegments; ++segment) {
    file.Read_Segment("Item%d", segment);
    char value[CDataBaseFile::kValueSize];
    qvbench::for_each_item(values, 0, [&](const char* key, const Format&, auto...) {
      if (file.Get_Item(key, value)) bytes += std::strlen(value) - 1;
    });
  }
  return bytes;
}

// Every item read back by its key, against fgets and sscanf over the file.
void ReadDatabase(benchmark::State& state) {
  const qvtest::TemporaryDirectory directory;
  const auto values = static_cast<Values>(state.range(0));
  const std::string path = directory.path("own");
  write_at_once(path.c_str(), values);
  for (auto _ : state) {
    std::size_t ownBytes = 0, plainBytes = 0;
    const auto [own, plain] = qvbench::shortest(
        [&] { ownBytes = read_every_item(path.c_str(), values); },
        [&] {
          plainBytes = 0;
          qvbench::read_plain_database(path.c_str(),
                                       [&](const char*, const char* value) { plainBytes += std::strlen(value); });
        });
    state.counters["ns/item"] = own / kSegments / kItems * 1e9;
    state.counters["ratio"] = plain / own;
    state.counters["least"] = 3;
    if (ownBytes != plainBytes) state.SkipWithError("values were lost");
  }
}
BENCHMARK(ReadDatabase)->Apply(name_arguments);

// A database of 100,000 segments opened, one item looked up, closed; and a look-up in the open database, segments in
// no order.
void LookUpInDatabase(benchmark::State& state) {
  const qvtest::TemporaryDirectory directory;
  const std::string path = directory.path("own");
  write_at_once(path.c_str(), Values::Beam);
  char value[CDataBaseFile::kValueSize];
  for (auto _ : state) {
    CDataBaseFile file;
    const double open = qvbench::shortest([&] {
      file.Open_File(path.c_str(), CDataBaseFile::IO_READ);
      file.Read_Segment("Item77777");
      file.Get_Item("Top", value);
    })[0];
    constexpr int kLookUps = 10000;
    int found = 0;
    const double one = qvbench::shortest([&] {
      for (unsigned i = 0; i < kLookUps; ++i) {
        file.Read_Segment("Item%d", static_cast<int>(i * 2654435761U % kSegments));
        found += file.Get_Item("Top", value);
      }
    })[0];
    state.counters["open ms"] = open * 1e3;
    state.counters["look-up us"] = one / kLookUps * 1e6;
    if (found != 5 * kLookUps) state.SkipWithError("items were lost");
  }
}
BENCHMARK(LookUpInDatabase)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
