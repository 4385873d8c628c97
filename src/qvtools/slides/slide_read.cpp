#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/slides/slide.h"
#include "qvtools/system/textfile.h"

// Format: 17 bytes of identification, type indicator, level; then a block of 15 bytes (level 1) or 12 (level 2); then
// records of 16-bit words, little-endian, the high byte of whose first word says the kind.

namespace {

constexpr char kIdentification[] = "AutoCAD Slide\r\n\x1A";  // its terminator belongs to it
constexpr std::size_t kIdentificationSize = 17;
static_assert(sizeof kIdentification == kIdentificationSize);

/// Reads a stream byte by byte, so that its position is always just after what was read.
class StreamSource {
 public:
  explicit StreamSource(std::FILE* file) : file_(file) {}
  bool read(void* data, std::size_t size) { return std::fread(data, 1, size, file_) == size; }

 private:
  std::FILE* file_;
};

/// Reads a stream in blocks, and in the end sets its position to just after what was read.
class BlockSource {
 public:
  explicit BlockSource(std::FILE* file) : file_(file), block_(new (std::nothrow) unsigned char[kBlock]) {
    const long begin = std::ftell(file);
    if (begin < 0 || std::fseek(file, 0, SEEK_END) != 0) return;
    ahead_ = static_cast<std::size_t>(std::max(std::ftell(file) - begin, 0L));
    std::fseek(file, begin, SEEK_SET);
  }
  ~BlockSource() {
    if (at_ < size_) std::fseek(file_, -static_cast<long>(size_ - at_), SEEK_CUR);
  }
  /// False without memory.
  bool is_ready() const { return block_ != nullptr; }
  BlockSource(const BlockSource&) = delete;
  BlockSource& operator=(const BlockSource&) = delete;

  bool read(void* data, std::size_t size) {
    if (size_ - at_ < size && !refill(size)) return false;
    std::memcpy(data, block_.get() + at_, size);
    at_ += size;
    return true;
  }
  /// No more bytes than these are left.
  std::size_t left() const { return ahead_ + size_ - at_; }

 private:
  static constexpr std::size_t kBlock = std::size_t{1} << 16;

  bool refill(std::size_t size) {
    if (!block_) return false;
    std::memmove(block_.get(), block_.get() + at_, size_ - at_);
    size_ -= at_;
    at_ = 0;
    const std::size_t got = std::fread(block_.get() + size_, 1, kBlock - size_, file_);
    size_ += got;
    ahead_ -= std::min(ahead_, got);
    return size_ >= size;
  }

  std::FILE* file_;
  std::unique_ptr<unsigned char[]> block_;
  std::size_t ahead_ = 0;
  std::size_t at_ = 0;
  std::size_t size_ = 0;
};

/// Reserves room for more items in large steps, since moving them costs most of the reading time, but for no more items
/// than the remaining bytes can make: the smallest records take two bytes.
void make_room(std::vector<CSlideItem>& items, std::size_t bytesLeft) {
  if (items.size() < items.capacity()) return;
  items.reserve(items.size() + std::min(7 * items.size() + 64, bytesLeft / 2 + 1));
}

/// Sums of 16 bits wrap, as the format's arithmetic does.
short wrapped(int v) {
  return static_cast<short>(static_cast<unsigned short>(v & 0xFFFF));
}

int low_byte(unsigned word) {
  return static_cast<signed char>(static_cast<unsigned char>(word & 255));
}

}  // namespace

int CWxSlide::Read_SLD(const char* path) {
  std::FILE* file = qv::open_text(path, "rb");
  if (!file) return 0;
  const int result = Read_SLD(file);
  std::fclose(file);
  return result;
}

int CWxSlide::Read_SLD(std::FILE* file) {
  const std::size_t before = m_Items.size();
  BlockSource in(file);
  bool slide = false;
  const auto read = [&] {
    if (!in.is_ready()) throw std::bad_alloc();
    slide = read_header(in);
    if (slide) read_records(in);
    return true;
  };
  const bool whole = qv::detail::unless_out_of_memory(read, false);
  if (whole && !std::ferror(file)) return slide ? 1 : 0;
  if (whole) tell_error(301, "Read Error in Slide !");
  m_Items.resize(before);
  return 0;
}

