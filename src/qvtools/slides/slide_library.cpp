#include "qvtools/slides/slide_library.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "qvtools/system/textfile.h"
#include "qvtools/text/gbk_text.h"

// Format: 32 bytes of identification; entries of a name (32 bytes) and an offset (32-bit, little-endian), an empty one
// last; then the slides.

namespace {

constexpr char kIdentification[] = "AutoCAD Slide Library 1.0\r\n\x1A";
constexpr std::size_t kCompared = 21;
constexpr std::uint32_t kHeaderSize = 32;
constexpr std::uint32_t kEntrySize = 36;

/// Whether the stream could be set there. Offsets above 2 GB are beyond a stream on some systems.
bool seek_to(std::FILE* file, std::uint32_t offset) {
  const auto at = static_cast<long>(offset);
  return at >= 0 && std::fseek(file, at, SEEK_SET) == 0;
}

}  // namespace

CWxSlideLib::~CWxSlideLib() {
  close();
}

void CWxSlideLib::close() {
  if (m_fp) std::fclose(m_fp);
  m_fp = nullptr;
  m_nCount = 0;
  m_Directory.clear();
}

int CWxSlideLib::Open_SLB(const char* path) {
  close();
  m_fp = qv::open_text(path, "rb");
  if (m_fp && read_directory()) return 1;
  close();
  return 0;
}

bool CWxSlideLib::read_directory() {
  char header[kHeaderSize];
  if (std::fread(header, 1, sizeof header, m_fp) != sizeof header) return false;
  if (std::memcmp(header, kIdentification, kCompared) != 0) return false;
  std::fseek(m_fp, 0, SEEK_END);
  const long end = std::ftell(m_fp);
  const auto fileSize = static_cast<std::uint32_t>(std::clamp<long long>(end, 0, UINT32_MAX));
  std::fseek(m_fp, kHeaderSize, SEEK_SET);

  std::uint32_t count = 1;
  for (std::uint32_t i = 0; i < count; ++i) {
    struct {
      char name[32];
      std::uint32_t offset;
    } raw;
    static_assert(sizeof raw == kEntrySize);
    if (std::fread(&raw, 1, sizeof raw, m_fp) != sizeof raw) break;
    const std::uint32_t offset = std::min(raw.offset, fileSize);
    // The directory ends where the first slide begins.
    if (i == 0 && offset > kHeaderSize + 2 * kEntrySize) count = (offset - kHeaderSize) / kEntrySize - 1;
    Entry entry{};
    std::memcpy(entry.m_szName, raw.name, sizeof raw.name);
    entry.m_nOffset = offset;
    m_Directory.push_back(entry);
  }
  for (std::size_t i = 0; i < m_Directory.size(); ++i) {
    const std::uint32_t next = i + 1 < m_Directory.size() ? m_Directory[i + 1].m_nOffset : fileSize;
    m_Directory[i].m_nLength = next > m_Directory[i].m_nOffset ? next - m_Directory[i].m_nOffset : 0;
  }
  m_nCount = static_cast<int>(m_Directory.size());
  return m_nCount > 0;
}

int CWxSlideLib::find(const char* name) const {
  const auto upper = [](const char* text) {
    std::string copy(text);
    qv::upper_case(copy.data());
    return copy;
  };
  const std::string wanted = upper(name);
  const auto found = std::find_if(m_Directory.begin(), m_Directory.end(),
                                  [&](const Entry& entry) { return upper(entry.m_szName) == wanted; });
  return found == m_Directory.end() ? -1 : static_cast<int>(found - m_Directory.begin());
}

int CWxSlideLib::Read_SLD(int index, CWxSlide* slide) {
  if (index < 0 || index >= m_nCount) return 0;
  return seek_to(m_fp, m_Directory[static_cast<std::size_t>(index)].m_nOffset) ? slide->Read_SLD(m_fp) : 0;
}

int CWxSlideLib::Pick_SLD(int index, const char* dir) {
  if (index < 0 || index >= m_nCount) return 0;
  const Entry& entry = m_Directory[static_cast<std::size_t>(index)];
  if (std::strpbrk(entry.m_szName, "/\\:") || *entry.m_szName == '\0') return 0;
  if (!seek_to(m_fp, entry.m_nOffset)) return 0;
  std::FILE* out = qv::open_text((std::string(dir) + entry.m_szName + ".SLD").c_str(), "wb");
  if (!out) return 1;
  char block[4096];
  for (std::size_t left = entry.m_nLength; left > 0;) {
    const std::size_t got = std::fread(block, 1, std::min(left, sizeof block), m_fp);
    if (got == 0) break;
    std::fwrite(block, 1, got, out);
    left -= got;
  }
  std::fclose(out);
  return 1;
}

int CWxSlideLib::SLB2SLD(const char* dir) {
  for (int i = 0; i < m_nCount; ++i) Pick_SLD(i, dir);
  return m_nCount > 0 ? 1 : 0;
}

int CWxSlideLib::Read_SLB_SLD(const CString& name, CWxSlide* slide) {
  const std::string& text = name.str();
  const std::size_t dot = text.rfind('.');
  if (dot == std::string::npos) return 0;
  if (!Open_SLB((text.substr(0, dot) + ".slb").c_str())) return 0;
  return Read_SLD(text.c_str() + dot + 1, slide);
}
