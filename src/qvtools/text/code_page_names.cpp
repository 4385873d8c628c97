#include <iterator>
#include <string>

#include "qvtools/text/code_page.h"

namespace qv {

namespace {

/// What the pages are called, in their order: the name that headers have, and its other spellings, in upper case and
/// without blanks, "-" and "_".
constexpr struct {
  const char* header;
  std::string_view spellings;
} kNames[] = {
    {"UTF-8", ""},
    {"ANSI_936",
     "936 GBK GB2312 GB231280 CHINESE CNGB CSGB2312 CSGB231280 CSISO58GB231280 ISOIR58 GB18030 CP936 DOS936 WINDOWS936 "
     "EUCCN"},
    {"ANSI_950", "950 BIG5 CNBIG5 CSBIG5 XXBIG5 BIG5HKSCS CP950 DOS950"},
    {"ANSI_932", "932 DOS932 SHIFTJIS SJIS CSSHIFTJIS MSKANJI XSJIS CP932"},
    {"ANSI_949", "949 EUCKR KSC5601 KCS5601 KSC56011987 ISOIR149 KOREAN CP949 DOS949"},
    {"ANSI_1361", "1361 JOHAB CP1361"},
    {"DOS437", ""},
    {"DOS850", ""},
    {"DOS852", ""},
    {"DOS855", ""},
    {"DOS857", ""},
    {"DOS860", ""},
    {"DOS861", ""},
    {"DOS863", ""},
    {"DOS864", ""},
    {"DOS865", ""},
    {"DOS866", ""},
    {"DOS869", ""},
    {"ANSI_874", "874 DOS874 TIS620"},
    {"ANSI_1250", ""},
    {"ANSI_1251", ""},
    {"ANSI_1252", "ASCII USASCII"},
    {"ANSI_1253", ""},
    {"ANSI_1254", ""},
    {"ANSI_1255", ""},
    {"ANSI_1256", ""},
    {"ANSI_1257", ""},
    {"ANSI_1258", ""},
    {"ISO8859-1", "LATIN1"},
    {"ISO8859-2", ""},
    {"ISO8859-3", ""},
    {"ISO8859-4", ""},
    {"ISO8859-5", ""},
    {"ISO8859-6", ""},
    {"ISO8859-7", ""},
    {"ISO8859-8", ""},
    {"ISO8859-9", ""},
    {"MACINTOSH", "MACROMAN"},
};
static_assert(std::size(kNames) == static_cast<std::size_t>(CodePage::MacRoman) + 1);

std::string plain(std::string_view name) {
  std::string out;
  for (const char c : name) {
    const char upper = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    if ((upper >= 'A' && upper <= 'Z') || (upper >= '0' && upper <= '9')) out += upper;
  }
  return out;
}

std::optional<CodePage> find(const std::string& name) {
  for (std::size_t i = 0; i < std::size(kNames); ++i) {
    const std::string spellings = plain(kNames[i].header).append(1, ' ').append(kNames[i].spellings).append(1, ' ');
    if (!name.empty() && (' ' + spellings).find(' ' + name + ' ') != std::string::npos) return static_cast<CodePage>(i);
  }
  return std::nullopt;
}

/// The pages of western Windows and DOS are named by their numbers too.
std::optional<CodePage> numbered(const std::string& name) {
  const std::size_t digits = name.find_first_of("0123456789");
  const std::string_view prefix = std::string_view(name).substr(0, digits);
  if (digits == std::string::npos || !(prefix.empty() || prefix == "CP" || prefix == "WINDOWS" || prefix == "IBM"))
    return std::nullopt;
  const std::string number = name.substr(digits);
  const auto windows = find("ANSI" + number);
  return windows ? windows : find("DOS" + number);
}

}  // namespace

std::optional<CodePage> code_page_named(std::string_view name) {
  const std::string wanted = plain(name);
  const auto found = find(wanted);
  return found ? found : numbered(wanted);
}

const char* code_page_name(CodePage page) {
  return kNames[static_cast<std::size_t>(page)].header;
}

}  // namespace qv
