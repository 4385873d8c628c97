#include "qvtools/dxf/io/internal/record_reader.h"

#include <algorithm>
#include <vector>

#include "qvtools/text/numbers.h"

namespace qv::detail {

namespace {

/// The words that end a record, those that come often first.
constexpr Word kRecordEnds[] = {Word("LINE"),    Word("VERTEX"),   Word("TEXT"),    Word("CIRCLE"), Word("ARC"),
                                Word("SEQEND"),  Word("POLYLINE"), Word("SOLID"),   Word("INSERT"), Word("POINT"),
                                Word("3DFACE"),  Word("ENDSEC"),   Word("ENDBLK"),  Word("BLOCK"),  Word("LAYER"),
                                Word("LTYPE"),   Word("STYLE"),    Word("TABLE"),   Word("ENDTAB"), Word("TABLES"),
                                Word("SECTION"), Word("ENTITIES"), Word("VIEWPORT")};

constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// A line as a terminated text, for the general parsers.
struct Terminated {
  char text[GroupReader::kMaxLine + 1];
  explicit Terminated(std::string_view line) {
    std::memcpy(text, line.data(), line.size());
    text[line.size()] = '\0';
  }
};

/// "1234.56" with two decimals and up to six digits before them, as the writer writes nearly all: eight digits at a
/// time. Up to eight bytes behind the text are read. False for anything else.
bool written_real(std::string_view text, float& value) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  const bool negative = !text.empty() && text[0] == '-';
  const char* const first = text.data() + negative;
  const std::size_t length = text.size() - negative;  // d.dd at least
  if (length - 4 > 5 || first[length - 3] != '.') return false;
  const std::size_t before = length - 3;
  std::uint64_t digits;
  std::uint16_t decimals;
  std::memcpy(&digits, first, sizeof digits);
  std::memcpy(&decimals, first + before + 1, sizeof decimals);
  // The decimals are put behind the last digit before them, and what lies in front of the first digit are zeros. Only
  // nothing but 0 to 9 stays below 10 after the flip.
  digits = (digits ^ kOnes * '0') << 8 * (8 - before) >> 16 | static_cast<std::uint64_t>(decimals ^ 0x3030) << 48;
  if (((digits | (digits + kOnes * 118)) & kOnes << 7) != 0) return false;
  // Pairs, then fours, then all eight, each sum in the upper half of its lane.
  digits = digits * 10 + (digits >> 8);
  digits = ((digits & 0x000000FF000000FF) * 0x000F424000000064 +
            ((digits >> 16) & 0x000000FF000000FF) * 0x0000271000000001) >>
           32;
  // The product is not always the double nearest to the decimal, but always gives the float nearest to it: decimals of
  // this length that lie between two floats are farther from their middle than the product's error, or, as 0.25, exact.
  const auto magnitude = static_cast<float>(static_cast<std::int32_t>(digits) * 0.01);
  value = negative ? -magnitude : magnitude;
  return true;
}

/// Plain decimals of up to 15 digits: both the digits as an integer and the power of ten are exact in double, so their
/// quotient is what the general parser gives. False for anything else.
bool plain_real(std::string_view text, double& value) {
  const char* p = text.data();
  const char* const end = p + text.size();
  const bool negative = p != end && *p == '-';
  p += negative;
  std::uint64_t digits = 0;
  const char* const first = p;
  const char* point = nullptr;
  for (; p != end; ++p) {
    const unsigned digit = static_cast<unsigned char>(*p) - unsigned{'0'};
    if (digit <= 9) {
      digits = digits * 10 + digit;
    } else if (*p == '.' && !point) {
      point = p;
    } else {
      return false;
    }
  }
  const auto length = end - first;
  if (length == 0 || length > 15) return false;
  const auto decimals = point ? end - point - 1 : 0;
  const double magnitude = static_cast<double>(digits) / kPowersOfTen[decimals];
  value = negative ? -magnitude : magnitude;
  return true;
}

template <auto member>
bool read_kind(GroupReader& in, WorkingRecords& records) {
  return read_opened(in, records.*member);
}

struct Kind {
  Word keyword;
  ACAD_Entity_Type type;
  bool (*read)(GroupReader&, WorkingRecords&);
};

constexpr Kind kKinds[] = {
    {Word(kKeyword<ACAD_LINE>), ACAD_TYPE_LINE, read_kind<&WorkingRecords::m_Line>},
    {Word(kKeyword<ACAD_TEXT>), ACAD_TYPE_TEXT, read_kind<&WorkingRecords::m_Text>},
    {Word(kKeyword<ACAD_CIRCLE>), ACAD_TYPE_CIRCLE, read_kind<&WorkingRecords::m_Circle>},
    {Word(kKeyword<ACAD_POLYLINE>), ACAD_TYPE_POLYLINE, read_kind<&WorkingRecords::m_Polyline>},
    {Word(kKeyword<ACAD_ARC>), ACAD_TYPE_ARC, read_kind<&WorkingRecords::m_Arc>},
    {Word(kKeyword<ACAD_POINT>), ACAD_TYPE_POINT, read_kind<&WorkingRecords::m_Point>},
    {Word(kKeyword<ACAD_SOLID>), ACAD_TYPE_SOLID, read_kind<&WorkingRecords::m_Solid>},
    {Word(kKeyword<ACAD_3DFACE>), ACAD_TYPE_3DFACE, read_kind<&WorkingRecords::m_3DFace>},
    {Word(kKeyword<ACAD_INSERT>), ACAD_TYPE_INSERT, read_kind<&WorkingRecords::m_Insert>},
};

}  // namespace

