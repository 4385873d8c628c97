#include "qvtools/plot/internal/pdf_file.h"

#include "qvtools/text/code_page.h"

namespace qv::detail {
namespace {

// Two FNV-1a sums with different beginnings: the file's identifier.
constexpr std::uint64_t kFnvPrime = 0x100000001B3;
constexpr std::uint64_t kFnvBegin[2] = {0xCBF29CE484222325, 0x9AE16A3B2F90404F};

// The table's rows have ten digits.
constexpr std::int64_t kLargestPlace = 9'999'999'999;

std::string padded(std::int64_t value, std::size_t digits) {
  const std::string text = std::to_string(value);
  return std::string(digits - std::min(digits, text.size()), '0') + text;
}

void append_hexadecimal(std::uint64_t value, int digits, std::string& out) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) out += "0123456789ABCDEF"[value >> shift & 15];
}

}  // namespace

void append_utf16_digits(char32_t c, std::string& out) {
  if (c < 0x10000) return append_hexadecimal(c, 4, out);
  append_hexadecimal(0xD800 + ((c - 0x10000) >> 10), 4, out);
  append_hexadecimal(0xDC00 + (c & 0x3FF), 4, out);
}

PdfFile::PdfFile(const std::string& path) : file_(path.c_str()), digest_{kFnvBegin[0], kFnvBegin[1]} {
  // Bytes above 127 in the second line tell that the file is binary.
  put("%PDF-1.5\n%\xE2\xE3\xCF\xD3\n");
}

void PdfFile::take(std::string_view block) {
  for (std::uint64_t& sum : digest_) {
    std::uint64_t s = sum;
    for (const char c : block) s = (s ^ static_cast<unsigned char>(c)) * kFnvPrime;
    sum = s;
  }
  size_ += static_cast<std::int64_t>(block.size());
  good_ = good_ && file_.write(block.data(), block.size());
}

int PdfFile::reserve() {
  places_.push_back(0);
  return static_cast<int>(places_.size());
}

void PdfFile::begin(int object) {
  places_[static_cast<std::size_t>(object - 1)] = size_;
  put_integer(object);
  put(" 0 obj\n");
}

void PdfFile::end() {
  put("\nendobj\n");
}

void PdfFile::put_integer(std::int64_t value) {
  put(std::to_string(value));
}

void PdfFile::put_reference(int object) {
  put_integer(object);
  put(" 0 R");
}

void PdfFile::put_text(std::string_view utf8) {
  std::u32string letters;
  decode_text(CodePage::Utf8, utf8, letters);
  std::string text;
  const auto is_plain = [](char32_t c) { return c >= 0x20 && c < 0x7F; };
  if (std::all_of(letters.begin(), letters.end(), is_plain)) {
    text = "(";
    for (const char32_t c : letters) {
      if (c == '(' || c == ')' || c == '\\') text += '\\';
      text += static_cast<char>(c);
    }
    text += ')';
  } else {
    text = "<FEFF";
    for (const char32_t c : letters) {
      if (c >= 0x20) append_utf16_digits(c, text);
    }
    text += '>';
  }
  put(text);
}

void PdfFile::stream(int object, std::string_view entries, std::string_view text) {
  packed_stream(object, entries, deflated(text));
}

void PdfFile::packed_stream(int object, std::string_view entries, std::string_view deflated) {
  begin(object);
  put("<<");
  put(entries);
  put("/Filter/FlateDecode/Length ");
  put_integer(static_cast<std::int64_t>(deflated.size()));
  put(">>\nstream\n");
  put(deflated);
  put("\nendstream");
  end();
}

BlockSink& PdfFile::begin_stream(int object) {
  length_ = reserve();
  begin(object);
  put("<</Filter/FlateDecode/Length ");
  put_reference(length_);
  put(">>\nstream\n");
  stream_from_ = size_;
  BlockSink& file = *this;
  deflater_ = std::make_unique<Deflater>(file);
  return *deflater_;
}

void PdfFile::end_stream() {
  deflater_->finish();
  deflater_.reset();
  const std::int64_t length = size_ - stream_from_;
  put("\nendstream");
  end();
  begin(length_);
  put_integer(length);
  end();
}

bool PdfFile::finish(int catalog, int info) {
  std::string identifier = "<";
  for (const std::uint64_t sum : digest_) append_hexadecimal(sum, 16, identifier);
  identifier += '>';
  const std::int64_t table = size_;
  const auto count = static_cast<std::int64_t>(places_.size()) + 1;
  put("xref\n0 " + std::to_string(count) + "\n0000000000 65535 f \n");
  for (const std::int64_t place : places_) put(padded(place, 10) + " 00000 n \n");
  put("trailer\n<</Size " + std::to_string(count) + "/Root ");
  put_reference(catalog);
  put("/Info ");
  put_reference(info);
  put("/ID[" + identifier + identifier + "]>>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n");
  return good_ && table <= kLargestPlace && file_.commit();
}

}  // namespace qv::detail
