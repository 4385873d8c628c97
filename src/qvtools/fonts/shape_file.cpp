#include "qvtools/fonts/shape_file.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>

#include "qvtools/fonts/internal/byte_cursor.h"
#include "qvtools/fonts/internal/font_file.h"
#include "qvtools/fonts/internal/instructions.h"
#include "qvtools/system/textfile.h"

namespace qv {

namespace {

constexpr long kLargestFile = 256L << 20;

bool read_file(const char* path, std::string& bytes) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(open_text(path, "rb"), std::fclose);
  const long size = file && std::fseek(file.get(), 0, SEEK_END) == 0 ? std::ftell(file.get()) : -1;
  if (size <= 0 || size > kLargestFile) return false;
  bytes.resize(static_cast<std::size_t>(size));
  std::rewind(file.get());
  return std::fread(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
}

bool same_name(std::string_view a, std::string_view b) {
  const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
  return std::ranges::equal(a, b, {}, upper, upper);
}

}  // namespace

/// Takes a file apart into its records.
class ShapeFile::Reader {
 public:
  explicit Reader(ShapeFile& file)
      : file_(file), cursor_(reinterpret_cast<const unsigned char*>(file.bytes_.data()), file.bytes_.size()) {}

  const char* read() {
    constexpr std::size_t kLongestMark = 40;
    const std::string_view bytes = file_.bytes_;
    const std::size_t end = bytes.substr(0, kLongestMark).find('\x1a');
    const auto begins = [&](std::string_view mark) {
      return end != bytes.npos && bytes.starts_with(mark.substr(0, mark.find_last_of(' ') + 1));
    };
    cursor_.seek(end + 1);
    bool whole = false;
    if (begins(detail::kShapesMark)) {
      file_.kind_ = Kind::Shapes;
      whole = read_shapes();
    } else if (begins(detail::kBigFontMark)) {
      file_.kind_ = Kind::BigFont;
      whole = read_big_font();
    } else if (begins(detail::kUnifontMark)) {
      file_.kind_ = Kind::Unifont;
      whole = read_unifont();
    } else {
      return "it is no shape file";
    }
    return whole ? nullptr : "the shape file is cut or damaged";
  }

 private:
  /// Keeps the record [begin, end): its name, then its codes. That of code 0 describes the font.
  void keep(int code, std::size_t begin, std::size_t end) {
    const std::string_view record = std::string_view(file_.bytes_).substr(begin, end - begin);
    const std::size_t zero = record.find('\0');
    if (zero == record.npos) return;
    std::string name(record.substr(0, zero));
    if (code != 0) {
      file_.shapes_.push_back({code, std::move(name), begin + zero + 1, end});
      return;
    }
    file_.name_ = std::move(name);
    const auto byte = [&](std::size_t i) {
      return zero + 1 + i < record.size() ? static_cast<unsigned char>(record[zero + 1 + i]) : 0;
    };
    file_.above_ = byte(0);
    file_.below_ = byte(1);
    // An extended big font tells the height, 0, the modes, the width, 0.
    file_.extended_ = file_.kind_ == Kind::BigFont && record.size() - zero - 1 >= 5 && byte(3) > 0;
    if (file_.extended_) file_.cellWidth_ = byte(3);
  }

  bool read_shapes() {
    std::uint32_t count = 0;
    cursor_.skip(4);  // the first and the last code
    if (!cursor_.u16(count)) return false;
    detail::ByteCursor entries = cursor_;
    if (count == 0 || !cursor_.skip(4 * std::size_t{count})) return false;
    for (std::uint32_t i = 0, code = 0, length = 0; i < count; ++i) {
      entries.u16(code);
      entries.u16(length);
      const std::size_t begin = cursor_.position();
      if (!cursor_.skip(length)) return false;
      keep(static_cast<int>(code), begin, begin + length);
    }
    return true;
  }

  bool read_big_font() {
    std::uint32_t count = 0;
    std::uint32_t ranges = 0;
    cursor_.skip(2);  // the size of an entry
    cursor_.u16(count);
    cursor_.u16(ranges);
    if (count == 0 || !cursor_.skip(4 * std::size_t{ranges})) return false;
    file_.plain_ = ranges == 1;
    const std::size_t size = file_.bytes_.size();
    std::uint32_t first = 0, second = 0, length = 0, begin = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
      cursor_.u8(first);
      cursor_.u8(second);
      cursor_.u16(length);
      if (!cursor_.u32(begin)) return false;
      if (length == 0) continue;  // rows have gaps
      if (begin > size || length > size - begin) return false;
      keep(static_cast<int>(first << 8 | second), begin, begin + length);
    }
    return true;
  }

  bool read_unifont() {
    std::uint32_t count = 0;
    cursor_.u16(count);
    for (std::uint32_t i = 0, code = 0, length = 0; i < count; ++i) {
      cursor_.u16(code);
      if (!cursor_.u16(length)) return false;
      const std::size_t begin = cursor_.position();
      if (!cursor_.skip(length)) return false;
      keep(static_cast<int>(code), begin, begin + length);
    }
    return count > 0;
  }

  ShapeFile& file_;
  detail::ByteCursor cursor_;
};

int ShapeFile::Load(const char* path) {
  std::string bytes;
  *this = {};
  try {
    if (read_file(path, bytes)) return Load(std::move(bytes));
  } catch (const std::bad_alloc&) {
  }
  error_ = "it cannot be read";
  unread_ = true;
  return 0;
}

int ShapeFile::Load(std::string bytes) {
  *this = {};
  try {
    bytes_ = std::move(bytes);
    const char* const error = Reader(*this).read();
    if (!error) {
      const auto rank = [](const Shape& shape) { return shape.code; };
      std::ranges::stable_sort(shapes_, {}, rank);
      // The last of one code is kept.
      const auto repeated = std::unique(shapes_.rbegin(), shapes_.rend(),
                                        [](const Shape& a, const Shape& b) { return a.code == b.code; });
      shapes_.erase(shapes_.begin(), repeated.base());
      const std::size_t plainMark = kind_ == Kind::Shapes ? detail::kShapesMark.size() : detail::kBigFontMark.size();
      const bool plainHead = bytes_.find('\x1a') == plainMark + 3 && kind_ != Kind::Unifont;
      plain_ = plainHead && (plain_ || kind_ == Kind::Shapes) && !extended_ &&
               std::ranges::all_of(shapes_, [&](const Shape& shape) {
                 return detail::is_plain_shape(std::string_view(bytes_).substr(shape.begin, shape.end - shape.begin));
               });
      return 1;
    }
    *this = {};
    error_ = error;
  } catch (const std::bad_alloc&) {
    *this = {};
    error_ = "out of memory";
    unread_ = true;
  }
  return 0;
}

const ShapeFile::Shape* ShapeFile::find(int code) const {
  const auto found = std::ranges::lower_bound(shapes_, code, {}, &Shape::code);
  return found != shapes_.end() && found->code == code ? &*found : nullptr;
}

const ShapeFile::Shape* ShapeFile::find(std::string_view name) const {
  const auto found = std::ranges::find_if(shapes_, [&](const Shape& shape) { return same_name(shape.name, name); });
  return found != shapes_.end() && !name.empty() ? &*found : nullptr;
}

}  // namespace qv