bool ends_record(const Line& value) {
  return std::ranges::find(kRecordEnds, value.word()) != std::end(kRecordEnds);
}

float real_of(const Line& value) {
  if (value.text == "0.00") return 0;  // as most Z coordinates are
  if constexpr (std::endian::native == std::endian::little) {
    float written;
    if (written_real(value.text, written)) return written;
  }
  double v;
  return static_cast<float>(plain_real(value.text, v) ? v : parse_real(Terminated(value.text).text));
}

int integer_of(const Line& value) {
  return parse_int(Terminated(value.text).text);
}

void text_of(const Line& line, char* field, std::size_t size) {
  const std::string_view text = line.value();
  if (text.size() >= size) return copy_text(field, size, Terminated(text).text);
  std::memcpy(field, text.data(), text.size());
  field[text.size()] = '\0';
}

void read_rest(GroupReader&, ACAD_LTYPE& ltype) {
  // Quirk: the misspelt word stands for the layer's line type in old files, and is taken for a solid line.
  if (equals_field(ltype.m_szName, "BYBLOCK") || equals_field(ltype.m_szName, "BYBLAYER"))
    copy_text(ltype.m_szName, "CONTINUOUS");
}

void read_rest(GroupReader& in, ACAD_POLYLINE& polyline) {
  // Gathered aside: a vector doubles, where the polyline's own array grows by steps and many vertices would cost their
  // square. It is kept for the next polyline unless it has grown large.
  constexpr std::size_t kKept = 4096;
  static std::vector<ACAD_VERTEX> vertices;
  vertices.clear();
  while (in.next() && !in.at(0, "SEQEND")) {
    if (in.at(0, "VERTEX")) read_groups(in, vertices.emplace_back());
  }
  polyline.m_Vertices.SetSize(static_cast<int>(vertices.size()));
  std::copy(vertices.begin(), vertices.end(), polyline.m_Vertices.begin());
  if (vertices.capacity() > kKept) std::vector<ACAD_VERTEX>().swap(vertices);
}

void read_rest(GroupReader& in, ACAD_BLOCK& block) {
  const int ended = in.blocks_ended();
  while (in.blocks_ended() == ended) {
    const ACAD_Entity_Type type = read_entity(in, block, Within::Block);
    if (type >= ACAD_TYPE_NONE) break;
    if (type == ACAD_TYPE_INSERT) continue;  // blocks never hold nested inserts
    ACAD_ENTITY* copy = CloneEntity(*block.Of(type));
    if (!copy || !block.m_EntityList.AddTail(copy)) {
      delete copy;
      break;
    }
  }
  while (in.blocks_ended() == ended && in.next()) {
  }
}

ACAD_Entity_Type read_entity(GroupReader& in, WorkingRecords& records, Within within) {
  while (in.next()) {
    if (in.code() != 0) continue;
    if (in.at(0, "ENDSEC") || in.at(0, "EOF") || (within == Within::Block && in.at(0, "ENDBLK"))) return ACAD_TYPE_END;
    const Kind* const kind = std::ranges::find(kKinds, in.value().word(), &Kind::keyword);
    if (kind != std::end(kKinds)) return kind->read(in, records) ? kind->type : ACAD_TYPE_NONE;
  }
  return ACAD_TYPE_END;
}

}  // namespace qv::detail
