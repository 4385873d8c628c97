#pragma once

/// The symbol-table records: line types, layers and text styles.

#include "qvtools/dxf/model/entity.h"

namespace qv {
inline constexpr int kMaxPatternElements = 30;
}

/// The root of the table records. Copying it copies nothing.
class QV_API ACAD_TABLE {
 public:
  ACAD_TABLE() = default;
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

  char m_szName[qv::kNameSize] = "CONTINUOUS";
  char m_szDescription[qv::kNameSize] = "Solid Line";
  int m_nAlign = 65;    ///< always written as 65
  int m_nElements = 0;  ///< at most 30
  float m_fLength = 0;  ///< total length of the pattern
  float m_fElement[qv::kMaxPatternElements] = {};
};

class QV_API ACAD_LAYER final : public ACAD_TABLE {
 public:
  int Read(std::FILE* file) override;
  int Write(std::FILE* file) override;

  char m_szName[qv::kNameSize] = "0";
  int m_nFlags = 64;
  int m_nColor = 7;
  char m_szLType[qv::kNameSize] = "CONTINUOUS";
};

/// A text style: its fonts, and the proportions that its texts start from.
class QV_API ACAD_STYLE final : public ACAD_TABLE {
 public:
  int Read(std::FILE* file) override;
  int Write(std::FILE* file) override;

  char m_szName[qv::kNameSize] = "STANDARD";
  int m_nFlags = 64;
  float m_fHeight = 0;  ///< 0: every text has its own
  float m_fWidthFactor = 0.75F;
  float m_fOblique = 0;
  int m_nGeneration = 0;
  float m_fLastHeight = 0.2F;
  char m_szFont[qv::kFontFileSize] = "txt";
  char m_szBigFont[qv::kFontFileSize] = "";
};
