#include <algorithm>
#include <cstring>

#include "qvtools/dxf/io/internal/group_writer.h"
#include "qvtools/dxf/model/document.h"
#include "qvtools/dxf/model/internal/walk.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/services/report_subject.h"
#include "qvtools/services/services.h"
#include "qvtools/system/saved_file.h"
#include "qvtools/text/gbk_text.h"

using namespace qv::detail;

namespace {

// Files of our own are binary streams: their line ends are written as they are.
using Writer = GroupWriter<LineEnd::CrLf>;

template <std::size_t N>
constexpr auto frame(const char (&text)[N]) {
  return Lines<LineEnd::CrLf, N>(text);
}

constexpr auto kHeader = frame("  0\nSECTION\n  2\nHEADER\n");
constexpr auto kCodePage = frame("  9\n$ACADVER\n  1\nAC1009\n  9\n$DWGCODEPAGE\n  3\nANSI_936\n");
constexpr auto kTables = frame("  0\nENDSEC\n  0\nSECTION\n  2\nTABLES\n");
constexpr auto kTable = frame("  0\nTABLE");  // groups follow
constexpr auto kEndTab = frame("  0\nENDTAB\n");
constexpr auto kEndSec = frame("  0\nENDSEC\n");
constexpr auto kBlocks = frame("  0\nSECTION\n  2\nBLOCKS\n");
constexpr auto kEndBlk = frame("  0\nENDBLK\n");
constexpr auto kEntities = frame("  0\nSECTION\n  2\nENTITIES\n");
constexpr auto kEnd = frame("  0\nENDSEC\n  0\nEOF\n");

template <class Entry>
bool write_table(Writer& writer, const Entry* table, int count, const char* emptyMessage) {
  writer.lines(kTable);
  if (!table || count < 1) {
    writer.end_groups();
    tell_error(301, emptyMessage);
    return false;
  }
  writer.text<2>(kKeyword<Entry>.data());
  writer.integer<70>(count);
  writer.end_groups();
  for (int i = 0; i < count; ++i) writer.record(table[i]);
  writer.lines(kEndTab);
  return true;
}

bool write_tables(Writer& writer, const DXF& dxf) {
  writer.lines(kHeader);
  if (dxf.m_bCodePageHeader) writer.lines(kCodePage);
  writer.lines(kTables);
  if (!write_table(writer, dxf.m_pLType.get(), dxf.m_nLType, "Num_LType <= 0 !")) return false;
  if (!write_table(writer, dxf.m_pLayer.get(), dxf.m_nLayer, "Num_Layer <= 0 !")) return false;
  if (!write_table(writer, dxf.m_pStyle.get(), dxf.m_nStyle, "Num_Style <= 0 !")) return false;
  writer.lines(kEndSec);
  return true;
}

}  // namespace

template <class Compose>
int DXF::write_frame(const Compose& compose) {
  if (m_nMemFlag) return 1;
  if (!m_fp) return 0;
  char buffer[2 * Writer::kRecordRoom];
  Writer writer(buffer, sizeof buffer, to_stream(m_fp));
  compose(writer);
  return writer.flush() && !std::ferror(m_fp) ? 1 : 0;
}

int DXF::Write_Tables() {
  if (m_nMemFlag) return 1;
  if (m_nOpenMode != 0) return 0;
  bool complete = false;
  return write_frame([&](Writer& writer) { complete = write_tables(writer, *this); }) && complete ? 1 : 0;
}

int DXF::Begin_AllBlocks() {
  return write_frame([](Writer& writer) { writer.lines(kBlocks); });
}

int DXF::End_AllBlocks() {
  return write_frame([](Writer& writer) { writer.lines(kEndSec); });
}

int DXF::Begin_OneBlock(const char* name, float x, float y, float z, const char* layer, const char* /*ignored*/,
                        const char* flags) {
  return write_frame([&](Writer& writer) {
    ACAD_BLOCK header({std::shared_ptr<void>(), &blockRecords_});
    qv::copy_text(header.m_szLayer, layer);
    qv::copy_text(header.m_szName, name);
    header.m_nFlags = static_cast<int>(reinterpret_cast<std::intptr_t>(flags));
    header.m_Base = {x, y, z};
    writer.record(header);
  });
}

int DXF::End_OneBlock() {
  return write_frame([](Writer& writer) { writer.lines(kEndBlk); });
}

int DXF::Begin_Entity() {
  return write_frame([](Writer& writer) { writer.lines(kEntities); });
}

int DXF::End_Entity() {
  return write_frame([](Writer& writer) { writer.lines(kEnd); });
}

