#include "qvtools/slides/slide_library.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "qvtools/services/captions.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/system/saved_file.h"
#include "qvtools/system/textfile.h"
#include "qvtools/text/gbk_text.h"

// Format: 32 bytes of identification; entries of a name (32 bytes) and an offset (32-bit, little-endian), an empty one
// last; then the slides.

using qv::detail::unless_out_of_memory;

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

bool same_but_for_case(const char* a, const char* b) {
  const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
  for (;; ++a, ++b) {
    const bool pair = qv::char_length(a) == 2;  // a letter in its second byte is none
    if (pair ? std::strncmp(a, b, 2) != 0 : upper(*a) != upper(*b)) return false;
    if (*a == '\0') return true;
    a += pair;
    b += pair;
  }
}

/// Whether a file may have the name on every system: no separators or control characters, and none that Windows
/// reserves for devices, whatever follows a dot in it.
bool is_file_name(const char* name) {
  const std::string_view stem = std::string_view(name).substr(0, std::strcspn(name, ". "));
  const auto is = [&](std::string_view device) {
    return stem.size() == device.size() && std::equal(stem.begin(), stem.end(), device.begin(), [](char a, char d) {
             return d == '9' ? a >= '1' && a <= '9' : (a & ~0x20) == d;
           });
  };
  for (const char* const device : {"CON", "PRN", "AUX", "NUL", "COM9", "LPT9"})
    if (is(device)) return false;
  return *name && std::none_of(name, name + std::strlen(name),
                               [](char c) { return static_cast<unsigned char>(c) < 32 || std::strchr("/\\:", c); });
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
  const bool read = m_fp && unless_out_of_memory([this] { return read_directory(); }, false);
  const bool failed = m_fp && std::ferror(m_fp);
  if (read && !failed) return 1;
  if (failed) tell_error(301, "Read Error in Slide Library !");
  close();
  return 0;
}

bool CWxSlideLib::read_directory() {
  char header[kHeaderSize];
  if (std::fread(header, 1, sizeof header, m_fp) != sizeof header) return false;
  if (std::memcmp(header, kIdentification, kCompared) != 0) return false;
  std::fseek(m_fp, 0, SEEK_END);
  const long end = std::ftell(m_fp);
  // A position that the system cannot tell lies beyond what it can tell.
  const auto fileSize = static_cast<std::uint32_t>(std::clamp<long long>(end < 0 ? UINT32_MAX : end, 0, UINT32_MAX));
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
  const auto found = std::find_if(m_Directory.begin(), m_Directory.end(),
                                  [name](const Entry& entry) { return same_but_for_case(entry.m_szName, name); });
  return found == m_Directory.end() ? -1 : static_cast<int>(found - m_Directory.begin());
}

int CWxSlideLib::Read_SLD(int index, CWxSlide* slide) {
  if (index < 0 || index >= m_nCount) return 0;
  return seek_to(m_fp, m_Directory[static_cast<std::size_t>(index)].m_nOffset) ? slide->Read_SLD(m_fp) : 0;
}

int CWxSlideLib::Pick_SLD(int index, const char* dir) {
  if (index < 0 || index >= m_nCount) return 0;
  const Entry& entry = m_Directory[static_cast<std::size_t>(index)];
  if (!is_file_name(entry.m_szName) || !seek_to(m_fp, entry.m_nOffset)) return 0;
  const auto extract = [&] {
    if (copy_slide(entry, std::string(dir) + entry.m_szName + ".SLD")) return true;
    tell_error1(301, qv::captions::kCannotMakeFile, entry.m_szName);
    return true;
  };
  unless_out_of_memory(extract, false);
  return 1;
}

bool CWxSlideLib::copy_slide(const Entry& entry, const std::string& path) {
  qv::SavedFile out(path.c_str(), qv::SavedFile::Lines::AsWritten, qv::SavedFile::Links::Replaced);
  std::clearerr(m_fp);
  char block[4096];
  for (std::size_t left = entry.m_nLength; left > 0;) {
    const std::size_t got = std::fread(block, 1, std::min(left, sizeof block), m_fp);
    if (got == 0) break;
    if (!out.write(block, got)) return false;
    left -= got;
  }
  return !std::ferror(m_fp) && out.commit();
}

int CWxSlideLib::SLB2SLD(const char* dir) {
  for (int i = 0; i < m_nCount; ++i) Pick_SLD(i, dir);
  return m_nCount > 0 ? 1 : 0;
}

int CWxSlideLib::Read_SLB_SLD(const CString& name, CWxSlide* slide) {
  const std::string& text = name.str();
  const std::size_t dot = text.rfind('.');
  if (dot == std::string::npos) return 0;
  const auto open = [&] { return Open_SLB((text.substr(0, dot) + ".slb").c_str()); };
  return unless_out_of_memory(open, 0) ? Read_SLD(text.c_str() + dot + 1, slide) : 0;
}
