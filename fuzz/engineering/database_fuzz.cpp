// Any bytes as a database: opened, read and asked; what can be written again comes back the same.

#include "../harness.h"
#include "../memory_file.h"
#include "qvtools/engineering/database_file.h"

namespace {

using qvfuzz::require;
using Items = std::vector<std::pair<CString, std::string>>;

constexpr int kMost = 16;
constexpr std::size_t kShortEnough = 400;

/// The items of a segment, as far as they are looked at.
Items items_of(CDataBaseFile& file, const CString& segment) {
  Items items;
  require(file.Read_Segment("%s", segment.str().c_str()) == 1);
  for (int i = 0; i < file.Get_ItemCount() && i < kMost; ++i) {
    const CString key = file.Get_ItemKey(i);
    char value[CDataBaseFile::kValueSize];
    const bool found = file.Get_Item(key, value);
    require(found == (file.Get_Item(key) != nullptr));
    if (found) items.emplace_back(key, value);
  }
  return items;
}

/// Whether an item is one that the writer could have made.
bool is_writable(const std::pair<CString, std::string>& item) {
  const std::string& key = item.first.str();
  const std::string& value = item.second;
  return key.size() < kShortEnough && key.find('\0') == std::string::npos && value.size() < kShortEnough &&
         value.ends_with('\n') && value.find('\r') == std::string::npos;
}

/// The segments that can be opened in a new database, with the items that were taken.
std::vector<std::pair<CString, Items>> write_again(CDataBaseFile& from, CDataBaseFile& to) {
  std::vector<std::pair<CString, Items>> written;
  for (int i = 0; i < from.Get_SegmentCount() && i < kMost; ++i) {
    const CString name = from.Get_SegmentName(i);
    if (name.str().find('\0') != std::string::npos) continue;
    Items items = items_of(from, name);
    std::erase_if(items, [](const auto& item) { return !is_writable(item); });
    to.Begin_Segment("%s", name.str().c_str());
    bool good = true;
    for (const auto& [key, value] : items) good = to.Write_Item1(key, value.c_str()) && good;
    to.End_Segment();
    if (good) written.emplace_back(name, items);
  }
  return written;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MemoryFile memory(data, size);
  CDataBaseFile file;
  if (!memory.good() || !file.Open_File(memory.path().c_str(), CDataBaseFile::IO_READ)) return 0;
  file.Check_FileVersion("Version");
  const std::string copy = qvfuzz::scratch().path("again");
  CDataBaseFile again;
  require(again.Open_File(copy.c_str(), CDataBaseFile::IO_WRITE) == 1);
  const auto written = write_again(file, again);
  require(again.Close_File() == 1);
  require(again.Open_File(copy.c_str(), CDataBaseFile::IO_READ) == 1);
  for (const auto& [name, items] : written) {
    if (!items.empty()) require(items_of(again, name) == items);
  }
  return 0;
}