namespace {

/// Flat readers find a section by its word behind any name's group code.
bool reads_as_section(const char* name) {
  return std::strcmp(name, "TABLES") == 0 || std::strcmp(name, "BLOCKS") == 0 || std::strcmp(name, "ENTITIES") == 0;
}

template <class Entry>
bool any_reads_as_section(const Entry* table, int count) {
  return table &&
         std::any_of(table, table + count, [](const Entry& entry) { return reads_as_section(entry.m_szName); });
}

/// Reports once that a file of the drawing will not be read rightly.
void report_section_names(const DXF& dxf) {
  bool any = any_reads_as_section(dxf.m_pLType.get(), dxf.m_nLType) ||
             any_reads_as_section(dxf.m_pLayer.get(), dxf.m_nLayer) ||
             any_reads_as_section(dxf.m_pStyle.get(), dxf.m_nStyle);
  for (POSITION at = dxf.m_BlockList.GetHeadPosition(); at && !any;)
    any = reads_as_section(static_cast<ACAD_BLOCK*>(dxf.m_BlockList.GetNext(at))->m_szName);
  if (any) tell_error(20, "A Name Reads As A Section In DXF File !");
}

}  // namespace

int DXF::Write_MemDxf_To_File(const char* fileName) {
  if (!m_nMemFlag) return 0;
  if (is_cut_short_of(fileName)) {
    tell_error(301, "The Drawing Was Not Read To Its End: Its File Is Kept !");
    return 0;
  }
  report_section_names(*this);
  qv::copy_text(m_szFileName, fileName);
  qv::SavedFile file(fileName);
  constexpr std::size_t kBlock = std::size_t{1} << 18;
  const std::unique_ptr<char[]> buffer(new (std::nothrow) char[kBlock]);
  if (!file.is_open() || !buffer) return 0;
  m_nOpenMode = 0;

  Writer writer(buffer.get(), kBlock, [&](const char* data, std::size_t size) { return file.write(data, size); });
  write_tables(writer, *this);
  writer.lines(kBlocks);
  for (POSITION at = m_BlockList.GetHeadPosition(); at;)
    write_block(writer, *static_cast<ACAD_BLOCK*>(m_BlockList.GetNext(at)));
  writer.lines(kEndSec);
  writer.lines(kEntities);
  walk(m_EntityList, [&](ACAD_ENTITY& entity) { write_any(writer, entity); });
  writer.lines(kEnd);
  const bool saved = writer.flush() && file.commit();
  if (writer.any_not_finite()) tell_error(20, "A Coordinate Is Not A Finite Number !");
  return saved ? 1 : 0;
}

namespace {

/// The entry that was found; reports its name when it is in no table.
template <class Entry>
const Entry* found_or_told(const Entry* entry, const char* name, const char* message) {
  if (entry) return entry;
  const qv::ReportSubject subject(name);
  tell_error(301, message);
  return nullptr;
}

}  // namespace

template <class Record>
bool DXF::set_attributes(Record& record, const char* layer, const char* color, const char* ltype) {
  if (!m_pLayer) tell_once_not_open("The Drawing Is Closed: It Has No Layers !");
  const ACAD_LAYER* present = found_or_told(find_layer(layer), layer, "Layer Name Error !");
  if (!present) return false;
  const bool byLayer = qv::is_literal(ltype, "BYLAYER");
  const ACAD_LTYPE* presentType = byLayer ? nullptr : found_or_told(find_ltype(ltype), ltype, "LType Name Error !");
  if (!byLayer && !presentType) return false;
  std::memcpy(record.m_szLayer, present->m_szName, sizeof record.m_szLayer);
  if (byLayer)
    std::memcpy(record.m_szLType, "BYLAYER", sizeof "BYLAYER");
  else
    std::memcpy(record.m_szLType, presentType->m_szName, sizeof record.m_szLType);
  record.m_nColor = qv::is_literal(color, "BYLAYER") ? qv::kByLayer : qv::parse_int(color);
  return true;
}

template <class Record>
int DXF::put(Record& record) {
  if (!m_nMemFlag) {
    if (!m_fp || std::ferror(m_fp)) return 0;
    return write_record<LineEnd::CrLf>(m_fp, record);
  }
  ACAD_ENTITY* const copy = qv::CloneEntity(record);
  if (copy && m_EntityList.AddTail(copy)) return 1;
  delete copy;
  tell_out_of_memory();
  return 0;
}

int DXF::Write_Point(float x, float y, float z, const char* layer) {
  if (!m_pLayer) tell_once_not_open("The Drawing Is Closed: It Has No Layers !");
  const ACAD_LAYER* present = found_or_told(find_layer(layer), layer, "Layer Name Error !");
  if (!present) return 0;
  std::memcpy(m_Point.m_szLayer, present->m_szName, sizeof m_Point.m_szLayer);
  m_Point.m_Point = {x, y, z};
  return put(m_Point);
}

