#pragma once

#include <string>

namespace qvview32 {

std::wstring wide_of_utf8(const char* text);
std::string utf8_of(const std::wstring& text);
/// The text with "%1" and "%2" filled in.
std::wstring filled(std::wstring text, const std::wstring& first, const std::wstring& second = L"");
/// A path as the library takes it, in the system's code page; one that has no form there by its short name.
std::string path_of(const std::wstring& path);
/// Such a path as Windows shows it.
std::wstring wide_of_path(const std::string& path);

}  // namespace qvview32
