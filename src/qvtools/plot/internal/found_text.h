#pragma once

#include <string>
#include <string_view>

namespace qv::detail {

/// The text of a record as it is found and copied: UTF-8, "\U+XXXX" decoded, and the fonts' own signs as those that
/// stand for them elsewhere: degrees, plus-minus, the diameter, and a diameter for each grade of steel.
std::string found_text(std::string_view gbk);

}  // namespace qv::detail
