#include <algorithm>

#include "qvtools/text/code_page.h"

namespace qv {

namespace {

struct Name {
  const char* name;  // upper case, without blanks, "-" and "_"
  CodePage page;
};

// The first name of a page with its underscore put back is the one that headers have.
constexpr Name kNames[] = {
    {"UTF8", CodePage::Utf8},
    {"ANSI936", CodePage::Gbk},
    {"936", CodePage::Gbk},
    {"GBK", CodePage::Gbk},
    {"GB2312", CodePage::Gbk},
    {"GB231280", CodePage::Gbk},
    {"CHINESE", CodePage::Gbk},
    {"CNGB", CodePage::Gbk},
    {"CSGB2312", CodePage::Gbk},
    {"CSGB231280", CodePage::Gbk},
    {"CSISO58GB231280", CodePage::Gbk},
    {"ISOIR58", CodePage::Gbk},
    {"GB18030", CodePage::Gbk},
    {"CP936", CodePage::Gbk},
    {"DOS936", CodePage::Gbk},
    {"WINDOWS936", CodePage::Gbk},
    {"EUCCN", CodePage::Gbk},
    {"ANSI950", CodePage::Big5},
    {"950", CodePage::Big5},
    {"BIG5", CodePage::Big5},
    {"CNBIG5", CodePage::Big5},
    {"CSBIG5", CodePage::Big5},
    {"XXBIG5", CodePage::Big5},
    {"BIG5HKSCS", CodePage::Big5},
    {"CP950", CodePage::Big5},
    {"DOS950", CodePage::Big5},
    {"ANSI932", CodePage::ShiftJis},
    {"932", CodePage::ShiftJis},
    {"DOS932", CodePage::ShiftJis},
    {"SHIFTJIS", CodePage::ShiftJis},
    {"SJIS", CodePage::ShiftJis},
    {"CSSHIFTJIS", CodePage::ShiftJis},
    {"MSKANJI", CodePage::ShiftJis},
    {"XSJIS", CodePage::ShiftJis},
    {"CP932", CodePage::ShiftJis},
    {"ANSI949", CodePage::Korean},
    {"949", CodePage::Korean},
    {"EUCKR", CodePage::Korean},
    {"KSC5601", CodePage::Korean},
    {"KCS5601", CodePage::Korean},
    {"KSC56011987", CodePage::Korean},
    {"ISOIR149", CodePage::Korean},
    {"KOREAN", CodePage::Korean},
    {"CP949", CodePage::Korean},
    {"DOS949", CodePage::Korean},
    {"ANSI1361", CodePage::Johab},
    {"1361", CodePage::Johab},
    {"JOHAB", CodePage::Johab},
    {"CP1361", CodePage::Johab},
    {"DOS437", CodePage::Dos437},
    {"DOS850", CodePage::Dos850},
    {"DOS852", CodePage::Dos852},
    {"DOS855", CodePage::Dos855},
    {"DOS857", CodePage::Dos857},
    {"DOS860", CodePage::Dos860},
    {"DOS861", CodePage::Dos861},
    {"DOS863", CodePage::Dos863},
    {"DOS864", CodePage::Dos864},
    {"DOS865", CodePage::Dos865},
    {"DOS866", CodePage::Dos866},
    {"DOS869", CodePage::Dos869},
    {"ANSI874", CodePage::Thai},
    {"874", CodePage::Thai},
    {"DOS874", CodePage::Thai},
    {"TIS620", CodePage::Thai},
    {"ANSI1250", CodePage::Windows1250},
    {"ANSI1251", CodePage::Windows1251},
    {"ANSI1252", CodePage::Windows1252},
    {"ANSI1253", CodePage::Windows1253},
    {"ANSI1254", CodePage::Windows1254},
    {"ANSI1255", CodePage::Windows1255},
    {"ANSI1256", CodePage::Windows1256},
    {"ANSI1257", CodePage::Windows1257},
    {"ANSI1258", CodePage::Windows1258},
    {"ASCII", CodePage::Windows1252},
    {"USASCII", CodePage::Windows1252},
    {"ISO88591", CodePage::Iso1},
    {"LATIN1", CodePage::Iso1},
    {"ISO88592", CodePage::Iso2},
    {"ISO88593", CodePage::Iso3},
    {"ISO88594", CodePage::Iso4},
    {"ISO88595", CodePage::Iso5},
    {"ISO88596", CodePage::Iso6},
    {"ISO88597", CodePage::Iso7},
    {"ISO88598", CodePage::Iso8},
    {"ISO88599", CodePage::Iso9},
    {"MACROMAN", CodePage::MacRoman},
    {"MACINTOSH", CodePage::MacRoman},
};

constexpr const char* kHeaderNames[] = {
    "UTF-8",     "ANSI_936",  "ANSI_950",  "ANSI_932",  "ANSI_949",  "ANSI_1361", "DOS437",    "DOS850",
    "DOS852",    "DOS855",    "DOS857",    "DOS860",    "DOS861",    "DOS863",    "DOS864",    "DOS865",
    "DOS866",    "DOS869",    "ANSI_874",  "ANSI_1250", "ANSI_1251", "ANSI_1252", "ANSI_1253", "ANSI_1254",
    "ANSI_1255", "ANSI_1256", "ANSI_1257", "ANSI_1258", "ISO8859-1", "ISO8859-2", "ISO8859-3", "ISO8859-4",
    "ISO8859-5", "ISO8859-6", "ISO8859-7", "ISO8859-8", "ISO8859-9", "MACINTOSH"};
static_assert(std::size(kHeaderNames) == static_cast<std::size_t>(CodePage::MacRoman) + 1);

/// The pages of western Windows and DOS are named by their numbers too.
std::optional<CodePage> numbered(const std::string& name) {
  const std::size_t digits = name.find_first_of("0123456789");
  const std::string_view prefix = std::string_view(name).substr(0, digits);
  if (digits == std::string::npos || !(prefix.empty() || prefix == "CP" || prefix == "WINDOWS" || prefix == "IBM"))
    return std::nullopt;
  const std::string number = name.substr(digits);
  for (const char* const family : {"ANSI", "DOS"})
    for (const Name& known : kNames)
      if (family + number == known.name) return known.page;
  return std::nullopt;
}

}  // namespace

std::optional<CodePage> code_page_named(std::string_view name) {
  std::string plain;
  for (const char c : name)
    if (c >= 'a' && c <= 'z')
      plain += static_cast<char>(c - 'a' + 'A');
    else if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))
      plain += c;
  const auto found = std::ranges::find(kNames, plain, [](const Name& known) { return std::string_view(known.name); });
  return found != std::end(kNames) ? found->page : numbered(plain);
}

const char* code_page_name(CodePage page) {
  return kHeaderNames[static_cast<std::size_t>(page)];
}

}  // namespace qv
