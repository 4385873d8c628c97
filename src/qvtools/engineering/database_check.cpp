#include <cstring>

#include "qvtools/engineering/database_file.h"
#include "qvtools/platform/host.h"
#include "qvtools/text/numbers.h"

namespace {

constexpr char kFile[] = "qvtest.dat";
constexpr int kSegments = 100;
constexpr const char* kKinds[] = {"Num_Liang", "Num_Zhu", "Num_Ban", "Num_Qiang"};
constexpr int kGroups = 3;

/// Calls f with the key and the value of each item of a segment.
void for_each_item(int segment, const auto& f) {
  for (int group = 1; group <= kGroups; ++group) {
    for (const char* kind : kKinds) {
      f(qv::FormattedText<32>("%d%s", group, kind).text,
        qv::FormattedText<32>("%d,%d,%d,%d,%d", segment, 1, 2, 3, 4).text);
    }
  }
}

bool write_file() {
  CDataBaseFile file;
  if (!file.Open_File(kFile, CDataBaseFile::IO_WRITE)) return false;
  file.Write_FileVersion(CDataBaseFile::kVersion);
  file.Begin_Segment("Control");
  for (const char* kind : kKinds) file.Add_Item(kind, "%d", kSegments);
  bool good = file.Write_Segment() != 0;
  for (int i = 0; i < kSegments; ++i) {
    good &= file.Write_Line("===========================%d=======", i) != 0;
    file.Begin_Segment("Item%d", i);
    for_each_item(i, [&](const char* key, const char* value) { good &= file.Write_Item(key, "%s", value) != 0; });
    file.End_Segment();
  }
  return file.Close_File() && good;
}

bool read_segment(CDataBaseFile& file, int segment) {
  bool good = file.Read_Segment("Item%d", segment) != 0;
  for_each_item(segment, [&](const char* key, const char* expected) {
    const char* const value = file.Get_Item(key);
    const std::size_t length = std::strlen(expected);
    good &= value && std::strncmp(value, expected, length) == 0 && std::strcmp(value + length, "\n") == 0;
  });
  return good;
}

/// What reading the file back shows.
const char* read_file() {
  CDataBaseFile file;
  bool good = file.Open_File(kFile, CDataBaseFile::IO_READ) != 0;
  if (good && !file.Check_FileVersion(CDataBaseFile::kVersion)) return "File Version Error !";
  for (int i = 0; i < kSegments; ++i) good = good && read_segment(file, i);
  return good ? "Read Ok" : "Read Error !";
}

void show(const char* text) {
  qv::CurrentHost().ShowBox(text, qv::BoxKind::Plain);
}

}  // namespace

void test_database() {
  const bool written = write_file();
  show(written ? "Write OK" : "Write Error !");
  if (written) show(read_file());
}
