#pragma once

/// SHX shape fonts: text drawn as strokes, exactly as the CAD system draws it. One text font serves single bytes, one
/// big font the two-byte characters of GB2312.

#include <memory>
#include <span>

#include "qvtools/platform/device.h"

class CShx;

namespace qv {

/// Loads the text font or the big font of a shape file of any kind into `font`; what is not plain is made plain
/// (`plain_text_font` and `plain_big_font` in shape_file.h). Returns 1, or 0 when the font has one already, or the file
/// has no characters for it; then the font is as it was.
QV_API int LoadTextFont(CShx& font, const char* path);
QV_API int LoadBigFont(CShx& font, const char* path);

struct FontBlocks;

}  // namespace qv

/// A text font and a big font. Copies share the loaded fonts; the buffers live until the last copy is gone. Texts are
/// GBK bytes; null texts count as empty.
class QV_API CShx {
 public:
  /// Height of the text font's capitals in shape units.
  float m_fTxtHeight = 6;
  /// For each byte, the offset of its shape in `m_pTxtData`; null while no text font is loaded.
  int* m_pTxtIndex = nullptr;
  unsigned char* m_pTxtData = nullptr;  ///< the shapes, owned; null while no text font is loaded
  /// The offset of the shape that stands for characters that the font lacks: that of "?", or 0.
  int m_nTxtDefault = 0;
  /// Height of the big font in shape units.
  float m_fHzHeight = 16;
  /// For each row and column of GB2312, from 0, the offset of its shape in `m_pHzData` or -1; null while no big font is
  /// loaded.
  int (*m_pHzIndex)[94] = nullptr;
  unsigned char* m_pHzData = nullptr;  ///< the shapes, owned; null while no big font is loaded

  CShx();
  /// Copies share the fonts.
  CShx(const CShx& other);
  CShx& operator=(const CShx& other);
  ~CShx();

  /// Loads the text font from the file dir + name. Returns 1, or 0 when a text font is loaded already (it stays), the
  /// file cannot be opened, is no whole font, or memory runs out; then no font is loaded.
  int SetTxtFont(const char* dir, const char* name);
  /// The same for the big font.
  int SetHzFont(const char* dir, const char* name);

  /// Draws the text in the text font from the device point (x, y) on with the pen of `dc`, clipped. `height` is that of
  /// a capital and `width` the same times the width factor, both in device units; `angle` is in radians. With
  /// mirror = 1 the text stands upright on a device whose y runs down, and the angle is counter-clockwise on it.
  /// Draws nothing while no text font is loaded.
  void DrawTxtShx(CDC* dc, int x, int y, const char* text, float height, float angle, float width, int mirror);
  void DrawTxtShx(CDC* dc, const CPoint& point, const char* text, float height, float angle, float width, int mirror);
  /// Draws a text that may mix both fonts, on one base line: a byte from 0xA1 on that another byte follows is a
  /// character of the big font, in which `height` is the font's height. One that the big font lacks leaves a space of
  /// the text's width.
  void DrawHzShx(CDC* dc, int x, int y, const char* text, float height, float angle, float width, int mirror);

  /// The advance of the text at this height, in the height's unit, with `ratio` as the width factor; pen-up moves
  /// count, so the next text begins there. 0 while no font is loaded.
  float GetTxtWidth(const char* text, float height, float ratio);
  float GetHzWidth(const char* text, float height, float ratio);

 protected:
  /// Draws one shape record of a loaded font (its name first) with the pen from (x, y), which moves on. (a, b) is the
  /// shape's x axis in device units, (c, d) its y axis.
  void DrawShx(const unsigned char* shape, CDC* dc, float& x, float& y, float a, float b, float c, float d);
  /// The displacement of a vector byte: its length times one of sixteen directions.
  void GetXY(unsigned char code, float& dx, float& dy);
  /// The advance of one shape record in shape units.
  float GetWidth(const unsigned char* shape);

 private:
  friend struct qv::FontBlocks;
  int adopt_txt(std::span<const unsigned char> file);
  int adopt_hz(std::span<const unsigned char> file);
  std::shared_ptr<void> txtBlock_;  // the loaded fonts, with what is known of their shapes
  std::shared_ptr<void> hzBlock_;
  const double* txtAdvances_ = nullptr;  // of each byte's shape, in shape units
};

/// The fonts that the whole library measures and draws with; the host program loads them.
extern QV_API CShx G_ShapeFont;
/// Text height and width factor where nothing else is said.
extern QV_API float G_HightText;
extern QV_API float G_RatioText;
