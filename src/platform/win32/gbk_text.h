#pragma once

/// GBK texts as Windows takes them.

#include <windows.h>

#include <string>

#include "platform/text.h"

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

}  // namespace qv
