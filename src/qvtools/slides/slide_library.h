#pragma once

/// Slide libraries: one file of many slides, with a directory of names.

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "qvtools/slides/slide.h"

/// An open slide library. Names are compared without regard to the case of ASCII letters.
class QV_API CWxSlideLib {
 public:
  /// A slide of the directory.
  struct Entry {
    char m_szName[33];        ///< at most 32 bytes in the file
    std::uint32_t m_nOffset;  ///< the slide's first byte in the file
    std::uint32_t m_nLength;  ///< its bytes: up to the next slide or the end of the file
  };

  CWxSlideLib() = default;
  ~CWxSlideLib();
  CWxSlideLib(const CWxSlideLib&) = delete;
  CWxSlideLib& operator=(const CWxSlideLib&) = delete;

  /// Opens a library instead of the present one and reads its directory. 0 when it cannot be opened or is
  /// no library, and, after report 301, when the disk fails or memory runs out.
  int Open_SLB(const char* path);
  /// Reads a slide, by its index or name, and appends its items to those of `slide`. 0 when the library has no such
  /// slide, or its bytes are no slide.
  int Read_SLD(int index, CWxSlide* slide);
  int Read_SLD(const char* name, CWxSlide* slide) { return Read_SLD(find(name), slide); }
  /// Writes a slide's bytes to the file named by dir, its name and ".SLD", where dir is a prefix: whole or, after
  /// report 301, not at all; a link at its place is replaced. 0 for an index or name that is not there, and for a name
  /// that no file may have: with a separator or a control character, or one that Windows reserves; else 1.
  int Pick_SLD(int index, const char* dir);
  int Pick_SLD(const char* name, const char* dir) { return Pick_SLD(find(name), dir); }
  /// Extracts every slide in this way. 0 when the library has no slides.
  int SLB2SLD(const char* dir);
  /// Opens the library and reads the slide that "LIBRARY.NAME" says (LIBRARY is a path without its ".slb"). 0 when
  /// there is no dot, no such library or no such slide.
  int Read_SLB_SLD(const CString& name, CWxSlide* slide);

  int m_nCount = 0;                ///< slides in the directory
  std::vector<Entry> m_Directory;  ///< in file order
  std::FILE* m_fp = nullptr;       ///< the open library, owned

 private:
  void close();
  bool read_directory();
  int find(const char* name) const;
  bool copy_slide(const Entry& entry, const std::string& path);
};
