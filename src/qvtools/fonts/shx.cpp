#include "qvtools/fonts/shx.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "qvtools/display/safe_dc.h"
#include "qvtools/fonts/internal/byte_cursor.h"
#include "qvtools/fonts/internal/text_drawing.h"
#include "qvtools/fonts/internal/text_run.h"
#include "qvtools/system/internal/out_of_memory.h"
#include "qvtools/system/textfile.h"
#include "qvtools/text/numbers.h"

CShx G_ShapeFont;
float G_HightText = 300.0f;
float G_RatioText = 1.0f;

namespace {

using namespace qv::detail;

constexpr int kCodes = 256;
constexpr int kQuestionMark = 63;
constexpr long kLargestFile = 256L << 20;

constexpr std::size_t kTxtCount = 28;   // where a text font states how many entries it has
constexpr std::size_t kHzCount = 27;    // where a big font does
constexpr std::size_t kHzEntries = 35;  // and where its entries begin
constexpr std::size_t kHzEntrySize = 8;

/// The bytes of a font file; none when it cannot be read.
std::vector<unsigned char> read_file(const char* dir, const char* name) {
  std::vector<unsigned char> bytes;
  std::FILE* const file = qv::open_text((CString(dir) + name), "rb");
  if (!file) return bytes;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> closer(file, std::fclose);
  const long size = std::fseek(file, 0, SEEK_END) == 0 ? std::ftell(file) : -1;
  if (size <= 0 || size > kLargestFile) return bytes;
  bytes.resize(static_cast<std::size_t>(size));
  std::rewind(file);
  if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) bytes.clear();
  return bytes;
}

/// Memory of so many bytes, all 0, for copies of a font to share.
std::shared_ptr<void> shared_zeros(std::size_t n) {
  return std::make_shared<double[]>(n / sizeof(double) + 1);
}

int device(double v) {
  const double doubled = 2.0 * v + 1.0;
  // In range the plain conversion is the same and inlines.
  const bool plain = doubled > -2147483648.0 && doubled < 2147483648.0;
  return (plain ? static_cast<int>(doubled) : qv::TruncInt(doubled)) / 2;
}

/// A shape's axes in device units.
struct Axes {
  double a;
  double b;
  double c;
  double d;
};

/// Draws displacements through the clipping context.
class DrawingPen {
 public:
  /// The axes are those of the text font's shapes and of the big font's.
  DrawingPen(CSafeDC& context, double x, double y, const Axes& txt, const Axes& hz)
      : context_(context), axes_(txt), txt_(txt), hz_(hz), x_(x), y_(y), at_(device(x), device(y)) {
    context_.MoveTo(at_);
  }
  void begin(const char*, bool big) { axes_ = big ? hz_ : txt_; }
  void step(double u, double v, bool down) {
    x_ += axes_.a * u + axes_.c * v;
    y_ += axes_.b * u + axes_.d * v;
    const CPoint to(device(x_), device(y_));
    if (to == at_) return;  // small letters are mostly strokes within a pixel, which show nothing
    at_ = to;
    if (down) {
      context_.LineTo(to);
    } else {
      context_.MoveTo(to);
    }
  }
  void push() {
    keptX_ = x_;
    keptY_ = y_;
  }
  // Quirk: behind instruction 6 the device pen stays where it is, so the next vector is drawn from there; fonts rely on
  // a move in between.
  void pop() {
    x_ = keptX_;
    y_ = keptY_;
  }
  double x() const { return x_; }
  double y() const { return y_; }

 private:
  CSafeDC& context_;
  Axes axes_;  // of the present shape
  Axes txt_;
  Axes hz_;
  double x_;
  double y_;
  CPoint at_;  // the device pen
  double keptX_ = 0;
  double keptY_ = 0;
};

/// Adds up displacements along the text.
class MeasuringPen {
 public:
  void step(double u, double, bool) { x_ += u; }
  void push() { kept_ = x_; }
  void pop() { x_ = kept_; }
  double x() const { return x_; }

 private:
  double x_ = 0;
  double kept_ = 0;
};

double measure(const unsigned char* shape) {
  MeasuringPen pen;
  qv::detail::run_shape(shape, pen);
  return pen.x();
}

