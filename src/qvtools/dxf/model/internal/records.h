#pragma once

/// The one description of every record: its keyword, and its groups in the order in which they are written. Writer and
/// reader both run off it. A visitor's rows:
///   text<code>(field)     a text field                      real<code>(field)     a float, "%.2f"
///   integer<code>(field)  an int                            point<code>(point)    codes code, code + 10, code + 20
///   ltype<code>(field)    a line type, not written when it is "BYLAYER"
///   color<code>(field)    a colour, not written when it is negative
///   constant<code>(text)  always written so, not read       stored<code>(field)   read, never written
/// Source of codes and order: the ASCII DXF of the flat form (release 9 to 12).

#include "qvtools/dxf/model/block.h"
#include "qvtools/dxf/model/table.h"

namespace qv::detail {

/// The keyword that opens a record in the file.
template <class Record>
inline constexpr std::string_view kKeyword;
template <>
inline constexpr std::string_view kKeyword<ACAD_LTYPE> = "LTYPE";
template <>
inline constexpr std::string_view kKeyword<ACAD_LAYER> = "LAYER";
template <>
inline constexpr std::string_view kKeyword<ACAD_STYLE> = "STYLE";
template <>
inline constexpr std::string_view kKeyword<ACAD_VERTEX> = "VERTEX";
template <>
inline constexpr std::string_view kKeyword<ACAD_BLOCK> = "BLOCK";
#define QV_KIND(KEYWORD, member) \
  template <>                    \
  inline constexpr std::string_view kKeyword<ACAD_##KEYWORD> = #KEYWORD;
QV_FOR_EACH_ENTITY_KIND(QV_KIND)
#undef QV_KIND

/// `Record` is the record, const for a writer.
template <class Record, class Bare>
concept RecordOf = std::is_same_v<std::remove_const_t<Record>, Bare>;

void describe(auto& v, RecordOf<ACAD_LTYPE> auto& r) {
  v.template text<2>(r.m_szName);
  v.template constant<70>("64");
  v.template text<3>(r.m_szDescription);
  v.template constant<72>("65");
  v.template stored<72>(r.m_nAlign);
  v.template integer<73>(r.m_nElements);
  v.template real<40>(r.m_fLength);
  v.elements(r);  // one group 49 for each element
}

void describe(auto& v, RecordOf<ACAD_LAYER> auto& r) {
  v.template text<2>(r.m_szName);
  v.template integer<70>(r.m_nFlags);
  v.template integer<62>(r.m_nColor);
  v.template text<6>(r.m_szLType);
}

void describe(auto& v, RecordOf<ACAD_STYLE> auto& r) {
  v.template text<2>(r.m_szName);
  v.template integer<70>(r.m_nFlags);
  v.template real<40>(r.m_fHeight);
  v.template real<41>(r.m_fWidthFactor);
  v.template real<50>(r.m_fOblique);
  v.template integer<71>(r.m_nGeneration);
  v.template real<42>(r.m_fLastHeight);
  v.template text<3>(r.m_szFont);
  v.template text<4>(r.m_szBigFont);
}

void describe(auto& v, RecordOf<ACAD_POINT> auto& r) {
  v.template text<8>(r.m_szLayer);
  v.template point<10>(r.m_Point);
}

/// The groups that every other entity but the insert begins with.
void describe_attributes(auto& v, auto& r) {
  v.template text<8>(r.m_szLayer);
  v.template ltype<6>(r.m_szLType);
  v.template color<62>(r.m_nColor);
}

void describe(auto& v, RecordOf<ACAD_LINE> auto& r) {
  describe_attributes(v, r);
  v.template point<10>(r.m_Start);
  v.template point<11>(r.m_End);
}

void describe(auto& v, RecordOf<ACAD_TEXT> auto& r) {
  describe_attributes(v, r);
  v.template point<10>(r.m_Insert);
  v.template real<40>(r.m_fHeight);
  v.template point<11>(r.m_Align);
  v.template real<41>(r.m_fWidthFactor, r.m_bWidthGiven);
  v.template integer<72>(r.m_nJustify);
  v.template text<1>(r.m_szText);
  v.template text<7>(r.m_szStyle);
  v.template real<50>(r.m_fRotation);
}

void describe(auto& v, RecordOf<ACAD_CIRCLE> auto& r) {
  describe_attributes(v, r);
  v.template point<10>(r.m_Center);
  v.template real<40>(r.m_fRadius);
}

void describe(auto& v, RecordOf<ACAD_ARC> auto& r) {
  describe_attributes(v, r);
  v.template point<10>(r.m_Center);
  v.template real<40>(r.m_fRadius);
  v.template real<50>(r.m_fStartAngle);
  v.template real<51>(r.m_fEndAngle);
}

/// The header alone; the vertices follow it as records of their own, up to SEQEND.
void describe(auto& v, RecordOf<ACAD_POLYLINE> auto& r) {
  describe_attributes(v, r);
  v.template constant<66>("  1");
  v.template constant<10>("0.00");  // the header stands at the origin; its first point is read only
  v.template constant<20>("0.00");
  v.template constant<30>("0.00");
  v.template stored<10>(r.m_First);
  v.template real<40>(r.m_fStartWidth);
  v.template real<41>(r.m_fEndWidth);
  v.template integer<70>(r.m_nFlags);
}

void describe(auto& v, RecordOf<ACAD_VERTEX> auto& r) {
  describe_attributes(v, r);
  v.template point<10>(r.m_Point);
  v.template integer<70>(r.m_nFlags);
  v.template real<40>(r.m_fStartWidth);
  v.template real<41>(r.m_fEndWidth);
  v.template real<42>(r.m_fBulge);
}

template <class Record>
concept FourCorners = RecordOf<Record, ACAD_SOLID> || RecordOf<Record, ACAD_3DFACE>;

void describe(auto& v, FourCorners auto& r) {
  describe_attributes(v, r);
  v.template point<10>(r.m_Corner[0]);
  v.template point<11>(r.m_Corner[1]);
  v.template point<12>(r.m_Corner[2]);
  v.template point<13>(r.m_Corner[3]);
}

void describe(auto& v, RecordOf<ACAD_INSERT> auto& r) {
  v.template text<8>(r.m_szLayer);
  v.template text<2>(r.m_szBlock);
  v.template point<10>(r.m_Insert);
  v.template real<41>(r.m_fScaleX);
  v.template real<42>(r.m_fScaleY);
  v.template real<50>(r.m_fRotation);
}

/// The header alone; the entities follow it, up to ENDBLK.
void describe(auto& v, RecordOf<ACAD_BLOCK> auto& r) {
  v.template text<8>(r.m_szLayer);
  v.template text<2>(r.m_szName);
  v.template integer<70>(r.m_nFlags);
  v.template point<10>(r.m_Base);
}

}  // namespace qv::detail
