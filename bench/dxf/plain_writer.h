#pragma once

/// The baseline of writing: one fprintf for each group pair.

#include "workload.h"

namespace qvbench {

class PlainWriter {
 public:
  explicit PlainWriter(const char* path) : file_(std::fopen(path, "wb")) {}
  ~PlainWriter() { std::fclose(file_); }

  void document(const DXF& dxf) {
    section("HEADER");
    text(0, "ENDSEC");
    section("TABLES");
    table("LTYPE", dxf.m_pLType.get(), dxf.m_nLType);
    table("LAYER", dxf.m_pLayer.get(), dxf.m_nLayer);
    table("STYLE", dxf.m_pStyle.get(), dxf.m_nStyle);
    text(0, "ENDSEC");
    section("BLOCKS");
    text(0, "ENDSEC");
    section("ENTITIES");
    for_each_entity(dxf, [this](ACAD_ENTITY& entity) { any(entity); });
    text(0, "ENDSEC");
    text(0, "EOF");
  }

 private:
  void text(int code, const char* value) { std::fprintf(file_, "%3d\r\n%s\r\n", code, value); }
  void integer(int code, int value) { std::fprintf(file_, "%3d\r\n%d\r\n", code, value); }
  void real(int code, float value) { std::fprintf(file_, "%3d\r\n%.2f\r\n", code, static_cast<double>(value)); }
  void point(int code, const qv::Point3& p) {
    real(code, p.x);
    real(code + 10, p.y);
    real(code + 20, p.z);
  }
  void section(const char* name) {
    text(0, "SECTION");
    text(2, name);
  }
  template <class Entry>
  void table(const char* name, const Entry* entries, int count) {
    text(0, "TABLE");
    text(2, name);
    integer(70, count);
    for (int i = 0; i < count; ++i) {
      text(0, name);
      text(2, entries[i].m_szName);
      entry(entries[i]);
    }
    text(0, "ENDTAB");
  }
  void entry(const ACAD_LTYPE& r) {
    text(70, "64");
    text(3, r.m_szDescription);
    text(72, "65");
    integer(73, r.m_nElements);
    real(40, r.m_fLength);
    for (int i = 0; i < r.m_nElements; ++i) real(49, r.m_fElement[i]);
  }
  void entry(const ACAD_LAYER& r) {
    integer(70, r.m_nFlags);
    integer(62, r.m_nColor);
    text(6, r.m_szLType);
  }
  void entry(const ACAD_STYLE& r) {
    integer(70, r.m_nFlags);
    real(40, r.m_fHeight);
    real(41, r.m_fWidthFactor);
    real(50, r.m_fOblique);
    integer(71, r.m_nGeneration);
    real(42, r.m_fLastHeight);
    text(3, r.m_szFont);
    text(4, r.m_szBigFont);
  }
  template <class Record>
  void attributes(const char* keyword, const Record& r) {
    text(0, keyword);
    text(8, r.m_szLayer);
    if (std::strcmp(r.m_szLType, "BYLAYER") != 0) text(6, r.m_szLType);
    if (r.m_nColor >= 0) integer(62, r.m_nColor);
  }
  void any(ACAD_ENTITY& entity) {
    switch (entity.GetType()) {
      case ACAD_TYPE_LINE:
        return record(static_cast<ACAD_LINE&>(entity));
      case ACAD_TYPE_TEXT:
        return record(static_cast<ACAD_TEXT&>(entity));
      case ACAD_TYPE_CIRCLE:
        return record(static_cast<ACAD_CIRCLE&>(entity));
      case ACAD_TYPE_ARC:
        return record(static_cast<ACAD_ARC&>(entity));
      case ACAD_TYPE_POLYLINE:
        return record(static_cast<ACAD_POLYLINE&>(entity));
      default:
        return;
    }
  }
  void record(const ACAD_LINE& r) {
    attributes("LINE", r);
    point(10, r.m_Start);
    point(11, r.m_End);
  }
  void record(const ACAD_TEXT& r) {
    attributes("TEXT", r);
    point(10, r.m_Insert);
    real(40, r.m_fHeight);
    point(11, r.m_Align);
    real(41, r.m_fWidthFactor);
    integer(72, r.m_nJustify);
    text(1, r.m_szText);
    text(7, r.m_szStyle);
    real(50, r.m_fRotation);
  }
  void record(const ACAD_CIRCLE& r) {
    attributes("CIRCLE", r);
    point(10, r.m_Center);
    real(40, r.m_fRadius);
  }
  void record(const ACAD_ARC& r) {
    attributes("ARC", r);
    point(10, r.m_Center);
    real(40, r.m_fRadius);
    real(50, r.m_fStartAngle);
    real(51, r.m_fEndAngle);
  }
  void record(const ACAD_POLYLINE& r) {
    attributes("POLYLINE", r);
    text(66, "  1");
    point(10, {});
    real(40, r.m_fStartWidth);
    real(41, r.m_fEndWidth);
    integer(70, r.m_nFlags);
    for (const ACAD_VERTEX& v : r.m_Vertices) {
      attributes("VERTEX", v);
      point(10, v.m_Point);
      integer(70, v.m_nFlags);
      real(40, v.m_fStartWidth);
      real(41, v.m_fEndWidth);
      real(42, v.m_fBulge);
    }
    text(0, "SEQEND");
  }

  std::FILE* file_;
};

}  // namespace qvbench