template <class Source>
bool CWxSlide::read_header(Source&& in) {
  if (!in.read(m_Header, sizeof m_Header) || std::memcmp(m_Header, kIdentification, kIdentificationSize) != 0)
    return false;
  const auto word = [](const unsigned char* p) { return static_cast<unsigned short>(p[0] | p[1] << 8); };
  if (m_Header[18] == 1) {
    std::memset(m_Level1, 0, sizeof m_Level1);
    in.read(m_Level1, sizeof m_Level1 - 1);
    m_nHighX = word(m_Level1);
    m_nHighY = word(m_Level1 + 2);
    // Quirk: the aspect of a slide of level 1 lies at its offset in the record in memory, not right after the screen
    // size; the slides that host programs have were written so.
    double aspect;
    std::memcpy(&aspect, m_Level1 + 8, sizeof aspect);
    m_fAspect = static_cast<float>(aspect);
    return true;
  }
  std::memset(m_Level2, 0, sizeof m_Level2);
  in.read(m_Level2, sizeof m_Level2);
  m_nHighX = word(m_Level2);
  m_nHighY = word(m_Level2 + 2);
  std::int32_t aspect;
  std::memcpy(&aspect, m_Level2 + 4, sizeof aspect);
  m_fAspect = static_cast<float>(aspect / 10000000.0);
  return true;
}

template <class Source>
void CWxSlide::read_records(Source&& in) {
  while (in.read(&m_nRecord, sizeof m_nRecord)) {
    make_room(m_Items, in.left());
    const unsigned kind = m_nRecord >> 8;
    if (kind <= 0x7F)
      read_line(in);
    else if (kind == 0xFB)
      read_offset(in);
    else if (kind == 0xFD)
      read_solid(in);
    else if (kind == 0xFE)
      read_common_point(in);
    else if (kind == 0xFF)
      change_color();
    else
      return;  // 0xFC ends the slide; what is not known ends it as well
  }
}

template <class Source>
void CWxSlide::read_line(Source&& in) {
  short rest[3];  // from y, to x, to y
  if (!in.read(rest, sizeof rest)) return;
  m_nLastX = static_cast<short>(m_nRecord);
  m_nLastY = rest[0];
  add_vector(m_nLastX, m_nLastY, rest[1], rest[2]);
}

template <class Source>
void CWxSlide::read_offset(Source&& in) {
  signed char rest[3];  // dy1, dx2, dy2
  if (!in.read(rest, sizeof rest)) return;
  const short fromX = wrapped(m_nLastX + low_byte(m_nRecord));
  const short fromY = wrapped(m_nLastY + rest[0]);
  add_vector(fromX, fromY, wrapped(m_nLastX + rest[1]), wrapped(m_nLastY + rest[2]));
  m_nLastX = fromX;
  m_nLastY = fromY;
}

template <class Source>
void CWxSlide::read_common_point(Source&& in) {
  signed char dy;
  if (!in.read(&dy, sizeof dy)) return;
  const short x = wrapped(m_nLastX + low_byte(m_nRecord));
  const short y = wrapped(m_nLastY + dy);
  add_vector(m_nLastX, m_nLastY, x, y);
  m_nLastX = x;
  m_nLastY = y;
}

template <class Source>
void CWxSlide::read_solid(Source&& in) {
  if ((m_nRecord & 255) != 0) return;
  short opening[2];  // number of vertices, and a y that is negative; the record that closes a fill has none
  if (!in.read(opening, sizeof opening)) return;
  const int count = static_cast<unsigned short>(opening[0]) > 4 ? 4 : opening[0];
  if (opening[1] >= 0 || count == 0) return;
  CSlideItem item;
  item.m_byKind = CSlideItem::kSolid;
  for (int i = 0; i < count; ++i) {
    unsigned short record;
    short point[2];
    // A word that no vertex begins with abandons the fill: what stands behind it is a record of its own.
    if (!in.read(&record, sizeof record) || (record >> 8 != 0xFD && (record & 255) != 0)) return;
    if (!in.read(point, sizeof point)) return;
    item.m_fX[i] = i == 3 ? static_cast<float>(std::abs(int{point[0]})) : point[0];
    item.m_fY[i] = i == 3 ? static_cast<float>(std::abs(int{point[1]})) : point[1];
  }
  if (count == 3) {
    item.m_fX[3] = item.m_fX[2];
    item.m_fY[3] = item.m_fY[2];
  }
  add(item);
}

void CWxSlide::change_color() {
  const auto color = static_cast<unsigned char>(m_nRecord & 255);
  SetColor(color == 0 ? 7 : color);
}

void CWxSlide::Read_Line(std::FILE* file) {
  read_line(StreamSource(file));
}

void CWxSlide::Read_Offset(std::FILE* file) {
  read_offset(StreamSource(file));
}

void CWxSlide::Read_Solid(std::FILE* file) {
  read_solid(StreamSource(file));
}

void CWxSlide::Read_Common_Pt(std::FILE* file) {
  read_common_point(StreamSource(file));
}

void CWxSlide::Change_Color(std::FILE*) {
  change_color();
}
