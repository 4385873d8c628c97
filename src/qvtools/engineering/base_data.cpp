#include "qvtools/engineering/base_data.h"

#include <cstring>
#include <string>

#include "qvtools/platform/host.h"
#include "qvtools/services/captions.h"
#include "qvtools/services/files.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/system/filesystem.h"
#include "qvtools/system/textfile.h"
#include "qvtools/text/gbk_text.h"

namespace {

constexpr int kLine = 290;
constexpr std::size_t kNameColumn = 7;  // behind "##Name" and a blank

/// Writes the texts one after another; returns whether the stream is without error.
int put(std::FILE* fp, std::initializer_list<const char*> texts) {
  for (const char* text : texts) std::fputs(text, fp);
  return std::ferror(fp) ? 0 : 1;
}

/// The next line of any length, with "\n" at its end if it had one; false at the end of the file.
bool next_line(std::FILE* fp, std::string& line) {
  char piece[kLine];
  line.clear();
  while (qv::read_line(piece, kLine, fp)) {
    line += piece;
    if (line.empty() || line.back() == '\n') return true;
  }
  return !line.empty();
}

}  // namespace

CQvBaseData::CQvBaseData() {
  qv::detail::unless_out_of_memory([this] {
    m_strFile = "NONAME";
    m_strDxf[0] = "NONAME.DXF";
    m_strRtf[0] = "NONAME.RTF";
    m_strQuery[0] = qv::captions::kQueryContent;
  });
}

CQvBaseData::~CQvBaseData() = default;

int CQvBaseData::SetFileName(const char* path) {
  return qv::detail::unless_out_of_memory(
      [&] { return SetFileName(CString(std::string(qv::split_path(path).base))), 1; }, 0);
}

int CQvBaseData::SetBiaoShi(std::FILE* fp, const char* mark) {
  return put(fp, {"##", mark, "\n"});
}

int CQvBaseData::CheckBiaoShi(std::FILE* fp, const char* mark) {
  char line[kLine];
  if (qv::read_line(line, kLine, fp) && std::strstr(line, mark)) return 1;
  qv::CurrentHost().ShowBox(qv::captions::kWrongContent, qv::BoxKind::Plain);
  return 0;
}

int CQvBaseData::SaveData(std::FILE* fp) {
  int good = put(fp, {"##Name ", m_strName, "\n"});
  for (int i = 0; i < queries(); ++i) {
    good = put(fp, {"##ChaXun ", m_strQuery[i], " ", m_strDxf[i], " ", m_strRtf[i], "\n"});
  }
  return good && std::fflush(fp) == 0;
}

int CQvBaseData::LoadData(std::FILE* fp) {
  const auto load = [&] {
    CString name;
    std::rewind(fp);
    for (std::string line; next_line(fp, line);) {
      if (line.find("##Name") == std::string::npos) continue;
      if (line.back() == '\n') line.pop_back();
      if (line.size() > kNameColumn) name = CString(line.substr(kNameColumn));
      break;
    }
    if (std::ferror(fp)) return tell_error(301, "Read Error in Base Data !"), 0;
    std::swap(m_strName, name);
    return 1;
  };
  return qv::detail::unless_out_of_memory(load, 0);
}

int CQvBaseData::Remove_Result_Files() {
  for (int i = 0; i < queries(); ++i) {
    for (const CString* name : {&m_strDxf[i], &m_strRtf[i]}) {
      if (!name->IsEmpty()) RemoveFile_InWorkPath(*name);
    }
  }
  return 1;
}
