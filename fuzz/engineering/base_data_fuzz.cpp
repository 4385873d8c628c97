// Any bytes as a module's data file: its marker checked, its name loaded, saved behind a marker and loaded again.

#include "../harness.h"
#include "../memory_file.h"
#include "qvtools/engineering/base_data.h"
#include "qvtools/services/files.h"
#include "qvtools/system/textfile.h"

using qvfuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static qvfuzz::QuietHost host;
  qv::SetHost(&host);
  const MemoryFile memory(data, size);
  const MemoryFile copy(nullptr, 0);
  if (!memory.good()) return 0;
  CQvBaseData base;
  std::FILE* file = qv::open_text(memory.path().c_str(), "rt");
  while (base.CheckBiaoShi(file, "##")) {
  }
  require(base.LoadData(file) == 1);
  std::fclose(file);
  G_strWorkPath = qvfuzz::scratch().prefix().c_str();
  require(base.SetFileName(memory.path().c_str()) == 1 && base.Remove_Result_Files() == 1);
  file = qv::open_text(copy.path().c_str(), "wt");
  require(base.SetBiaoShi(file, "MARK") == 1 && base.SaveData(file) == 1);
  std::fclose(file);
  CQvBaseData again;
  file = qv::open_text(copy.path().c_str(), "rt");
  require(again.CheckBiaoShi(file, "##MARK") == 1);
  require(again.LoadData(file) == 1 && again.m_strName == base.m_strName);
  std::fclose(file);
  return 0;
}
