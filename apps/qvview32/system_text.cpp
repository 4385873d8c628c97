#include "system_text.h"

#include <windows.h>

namespace qvview32 {

namespace {

/// In the system's code page; `lost` tells that characters have no form there.
std::string narrowed(const std::wstring& text, BOOL& lost) {
  const int length = static_cast<int>(text.size());
  std::string narrow(text.size() * 4, '\0');
  const int room = static_cast<int>(narrow.size());
  const int n = length ? WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), length, narrow.data(), room,
                                             nullptr, &lost)
                       : 0;
  narrow.resize(static_cast<std::size_t>(n));
  return narrow;
}

std::wstring widened(const char* text, UINT codePage) {
  const int size = MultiByteToWideChar(codePage, 0, text, -1, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(codePage, 0, text, -1, wide.data(), size);
  wide.resize(wide.size() - 1);
  return wide;
}

}  // namespace

std::wstring wide_of_utf8(const char* text) {
  return widened(text, CP_UTF8);
}

std::wstring wide_of_path(const std::string& path) {
  return widened(path.c_str(), CP_ACP);
}

std::string utf8_of(const std::wstring& text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, utf8.data(), size, nullptr, nullptr);
  utf8.resize(utf8.size() - 1);
  return utf8;
}

std::wstring filled(std::wstring text, const std::wstring& first, const std::wstring& second) {
  const std::wstring* values[] = {&first, &second};
  for (std::size_t at = 0; (at = text.find(L'%', at)) != std::wstring::npos;) {
    const wchar_t number = at + 1 < text.size() ? text[at + 1] : L'\0';
    if (number != L'1' && number != L'2') {
      ++at;
      continue;
    }
    const std::wstring& value = *values[number - L'1'];
    text.replace(at, 2, value);
    at += value.size();
  }
  return text;
}

std::string path_of(const std::wstring& path) {
  BOOL lost = FALSE;
  const std::string narrow = narrowed(path, lost);
  wchar_t shortened[MAX_PATH];
  const DWORD n = lost ? GetShortPathNameW(path.c_str(), shortened, MAX_PATH) : 0;
  if (n == 0 || n >= MAX_PATH) return narrow;
  return narrowed(shortened, lost);
}

}  // namespace qvview32
