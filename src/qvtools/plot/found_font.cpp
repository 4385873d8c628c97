#include "qvtools/plot/internal/found_font.h"

#include <array>

#include "qvtools/text/code_page.h"

namespace qv::detail {
namespace {

constexpr int kUnitsPerEm = 1000;
constexpr int kHalfWidth = 500;
// The box of a text is its capitals. Some readers take a descent of 0 for none given.
constexpr int kAscent = 1000;
constexpr int kDescent = -1;
constexpr std::size_t kMostLetters = 65535;

/// A table of numbers with the most significant byte first, as TrueType has them (source: ISO/IEC 14496-22, the
/// OpenType format).
class Table {
 public:
  Table& u16(int v) {
    bytes_ += static_cast<char>(v >> 8 & 255);
    bytes_ += static_cast<char>(v & 255);
    return *this;
  }
  Table& u32(std::uint32_t v) { return u16(static_cast<int>(v >> 16)).u16(static_cast<int>(v & 0xFFFF)); }
  Table& zeros(std::size_t count) {
    bytes_.append(count, '\0');
    return *this;
  }
  Table& text(std::string_view text) {
    bytes_ += text;
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

std::uint32_t checksum(std::string_view bytes) {
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    sum += std::uint32_t{static_cast<unsigned char>(bytes[i])} << (24 - 8 * (i % 4));
  }
  return sum;
}

// Some readers take a letter's width from its glyph: glyph 0 stands for what is not there, and two for all letters.
constexpr int kFullGlyph = 1;
constexpr int kHalfGlyph = 2;

/// A TrueType font of three glyphs without outlines.
std::string blank_font() {
  constexpr int kGlyphs = 3;
  constexpr std::uint32_t kMagic = 0x5F0F3CF5;
  constexpr std::uint32_t kWholeSum = 0xB1B0AFBA;
  const auto head = [](std::uint32_t adjustment) {
    return Table()
        .u32(0x10000)
        .u32(0x10000)
        .u32(adjustment)
        .u32(kMagic)
        .u16(0x0B)
        .u16(kUnitsPerEm)
        .zeros(16)  // dates
        .u16(0)
        .u16(kDescent)
        .u16(kUnitsPerEm)
        .u16(kAscent)
        .u16(0)
        .u16(8)  // smallest readable size
        .u16(2)
        .u16(0)  // short places of glyphs
        .u16(0);
  };
  const Table os2 = Table()
                        .u16(1)
                        .u16(kUnitsPerEm)
                        .u16(400)
                        .u16(5)
                        .zeros(2 + 20 + 2 + 10 + 16)
                        .text("none")
                        .u16(0x40)
                        .u16(0x20)
                        .u16(0x20)
                        .u16(kAscent)
                        .u16(kDescent)
                        .u16(0)
                        .u16(kAscent)
                        .u16(-kDescent)
                        .u32(1)
                        .u32(0);
  // One segment of characters, the blank, and the one that ends the list.
  const Table cmap = Table()
                         .u16(0)
                         .u16(1)
                         .u16(3)
                         .u16(1)
                         .u32(12)  //
                         .u16(4)
                         .u16(32)
                         .u16(0)
                         .u16(4)
                         .u16(4)
                         .u16(1)
                         .u16(0)
                         .u16(0x20)
                         .u16(0xFFFF)
                         .u16(0)
                         .u16(0x20)
                         .u16(0xFFFF)
                         .u16(kHalfGlyph - 0x20)
                         .u16(1)
                         .u16(0)
                         .u16(0);
  const Table hhea =
      Table().u32(0x10000).u16(kAscent).u16(kDescent).u16(0).u16(kUnitsPerEm).zeros(6).u16(1).zeros(14).u16(kGlyphs);
  const Table hmtx = Table().u16(kUnitsPerEm).u16(0).u16(kUnitsPerEm).u16(0).u16(kHalfWidth).u16(0);
  const Table maxp = Table().u32(0x10000).u16(kGlyphs).zeros(8).u16(2).zeros(16);
  const Table name = Table().u16(0).u16(0).u16(6);
  const Table post = Table().u32(0x30000).zeros(28);
  struct Entry {
    const char* tag;
    Table table;
  };
  std::array<Entry, 10> entries = {{{"OS/2", os2},
                                    {"cmap", cmap},
                                    {"glyf", Table().zeros(4)},
                                    {"head", head(0)},
                                    {"hhea", hhea},
                                    {"hmtx", hmtx},
                                    {"loca", Table().zeros(2 * (kGlyphs + 1))},
                                    {"maxp", maxp},
                                    {"name", name},
                                    {"post", post}}};
  const auto file = [&entries] {
    Table directory;
    directory.u32(0x10000).u16(static_cast<int>(entries.size())).u16(128).u16(3).u16(32);  // for a binary search
    Table tables;
    const std::size_t begin = 12 + 16 * entries.size();
    for (const Entry& entry : entries) {
      const std::string& bytes = entry.table.bytes();
      directory.text(entry.tag).u32(checksum(bytes)).u32(static_cast<std::uint32_t>(begin + tables.bytes().size()));
      directory.u32(static_cast<std::uint32_t>(bytes.size()));
      tables.text(bytes).zeros((4 - bytes.size() % 4) % 4);
    }
    return directory.bytes() + tables.bytes();
  };
  // The directory keeps the sum of a head without adjustment; the adjustment alone is put in afterwards.
  std::string font = file();
  const std::string plain = head(0).bytes(), adjusted = head(kWholeSum - checksum(font)).bytes();
  font.replace(font.find(plain), plain.size(), adjusted);
  return font;
}

}  // namespace

std::u32string found_letters(std::string_view utf8) {
  std::u32string letters;
  decode_text(CodePage::Utf8, utf8, letters);
  std::erase_if(letters, [](char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c & 0xFFFE) == 0xFFFE; });
  return letters;
}

int FoundFont::object(PdfFile& file) {
  if (object_ == 0) object_ = file.reserve();
  return object_;
}

int FoundFont::code(char32_t letter) {
  if (const auto known = codes_.find(letter); known != codes_.end()) return known->second;
  if (letters_.size() == kMostLetters) return 0;
  letters_.push_back(letter);
  return codes_[letter] = static_cast<int>(letters_.size());
}

double FoundFont::width(char32_t letter) {
  // What GBK has in two bytes is drawn by fonts of square signs.
  return gbk_code(letter) > 0xFF ? 1.0 : double{kHalfWidth} / kUnitsPerEm;
}

// The runs of half width: "first last width"; all others are of full width.
std::string FoundFont::widths() const {
  std::string text;
  for (std::size_t i = 0; i < letters_.size(); ++i) {
    if (width(letters_[i]) == 1) continue;
    const std::size_t first = i;
    while (i + 1 < letters_.size() && width(letters_[i + 1]) != 1) ++i;
    text += std::to_string(first + 1) + ' ' + std::to_string(i + 1) + ' ' + std::to_string(kHalfWidth) + ' ';
  }
  return text;
}

// The table from codes to characters (Adobe Technical Note #5411): blocks of at most a hundred rows.
std::string FoundFont::characters() const {
  std::string text =
      "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
      "/CIDSystemInfo <</Registry (Adobe) /Ordering (UCS) /Supplement 0>> def\n"
      "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
      "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
  constexpr std::size_t kRows = 100;
  for (std::size_t i = 0; i < letters_.size(); ++i) {
    if (i % kRows == 0) text += std::to_string(std::min(kRows, letters_.size() - i)) + " beginbfchar\n";
    text += '<';
    append_utf16_digits(static_cast<char32_t>(i + 1), text);
    text += "> <";
    append_utf16_digits(letters_[i], text);
    text += ">\n";
    if (i % kRows == kRows - 1 || i + 1 == letters_.size()) text += "endbfchar\n";
  }
  return text + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
}

void FoundFont::write(PdfFile& file) const {
  const int descendant = file.reserve(), descriptor = file.reserve(), program = file.reserve();
  const int glyphs = file.reserve(), to_unicode = file.reserve();
  const auto reference = [](int object) { return std::to_string(object) + " 0 R"; };
  file.begin(object_);
  file.put("<</Type/Font/Subtype/Type0/BaseFont/FoundText/Encoding/Identity-H/DescendantFonts[" +
           reference(descendant) + "]/ToUnicode " + reference(to_unicode) + ">>");
  file.end();
  file.begin(descendant);
  file.put("<</Type/Font/Subtype/CIDFontType2/BaseFont/FoundText" +
           std::string("/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor ") +
           reference(descriptor) + "/DW " + std::to_string(kUnitsPerEm) + "/W[" + widths() + "]/CIDToGIDMap " +
           reference(glyphs) + ">>");
  file.end();
  file.begin(descriptor);
  const std::string ascent = std::to_string(kAscent), descent = std::to_string(kDescent);
  file.put("<</Type/FontDescriptor/FontName/FoundText/Flags 4/FontBBox[0 " + descent + ' ' +
           std::to_string(kUnitsPerEm) + ' ' + ascent + "]/ItalicAngle 0/Ascent " + ascent + "/Descent " + descent +
           "/CapHeight " + ascent + "/StemV 80/FontFile2 " + reference(program) + ">>");
  file.end();
  const std::string font = blank_font();
  file.stream(program, "/Length1 " + std::to_string(font.size()), font);
  std::string map(2, '\0');
  for (const char32_t letter : letters_) {
    map += '\0';
    map += static_cast<char>(width(letter) == 1 ? kFullGlyph : kHalfGlyph);
  }
  file.stream(glyphs, "", map);
  file.stream(to_unicode, "", characters());
}

}  // namespace qv::detail
