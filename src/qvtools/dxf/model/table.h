#pragma once

/// The symbol-table records: line types, layers and text styles.

#include "qvtools/dxf/model/entity.h"

namespace qv {
inline constexpr int kMaxPatternElements = 30;  ///< elements of a line type at most
}

/// The root of the table records. Copying it copies nothing.
class QV_API ACAD_TABLE {
 public:
  ACAD_TABLE() = default;
  /// Copying copies nothing.
  ACAD_TABLE(const ACAD_TABLE&) {}
  ACAD_TABLE& operator=(const ACAD_TABLE&) { return *this; }
  /// Reads or writes the record, as the entities do. The root does nothing and returns 1.
  virtual int Read(std::FILE* /*file*/) { return 1; }
  virtual int Write(std::FILE* /*file*/) { return 1; }

 protected:
  ~ACAD_TABLE() = default;
};

/// A line type: a pattern of dashes (positive), gaps (negative) and dots (0), in drawing units.
class QV_API ACAD_LTYPE final : public ACAD_TABLE {
 public:
  int Read(std::FILE* file) override;
  int Write(std::FILE* file) override;

  char m_szName[qv::kNameSize] = "CONTINUOUS";         ///< group 2
  char m_szDescription[qv::kNameSize] = "Solid Line";  ///< group 3
  int m_nAlign = 65;                                   ///< always written as 65
  int m_nElements = 0;                                 ///< at most 30
  float m_fLength = 0;                                 ///< total length of the pattern
  float m_fElement[qv::kMaxPatternElements] = {};      ///< groups 49
};

/// A layer: what entities have that say "by layer".
class QV_API ACAD_LAYER final : public ACAD_TABLE {
 public:
  int Read(std::FILE* file) override;
  int Write(std::FILE* file) override;

  char m_szName[qv::kNameSize] = "0";            ///< group 2
  int m_nFlags = 64;                             ///< group 70: 1 frozen, 64 in use
  int m_nColor = 7;                              ///< group 62; negative where the layer is off
  char m_szLType[qv::kNameSize] = "CONTINUOUS";  ///< group 6
};

/// A text style: its fonts, and the proportions that its texts start from.
class QV_API ACAD_STYLE final : public ACAD_TABLE {
 public:
  int Read(std::FILE* file) override;
  int Write(std::FILE* file) override;

  char m_szName[qv::kNameSize] = "STANDARD";  ///< group 2
  int m_nFlags = 64;                          ///< group 70
  float m_fHeight = 0;                        ///< 0: every text has its own
  float m_fWidthFactor = 0.75F;               ///< group 41
  float m_fOblique = 0;                       ///< group 50: the slant in degrees; texts are drawn upright
  int m_nGeneration = 0;                      ///< group 71; kept
  float m_fLastHeight = 0.2F;                 ///< group 42
  char m_szFont[qv::kFontFileSize] = "txt";   ///< group 3: the font of single bytes
  char m_szBigFont[qv::kFontFileSize] = "";   ///< group 4: the big font; "" for none
};