/// A shape's axes when one shape unit is `across` device units along the text and `up` units upward.
Axes text_axes(double angle, double across, double up, int mirror) {
  const double cosine = std::cos(angle);
  const double sine = std::sin(angle);
  const bool flip = mirror == 1;
  if (flip) up = -up;
  return {cosine * across, flip ? -sine * across : sine * across, sine * up, cosine * up};
}

}  // namespace

CShx::CShx() = default;
CShx::CShx(const CShx& other) = default;
CShx& CShx::operator=(const CShx& other) = default;
CShx::~CShx() = default;

int CShx::SetTxtFont(const char* dir, const char* name) {
  return m_pTxtIndex ? 0 : unless_silently_out_of_memory([&] { return adopt_txt(read_file(dir, name)); }, 0);
}

int CShx::SetHzFont(const char* dir, const char* name) {
  return m_pHzIndex ? 0 : unless_silently_out_of_memory([&] { return adopt_hz(read_file(dir, name)); }, 0);
}

int CShx::adopt_txt(std::span<const unsigned char> file) {
  ByteCursor cursor(file.data(), file.size());
  std::uint32_t count = 0;
  std::uint32_t above = 0;
  cursor.seek(kTxtCount);
  cursor.u16(count);
  ByteCursor entries = cursor;
  if (count == 0 || !cursor.skip(4 * std::size_t{count})) return 0;
  std::uint32_t c = 1;
  while (c != 0 && cursor.u8(c)) {
  }
  cursor.u8(above);
  // The byte below and two more, which nothing here needs.
  if (!cursor.skip(3) || cursor.remaining() == 0) return 0;

  const std::size_t data = cursor.remaining();
  constexpr std::size_t kTables = kCodes * (sizeof(double) + sizeof(int));
  txtBlock_ = shared_zeros(kTables + data + kShapePadding);
  auto* const advances = static_cast<double*>(txtBlock_.get());
  auto* const index = reinterpret_cast<int*>(advances + kCodes);
  std::fill_n(index, kCodes, -1);
  entries.skip(4);
  std::size_t offset = 0;
  for (std::uint32_t i = 1, code, length; i < count; ++i, offset += length) {
    entries.u16(code);
    entries.u16(length);
    if (length > data - offset) return txtBlock_ = {}, 0;
    if (code < kCodes) index[code] = static_cast<int>(offset);
  }
  m_nTxtDefault = std::max(index[kQuestionMark], 0);
  std::replace(index, index + kCodes, -1, m_nTxtDefault);
  m_pTxtData = reinterpret_cast<unsigned char*>(index + kCodes);
  std::memcpy(m_pTxtData, file.data() + cursor.position(), data);
  const double standard = measure(m_pTxtData + m_nTxtDefault);
  std::transform(index, index + kCodes, advances,
                 [&](int at) { return at == m_nTxtDefault ? standard : measure(m_pTxtData + at); });
  txtAdvances_ = advances;
  m_fTxtHeight = above ? static_cast<float>(above) : 6.0f;
  m_pTxtIndex = index;
  return 1;
}

int CShx::adopt_hz(std::span<const unsigned char> file) {
  const std::size_t size = file.size();
  ByteCursor cursor(file.data(), size);
  std::uint32_t count = 0;
  std::uint32_t length = 0;
  std::uint32_t offset = 0;
  cursor.seek(kHzCount);
  cursor.u16(count);
  cursor.seek(kHzEntries);
  ByteCursor entries = cursor;
  entries.skip(2);
  entries.u16(length);
  entries.u32(offset);
  const std::size_t start = kHzEntries + kHzEntrySize * std::size_t{count} + length;
  if (count == 0 || !entries.good() || start >= size) return 0;
  if (length < 4 || offset > size || length > size - offset) return 0;
  const unsigned char height = file[offset + length - 4];

  const std::size_t data = size - start;
  constexpr std::size_t kIndexSize = sizeof(int) * kHzRows * kHzRows;
  hzBlock_ = shared_zeros(kIndexSize + data + kShapePadding);
  auto* const index = static_cast<int*>(hzBlock_.get());
  std::fill_n(index, kHzRows * kHzRows, -1);
  for (std::uint32_t i = 1, first, second; i < count; ++i) {
    entries.u8(first);
    entries.u8(second);
    entries.u16(length);
    entries.u32(offset);
    if (first == 0 && second == 0) continue;
    if (offset > size || length > size - offset) return hzBlock_ = {}, 0;
    const std::uint32_t row = (first - kFirstHzByte) & 0xFF;
    const std::uint32_t column = (second - kFirstHzByte) & 0xFF;
    if (row < kHzRows && column < kHzRows && offset >= start)
      index[row * kHzRows + column] = static_cast<int>(offset - start);
  }
  m_pHzData = reinterpret_cast<unsigned char*>(index) + kIndexSize;
  std::memcpy(m_pHzData, file.data() + start, data);
  m_fHzHeight = height ? static_cast<float>(height) : 16.0f;
  m_pHzIndex = reinterpret_cast<int(*)[kHzRows]>(index);
  return 1;
}

