#include "qvtools/import/internal/drawing.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "qvtools/system/internal/pages.h"
#include "qvtools/system/textfile.h"
#include "qvtools/text/gbk_text.h"

namespace qv::importing {

namespace {

/// Whether all bytes are ASCII.
bool is_ascii(std::string_view text) {
  std::uint64_t any = 0;
  std::size_t i = 0;
  for (std::uint64_t words[8]; i + sizeof words <= text.size(); i += sizeof words) {
    std::memcpy(words, text.data() + i, sizeof words);
    for (const std::uint64_t word : words) any |= word;
  }
  for (; i < text.size(); ++i) any |= static_cast<unsigned char>(text[i]);
  return (any & 0x8080808080808080) == 0;
}

/// Where the blanks before a place begin.
std::size_t before_blanks(std::string_view file, std::size_t at) {
  while (at > 0 && (file[at - 1] == ' ' || file[at - 1] == '\t' || file[at - 1] == '\r')) --at;
  return at;
}

constexpr std::string_view kSection = "SECTION";

/// Where the group 0 of a word at a place of a text file begins; npos where the word belongs to none.
std::size_t group_of_word(std::string_view file, std::string_view word, std::size_t at) {
  std::size_t before = before_blanks(file, at);
  const char behind = at + word.size() < file.size() ? file[at + word.size()] : '\n';
  if (before == 0 || file[before - 1] != '\n' || (behind != '\n' && behind != '\r' && behind != ' '))
    return std::string_view::npos;
  before = before_blanks(file, before - 1);
  if (before == 0 || file[before - 1] != '0') return std::string_view::npos;
  before = before_blanks(file, before - 1);
  return before == 0 || file[before - 1] == '\n' ? before : std::string_view::npos;
}

/// Adds the sections whose word begins from a place on and ends before the last byte that is there, or with it where
/// that is the file's last. Returns where to go on.
std::size_t add_sections(std::string_view there, bool isLast, std::size_t from, std::vector<std::size_t>& sections) {
  for (std::size_t at; (at = there.find(kSection, from)) != std::string_view::npos; from = at + kSection.size()) {
    if (at + kSection.size() == there.size() && !isLast) return at;
    const std::size_t begin = group_of_word(there, kSection, at);
    if (begin != std::string_view::npos) sections.push_back(begin);
  }
  return std::max(from, there.size() - std::min(there.size(), kSection.size() - 1));
}

/// Reads all of the file, and looks at each stretch while it is near.
bool read_whole(std::FILE* stream, SourceFile& file) {
  constexpr std::size_t kStretch = 256 * 1024;
  std::size_t searched = 0;
  for (std::size_t at = 0; at < file.size;) {
    const std::size_t size = std::min(kStretch, file.size - at);
    char* const stretch = file.bytes.get() + at;
    if (std::fread(stretch, 1, size, stream) != size) return false;
    if (at == 0 && file.text().starts_with("\xEF\xBB\xBF")) std::memset(stretch, ' ', 3);
    if (file.ascii == at && is_ascii({stretch, size})) file.ascii += size;
    at += size;
    searched = add_sections({file.bytes.get(), at}, at == file.size, searched, file.sections);
  }
  return true;
}

}  // namespace

bool load_file(const char* path, SourceFile& file) {
  constexpr std::size_t kSlack = 128;  // a line feed at the end, and what readers may look at behind it
  const auto close = [](std::FILE* opened) { std::fclose(opened); };
  const std::unique_ptr<std::FILE, decltype(close)> stream(open_text(path, "rb"));
  if (!stream) return false;
  const long size = std::fseek(stream.get(), 0, SEEK_END) == 0 ? std::ftell(stream.get()) : -1;
  if (size < 0) return false;
  file.size = static_cast<std::size_t>(size);
  file.bytes = std::make_unique_for_overwrite<char[]>(file.size + kSlack);
  detail::wish_large_pages(file.bytes.get(), file.size);
  std::rewind(stream.get());
  if (!read_whole(stream.get(), file)) return false;
  std::memset(file.bytes.get() + file.size, 0, kSlack);
  if (form_of(file.text()) != Form::Text) return true;
  if (!std::memchr(file.bytes.get(), '\n', file.size)) {
    std::replace(file.bytes.get(), file.bytes.get() + file.size, '\r', '\n');
    add_sections(file.text(), true, 0, file.sections);
  }
  if (file.size > 0 && file.bytes[file.size - 1] != '\n') file.bytes[file.size++] = '\n';
  return true;
}

const Tag* Record::find(int code) const {
  const auto found = std::ranges::find(tags, code, &Tag::code);
  return found == tags.end() ? nullptr : &*found;
}

double Record::real(int code, double otherwise) const {
  const Tag* const tag = find(code);
  return tag ? real_of(*tag) : otherwise;
}

int Record::integer(int code, int otherwise) const {
  const Tag* const tag = find(code);
  return tag ? integer_of(*tag) : otherwise;
}

std::string_view Record::word(int code) const {
  const Tag* const tag = find(code);
  return tag ? word_of(*tag) : std::string_view();
}

std::string_view Record::text(int code) const {
  const Tag* const tag = find(code);
  return tag ? tag->text : std::string_view();
}

Vec Record::point(int code) const {
  return {real(code), real(code + 10), real(code + 20)};
}

bool read_record(TagReader& in, Record& record) {
  do {
    if (!in.next()) return false;
  } while (in.tag().code != 0);
  record.name = word_of(in.tag());
  record.place = in.place();
  record.tags.clear();
  record.extended.clear();
  record.embedded.clear();
  bool embedded = false;  // an object within the record: not for us
  bool application = false;
  while (in.next()) {
    const Tag& tag = in.tag();
    if (tag.code == 0) {
      in.unread();
      break;
    }
    if (tag.code == 102) {
      application = !tag.text.empty() && word_of(tag).starts_with('{');
    } else if (tag.code == 101) {
      embedded = true;
    } else if (tag.code >= 1000) {
      record.extended.push_back(tag);
    } else if (embedded) {
      record.embedded.push_back(tag);
    } else if (!application) {
      record.tags.push_back(tag);
    }
  }
  return true;
}

int NameIndex::find(std::string_view raw, const Decoder& decoder) {
  if (raw.size() == last_.size() && !raw.empty() && std::memcmp(raw.data(), last_.data(), raw.size()) == 0)
    return lastIndex_;
  auto seen = seen_.find(raw);
  if (seen == seen_.end()) {
    std::string name = decoder.gbk(raw);
    upper_case(name.data());
    const auto found = byName_.find(name);
    seen = seen_.emplace(raw, found == byName_.end() ? -1 : found->second).first;
  }
  last_ = raw;
  return lastIndex_ = seen->second;
}

void NameIndex::add(std::string_view raw, int index, const Decoder& decoder) {
  std::string name = decoder.gbk(raw);
  upper_case(name.data());
  byName_.emplace(std::move(name), index);
  seen_.clear();
  last_ = {};
}

Drawing::Drawing(SourceFile file) : in(file.text()), source_(std::move(file)) {}

long Drawing::line_of(std::size_t place) {
  if (in.form() != Form::Text) return static_cast<long>(place) + 1;
  const char* const text = source_.bytes.get();
  if (place < lineAt_) {
    lineAt_ = 0;
    lineThere_ = 1;
  }
  lineThere_ += static_cast<long>(std::count(text + lineAt_, text + place, '\n'));
  lineAt_ = place;
  return lineThere_;
}

void Drawing::find_sections() {
  const auto open_section = [&](std::size_t place) {
    in.seek(place);
    if (!in.next() || !in.next()) return;
    const std::string_view name = in.tag().code == 2 ? word_of(in.tag()) : std::string_view();
    if (in.tag().code != 2) in.unread();
    sections_.push_back({name, {in.next_place(), source_.size}});
  };
  if (in.form() == Form::Text) {
    for (const std::size_t at : source_.sections) {
      if (!sections_.empty()) sections_.back().span.to = at;
      open_section(at);
    }
    return;
  }
  in.seek(0);
  while (in.next()) {
    if (!in.at(0, "SECTION")) continue;
    const std::size_t place = in.place();
    if (!sections_.empty()) sections_.back().span.to = place;
    open_section(place);
  }
}

namespace {

/// What the bytes of a file look like.
struct Bytes {
  bool high = false;     // some are not ASCII
  bool utf8 = false;     // and all of those are UTF-8
  bool chinese = false;  // and some of them Chinese
  bool gbk = true;       // they pair as GBK's do, the fonts' signs for grades of steel left aside
};

bool is_grade_sign(unsigned char c) {
  return c == 0x82 || c == 0x83 || c == 0x85 || c == 0x8B;
}

Bytes look_at(const SourceFile& source) {
  Bytes bytes;
  const std::string_view file = source.text();
  bytes.utf8 = is_utf8(file.substr(source.ascii));
  for (std::size_t i = source.ascii; i < file.size(); ++i) {
    const auto c = static_cast<unsigned char>(file[i]);
    if (c < 0x80) continue;
    bytes.high = true;
    bytes.chinese = bytes.chinese || (c >= 0xE3 && c <= 0xE9);
    const auto next = static_cast<unsigned char>(i + 1 < file.size() ? file[i + 1] : 0);
    if (c >= 0x81 && c != 0xFF && next >= 0x40 && next != 0x7F && next != 0xFF)
      ++i;
    else if (!is_grade_sign(c))
      bytes.gbk = false;
    if (!bytes.gbk && (!bytes.utf8 || bytes.chinese)) break;
  }
  return bytes;
}

}  // namespace

void Drawing::choose_encoding(const ImportOptions& options) {
  const auto choose = [&](CodePage page, const char* source) {
    decoder.page = page;
    encodingSource = source;
  };
  if (options.encoding) return choose(*options.encoding, "as asked for");
  const std::optional<CodePage> named = code_page_named(header.codePage);
  const bool unicode = header.release >= "AC1021";
  const bool text = in.form() == Form::Text;
  const Bytes bytes = text ? look_at(source_) : Bytes();
  if (unicode && (bytes.utf8 || !bytes.high)) return choose(CodePage::Utf8, "by the release");
  if (bytes.high && bytes.utf8 && (bytes.chinese || !named)) return choose(CodePage::Utf8, "by the bytes");
  if (named) return choose(*named, "by the header");
  if (unicode) return choose(CodePage::Utf8, "by the release");
  if (bytes.high && bytes.gbk) return choose(CodePage::Gbk, "by the bytes");
  choose(CodePage::Windows1252, "by default");
}

void Drawing::read_header(std::size_t from) {
  in.seek(from);
  std::string_view name;
  while (in.next() && in.tag().code != 0) {
    const Tag& tag = in.tag();
    const auto is = [&](std::string_view variable) { return name == variable; };
    if (tag.code == 9) {
      name = word_of(tag);
    } else if (is("$ACADVER")) {
      header.release = word_of(tag);
    } else if (is("$DWGCODEPAGE")) {
      header.codePage = word_of(tag);
    } else if (is("$LTSCALE")) {
      header.ltScale = real_of(tag);
    } else if (is("$INSUNITS")) {
      header.insUnits = integer_of(tag);
    } else if (is("$MEASUREMENT")) {
      header.measurement = integer_of(tag);
    } else if (is("$EXTMIN") || is("$EXTMAX")) {
      Vec& p = is("$EXTMIN") ? header.extMin : header.extMax;
      (tag.code == 10 ? p.x : tag.code == 20 ? p.y : p.z) = real_of(tag);
      header.hasExtents = true;
    } else if (name.starts_with("$DIM") && (tag.binaryNumber || tag.code >= 40)) {
      header.dim.emplace_back(name, real_of(tag));
    }
  }
  if (!(header.ltScale > 0) || !std::isfinite(header.ltScale)) header.ltScale = 1;
}

bool Drawing::open(const ImportOptions& options) {
  find_sections();
  for (const Section& section : sections_)
    if (section.name == "HEADER") read_header(section.span.from);
  choose_encoding(options);
  for (const Section& section : sections_)
    if (section.name == "TABLES") read_tables(section.span);
  for (const Section& section : sections_)
    if (section.name == "BLOCKS") read_blocks(section.span);
  for (const Section& section : sections_) {
    if (section.name == "OBJECTS") read_objects(section.span);
    if (section.name == "ENTITIES") entitySections.push_back(section.span);
  }
  link_blocks();
  if (!sections_.empty()) return true;
  // A fragment: entities and nothing around them.
  in.seek(0);
  if (!in.next() || in.tag().code != 0 || word_of(in.tag()).empty()) return false;
  entitySections.push_back({in.place(), source_.size});
  Record first;
  in.unread();
  return read_record(in, first) && !first.tags.empty();
}

bool Drawing::is_complete() const {
  constexpr std::size_t kTail = 256;
  constexpr std::string_view kEnd = "EOF";
  constexpr std::size_t kNone = std::string_view::npos;
  const std::string_view file = source_.text();
  if (sections_.empty()) return true;
  const std::size_t from = sections_.back().span.from;
  std::size_t at = file.rfind(kEnd);
  if (in.form() != Form::Text) return at != kNone && at >= from && file.size() - at < kTail;
  // Texts and names may hold the word too.
  while (at != kNone && at >= from && group_of_word(file, kEnd, at) == kNone)
    at = at > 0 ? file.rfind(kEnd, at - 1) : kNone;
  return at != kNone && at >= from;
}

double Drawing::expanded_count(int block, int depth) {
  constexpr double kEndless = std::numeric_limits<double>::infinity();
  constexpr int kDeepest = 200;
  FileBlock& b = blocks[static_cast<std::size_t>(block)];
  if (b.expanded >= 0) return b.expanded;
  if (depth > kDeepest) return kEndless;
  b.expanded = 0;  // what refers back to it counts nothing: the ring is cut there
  double sum = b.entities;
  for (const auto& [child, times] : b.children) sum += times * expanded_count(child, depth + 1);
  return b.expanded = sum;
}

}  // namespace qv::importing
