// Databases and fields of any bytes: opened, read and asked. The first byte chooses which.

#include "../memory_file.h"
#include "data/database_file.h"
#include "data/field.h"
#include "data/field_locator.h"
#include "platform/textfile.h"

namespace {

void read_database(const std::string& path) {
  CDataBaseFile file;
  if (!file.Open_File(path.c_str(), CDataBaseFile::IO_READ)) return;
  file.Check_FileVersion("Version");
  for (int i = 0; i < file.Get_SegmentCount() && i < 16; ++i) {
    const CString name = file.Get_SegmentName(i);
    file.Read_Segment("%s", name.str().c_str());
    char value[CDataBaseFile::kValueSize];
    for (int k = 0; k < file.Get_ItemCount() && k < 16; ++k) file.Get_Item(file.Get_ItemKey(k), value);
  }
}

void read_field(const std::string& path) {
  CChang field;
  std::FILE* const file = qv::open_text(path.c_str(), "rt");
  field.LoadData(file);
  std::fclose(file);
  const qv::FieldLocator locator(field);
  for (const float at : {0.0F, 0.5F, 3.0F, -1e9F}) {
    const float a = locator.Value(at, at), b = field.Get_Value(at, at);
    if (!(a == b) && (a == a || b == b)) __builtin_trap();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const MemoryFile file(data + 1, size - 1);
  if (!file.good()) return 0;
  data[0] & 1 ? read_field(file.path()) : read_database(file.path());
  return 0;
}
