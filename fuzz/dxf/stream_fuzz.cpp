// Any bytes as a drawing file that is read entity by entity, and as a host's own stream of records.

#include <cstddef>
#include <cstdint>

#include "qvtools/dxf/model/document.h"
#include "qvtools/platform/console/console_host.h"
#include "scratch_file.h"

namespace {

using qvfuzz::require;

/// Every entity takes a pair of at least two bytes, so there is an end.
void read_entities(DXF& dxf, std::size_t size) {
  std::size_t n = 0;
  while (dxf.Read_One_Entity() != ACAD_TYPE_END) require(++n <= size);
}

void read_blocks(DXF& dxf, std::size_t size) {
  if (!dxf.Find_Start_Blocks()) return;
  std::size_t n = 0;
  while (dxf.Read_One_Block()) require(++n <= size);
}

void read_host_stream(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  std::FILE* const file = fmemopen(const_cast<std::uint8_t*>(data), size, "rb");
  ACAD_BLOCK block;
  std::size_t n = 0;
  for (int type = 0; type != ACAD_TYPE_END; require(++n <= size + 1)) type = block.Read_One_Entity(file);
  std::rewind(file);
  block.Read(file);
  qv::WorkingRecords records;
  for (int type = 0; type < ACAD_TYPE_NONE; ++type) {
    std::rewind(file);
    records.Of(static_cast<ACAD_Entity_Type>(type))->Read(file);
  }
  std::fclose(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static qvfuzz::QuietHost host;
  qv::SetHost(&host);
  QV_ERROR_CODE = 0;
  DXF dxf;
  dxf.Open(qvfuzz::scratch_file(data, size).c_str());
  read_entities(dxf, size);
  read_blocks(dxf, size);
  if (dxf.Find_Start_Entities()) read_entities(dxf, size);
  dxf.Find_Start_Tables();
  for (std::size_t n = 0; dxf.Read_One_Table(); ++n) require(n <= size);
  dxf.Close();
  read_host_stream(data, size);
  return 0;
}