int DXF::Write_Line(float x1, float y1, float z1, float x2, float y2, float z2, const char* layer, const char* color,
                    const char* ltype) {
  if (!set_attributes(m_Line, layer, color, ltype)) return 0;
  m_Line.m_Start = {x1, y1, z1};
  m_Line.m_End = {x2, y2, z2};
  return put(m_Line);
}

int DXF::Write_Text(float x, float y, float z, float height, float rotation, const char* text, const char* style,
                    const char* layer, const char* color, const char* ltype) {
  if (!set_attributes(m_Text, layer, color, ltype)) return 0;
  const ACAD_STYLE* present = found_or_told(find_style(style), style, "Style Name Error !");
  if (!present) return 0;
  std::memcpy(m_Text.m_szStyle, present->m_szName, sizeof m_Text.m_szStyle);
  m_Text.m_fWidthFactor = present->m_fWidthFactor;
  m_Text.m_Insert = {x, y, z};
  m_Text.m_fHeight = height;
  m_Text.m_fRotation = rotation;
  qv::copy_text(m_Text.m_szText, text);
  return put(m_Text);
}

int DXF::Write_Circle(float x, float y, float z, float radius, const char* layer, const char* color,
                      const char* ltype) {
  if (!set_attributes(m_Circle, layer, color, ltype)) return 0;
  m_Circle.m_Center = {x, y, z};
  m_Circle.m_fRadius = radius;
  return put(m_Circle);
}

int DXF::Write_Arc(float x, float y, float z, float radius, float startAngle, float endAngle, const char* layer,
                   const char* color, const char* ltype) {
  if (!set_attributes(m_Arc, layer, color, ltype)) return 0;
  m_Arc.m_Center = {x, y, z};
  m_Arc.m_fRadius = radius;
  m_Arc.m_fStartAngle = startAngle;
  m_Arc.m_fEndAngle = endAngle;
  return put(m_Arc);
}

int DXF::Write_Pline(float x1, float y1, float z1, float x2, float y2, float z2, float startWidth, float endWidth,
                     const char* layer, const char* color, const char* ltype) {
  const float x[2] = {x1, x2};
  const float y[2] = {y1, y2};
  const float z[2] = {z1, z2};
  const float bulge[2] = {};
  const float start[2] = {startWidth, startWidth};
  const float end[2] = {endWidth, endWidth};
  return Write_Pline(2, x, y, z, bulge, 0, start, end, layer, color, ltype);
}

int DXF::Write_Pline(int count, const float* x, const float* y, const float* z, const float* bulge, int flags,
                     const float* startWidth, const float* endWidth, const char* layer, const char* color,
                     const char* ltype) {
  m_Polyline.Ini();
  if (!set_attributes(m_Polyline, layer, color, ltype)) return 0;
  const auto make_room = [&] { return m_Polyline.m_Vertices.SetSize(count), true; };
  if (!unless_out_of_memory(make_room, false)) return 0;
  m_Polyline.m_First = {x[0], y[0], z[0]};
  m_Polyline.m_Second = {x[1], y[1], z[1]};
  m_Polyline.m_fStartWidth = startWidth[0];
  m_Polyline.m_fEndWidth = endWidth[0];
  m_Polyline.m_nFlags = flags;
  for (int i = 0; i < count; ++i) {
    ACAD_VERTEX& vertex = m_Polyline.m_Vertices[i];
    vertex.m_Point = {x[i], y[i], z[i]};
    vertex.m_fStartWidth = startWidth[i];
    vertex.m_fEndWidth = endWidth[i];
    vertex.m_fBulge = bulge[i];
  }
  return put(m_Polyline);
}

int DXF::Write_Solid(float x1, float y1, float z1, float x2, float y2, float z2, float x3, float y3, float z3, float x4,
                     float y4, float z4, const char* layer, const char* color, const char* ltype) {
  if (!set_attributes(m_Solid, layer, color, ltype)) return 0;
  const qv::Point3 corners[4] = {{x1, y1, z1}, {x2, y2, z2}, {x3, y3, z3}, {x4, y4, z4}};
  std::copy_n(corners, 4, m_Solid.m_Corner);
  return put(m_Solid);
}

int DXF::Write_3DFace(float x1, float y1, float z1, float x2, float y2, float z2, float x3, float y3, float z3,
                      float x4, float y4, float z4, const char* layer, const char* color, const char* ltype) {
  if (!set_attributes(m_3DFace, layer, color, ltype)) return 0;
  const qv::Point3 corners[4] = {{x1, y1, z1}, {x2, y2, z2}, {x3, y3, z3}, {x4, y4, z4}};
  std::copy_n(corners, 4, m_3DFace.m_Corner);
  return put(m_3DFace);
}
