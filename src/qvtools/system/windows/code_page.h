#pragma once

/// GBK texts as Windows takes them, and its texts in another encoding.

#include <windows.h>

#include <string>

#include "qvtools/text/gbk_text.h"

namespace qv {

/// GBK bytes as UTF-16; a byte that begins no character becomes "?".
inline std::wstring wide_of(const char* text) {
  constexpr UINT kGbk = 936;
  std::wstring wide;
  while (const std::size_t n = char_length(text)) {
    wchar_t c[2];
    const int count = MultiByteToWideChar(kGbk, MB_ERR_INVALID_CHARS, text, static_cast<int>(n), c, 2);
    wide.append(count > 0 ? std::wstring(c, static_cast<std::size_t>(count)) : L"?");
    text += n;
  }
  return wide;
}

/// UTF-16 in a code page of the system's.
inline std::string narrowed(const std::wstring& wide, UINT page) {
  const int length = static_cast<int>(wide.size());
  std::string text(wide.size() * 4, '\0');
  const int room = static_cast<int>(text.size());
  const int n = length ? WideCharToMultiByte(page, 0, wide.data(), length, text.data(), room, nullptr, nullptr) : 0;
  text.resize(static_cast<std::size_t>(n));
  return text;
}

}  // namespace qv