namespace qv::detail {

void draw_txt(const CShx& font, CSafeDC& safe, CPoint at, const char* text, float height, float angle, float width,
              int mirror) {
  const Axes txt = text_axes(angle, width / font.m_fTxtHeight, height / font.m_fTxtHeight, mirror);
  DrawingPen pen(safe, at.x, at.y, txt, txt);
  run_txt(font, text, pen);
}

void draw_hz(const CShx& font, CSafeDC& safe, CPoint at, const char* text, float height, float angle, float width,
             int mirror) {
  DrawingPen pen(safe, at.x, at.y, text_axes(angle, width / font.m_fTxtHeight, height / font.m_fTxtHeight, mirror),
                 text_axes(angle, width / font.m_fHzHeight, height / font.m_fHzHeight, mirror));
  run_hz(font, text, pen);
}

}  // namespace qv::detail

void CShx::DrawTxtShx(CDC* dc, int x, int y, const char* text, float height, float angle, float width, int mirror) {
  CSafeDC safe(dc);
  qv::detail::draw_txt(*this, safe, {x, y}, text, height, angle, width, mirror);
}

void CShx::DrawTxtShx(CDC* dc, const CPoint& point, const char* text, float height, float angle, float width,
                      int mirror) {
  DrawTxtShx(dc, point.x, point.y, text, height, angle, width, mirror);
}

void CShx::DrawHzShx(CDC* dc, int x, int y, const char* text, float height, float angle, float width, int mirror) {
  CSafeDC safe(dc);
  qv::detail::draw_hz(*this, safe, {x, y}, text, height, angle, width, mirror);
}

float CShx::GetTxtWidth(const char* text, float height, float ratio) {
  if (!txtAdvances_ || !text) return 0;
  double sum = 0;
  for (; *text; ++text) sum += txtAdvances_[static_cast<unsigned char>(*text)];
  return static_cast<float>(sum * height * ratio / m_fTxtHeight);
}

float CShx::GetHzWidth(const char* text, float height, float ratio) {
  if ((!m_pTxtIndex && !m_pHzIndex) || !text) return 0;
  double heights = 0;
  while (*text) {
    const FontCharacter character = next_character(text);
    if (!character.big) {
      if (m_pTxtIndex) heights += txtAdvances_[character.byte] / m_fTxtHeight;
    } else {
      const unsigned char* const shape = hz_shape(*this, character);
      heights += shape ? measure(shape) / m_fHzHeight : 1.0;
    }
  }
  return static_cast<float>(heights * height * ratio);
}

void CShx::DrawShx(const unsigned char* shape, CDC* dc, float& x, float& y, float a, float b, float c, float d) {
  CSafeDC safe(dc);
  const Axes axes = {a, b, c, d};
  DrawingPen pen(safe, x, y, axes, axes);
  qv::detail::run_shape(shape, pen);
  x = static_cast<float>(pen.x());
  y = static_cast<float>(pen.y());
}

void CShx::GetXY(unsigned char code, float& dx, float& dy) {
  const qv::detail::Vector vector = qv::detail::decode_vector(code);
  dx = static_cast<float>(vector.u);
  dy = static_cast<float>(vector.v);
}

float CShx::GetWidth(const unsigned char* shape) {
  return static_cast<float>(measure(shape));
}
