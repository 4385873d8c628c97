#include "qvtools/dxf/io/internal/record_reader.h"

#include <algorithm>
#include <vector>

#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/text/internal/fixed2.h"
#include "qvtools/text/numbers.h"

namespace qv::detail {

namespace {

/// The words that end a record, those that come often first.
constexpr Word kRecordEnds[] = {"LINE",   "VERTEX", "TEXT",   "CIRCLE", "ARC",     "SEQEND",   "POLYLINE", "SOLID",
                                "INSERT", "POINT",  "3DFACE", "ENDSEC", "ENDBLK",  "BLOCK",    "LAYER",    "LTYPE",
                                "STYLE",  "TABLE",  "ENDTAB", "TABLES", "SECTION", "ENTITIES", "VIEWPORT"};

/// A line as a terminated text, for the general parsers.
struct Terminated {
  char text[GroupReader::kMaxLine + 1];
  explicit Terminated(std::string_view line) {
    std::memcpy(text, line.data(), line.size());
    text[line.size()] = '\0';
  }
};

template <auto member>
bool read_kind(GroupReader& in, WorkingRecords& records) {
  return read_opened(in, records.*member);
}

struct Kind {
  Word keyword;
  ACAD_Entity_Type type;
  bool (*read)(GroupReader&, WorkingRecords&);
};

#define QV_KIND(KEYWORD, member) {kOpening<ACAD_##KEYWORD>, ACAD_TYPE_##KEYWORD, read_kind<&WorkingRecords::member>},
constexpr Kind kKinds[] = {QV_FOR_EACH_ENTITY_KIND(QV_KIND)};
#undef QV_KIND

}  // namespace

bool ends_record(const Line& value) {
  return std::ranges::find(kRecordEnds, value.word()) != std::end(kRecordEnds);
}

float real_of(const Line& value) {
  if (value.text == "0.00") return 0;  // as most Z coordinates are
  float v;
  if (parse_fixed2(value.text, v)) return v;
  return static_cast<float>(parse_real(value.text));
}

int integer_of(const Line& value) {
  return parse_int(value.text);
}

void text_of(const Line& line, char* field, std::size_t size) {
  const std::string_view text = line.value();
  if (text.size() >= size) return copy_text(field, size, Terminated(text).text);
  // Nearly all are short, and of as good as random length: a copy of fixed length needs no branch for it.
  constexpr std::size_t kShort = 16;
  if (text.size() < kShort && size >= kShort) {
    std::memcpy(field, text.data(), kShort);
  } else {
    std::memcpy(field, text.data(), text.size());
  }
  field[text.size()] = '\0';
}

bool read_rest(GroupReader&, ACAD_LTYPE& ltype) {
  ltype.m_nElements = std::clamp(ltype.m_nElements, 0, kMaxPatternElements);
  // Quirk: a line type with the misspelt name BYBLAYER is a solid line, as BYBLOCK is; old files have it.
  if (equals_field(ltype.m_szName, "BYBLOCK") || equals_field(ltype.m_szName, "BYBLAYER"))
    copy_text(ltype.m_szName, "CONTINUOUS");
  return true;
}

bool read_rest(GroupReader& in, ACAD_POLYLINE& polyline) {
  // Gathered aside: a vector doubles, where the polyline's own array grows by steps and many vertices would cost their
  // square. It is kept for the next polyline unless it has grown large.
  constexpr std::size_t kKept = 4096;
  thread_local std::vector<ACAD_VERTEX> vertices;
  const auto read = [&] {
    vertices.clear();
    while (in.next() && !in.at(0, "SEQEND")) {
      if (in.at(0, "VERTEX")) read_groups(in, vertices.emplace_back());
    }
    polyline.m_Vertices.SetSize(static_cast<int>(vertices.size()));
    std::copy(vertices.begin(), vertices.end(), polyline.m_Vertices.begin());
    return true;
  };
  const bool good = unless_out_of_memory(read, false);
  if (!good) in.fail();
  if (!good || vertices.capacity() > kKept) std::vector<ACAD_VERTEX>().swap(vertices);
  return good;
}

bool read_rest(GroupReader& in, ACAD_BLOCK& block) {
  const int ended = in.blocks_ended();
  while (in.blocks_ended() == ended) {
    const ACAD_Entity_Type type = read_entity(in, block.Records(), Within::Block);
    if (type >= ACAD_TYPE_NONE) break;
    if (type == ACAD_TYPE_INSERT) continue;  // blocks never hold nested inserts
    ACAD_ENTITY* copy = CloneEntity(*block.Records().Of(type));
    if (!copy || !block.m_EntityList.AddTail(copy)) {
      delete copy;
      in.fail();
      tell_error(301, "Out of memery When Read Block!");
      return false;
    }
  }
  while (in.blocks_ended() == ended && in.next()) {
  }
  return true;
}

ACAD_Entity_Type read_entity(GroupReader& in, WorkingRecords& records, Within within) {
  while (in.next()) {
    if (in.code() != 0) continue;
    const Kind* const kind = std::ranges::find(kKinds, in.value().word(), &Kind::keyword);
    if (kind != std::end(kKinds)) return kind->read(in, records) ? kind->type : ACAD_TYPE_NONE;
    if (in.at(0, "ENDSEC") || in.at(0, "EOF") || (within == Within::Block && in.at(0, "ENDBLK"))) return ACAD_TYPE_END;
  }
  return ACAD_TYPE_END;
}

}  // namespace qv::detail
