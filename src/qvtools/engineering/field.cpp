#include "qvtools/engineering/field.h"

#include "qvtools/engineering/internal/field_mesh.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/system/textfile.h"
#include "qvtools/text/numbers.h"

using namespace qv::detail;

namespace {

// Room for seven of the longest floats with six decimals.
constexpr int kLine = 400;

/// Appends up to `count` records, as far as the file goes. Room doubles as records come, so that a wrong count takes no
/// memory.
template <class Record>
void load_records(CArray<Record>& records, int count, std::FILE* fp) {
  int size = records.GetSize();
  const std::int64_t wanted = static_cast<std::int64_t>(size) + std::max(count, 0);
  Record record;
  for (; size < wanted && record.LoadData(fp); ++size) {
    if (size == records.GetSize()) records.SetSize(static_cast<int>(std::min<std::int64_t>(wanted, 2LL * size + 1024)));
    records[size] = record;
  }
  records.SetSize(size);
  records.FreeExtra();
}

}  // namespace

int CChangNode::LoadData(std::FILE* fp) {
  char line[kLine];
  *this = CChangNode();
  if (!qv::read_line(line, kLine, fp)) return 0;
  qv::vsscanf(line, "%f,%f,%f,%f,%f,%f,%f", &x, &y, value, value + 1, value + 2, value + 3, value + 4);
  return 1;
}

int CChangNode::SaveData(std::FILE* fp) const {
  const auto d = [](float v) { return static_cast<double>(v); };
  std::fputs(qv::FormattedText<kLine>("%f,%f,%f,%f,%f,%f,%f\n", d(x), d(y), d(value[0]), d(value[1]), d(value[2]),
                                      d(value[3]), d(value[4])),
             fp);
  return 1;
}

int CChangTri::LoadData(std::FILE* fp) {
  char line[kLine];
  *this = CChangTri();
  if (!qv::read_line(line, kLine, fp)) return 0;
  qv::vsscanf(line, "%d,%d,%d", node, node + 1, node + 2);
  return 1;
}

int CChangTri::SaveData(std::FILE* fp) const {
  std::fputs(qv::FormattedText<kLine>("%d,%d,%d\n", node[0], node[1], node[2]), fp);
  return 1;
}

CChang::~CChang() = default;

int CChang::LoadData(std::FILE* fp) {
  char line[kLine];
  int nodes = 0;
  int tris = 0;
  if (qv::read_line(line, kLine, fp)) qv::vsscanf(line, "%d,%d", &nodes, &tris);
  const int nodesBefore = m_Nodes.GetSize();
  const int trisBefore = m_Tris.GetSize();
  const auto load = [&] { return load_records(m_Nodes, nodes, fp), load_records(m_Tris, tris, fp), true; };
  const bool loaded = unless_out_of_memory(load, false);
  if (loaded && !std::ferror(fp)) return 1;
  if (loaded) tell_error(301, "Read Error in Field !");
  m_Nodes.SetSize(nodesBefore);
  m_Tris.SetSize(trisBefore);
  return 0;
}

int CChang::SaveData(std::FILE* fp) const {
  std::fputs(qv::FormattedText<kLine>("%d,%d\n", m_Nodes.GetSize(), m_Tris.GetSize()), fp);
  for (const CChangNode& node : m_Nodes) node.SaveData(fp);
  for (const CChangTri& tri : m_Tris) tri.SaveData(fp);
  return std::fflush(fp) == 0 && !std::ferror(fp);
}

void CChang::Clear() {
  m_Nodes.RemoveAll();
  m_Tris.RemoveAll();
}

namespace {

/// The first node at the point, null when there is none.
const CChangNode* node_at(const CChang& field, float x, float y) {
  const auto found = std::find_if(field.m_Nodes.begin(), field.m_Nodes.end(), [x, y](const CChangNode& node) {
    return get_dist(node.x, node.y, x, y) < kSamePlace;
  });
  return found == field.m_Nodes.end() ? nullptr : found;
}

/// The first triangle that contains the point.
Corners triangle_at(const CChang& field, float x, float y) {
  for (const CChangTri& tri : field.m_Tris) {
    const Corners found = corners(field, tri);
    if (found && contains(found, x, y)) return found;
  }
  return {};
}

const CChangNode* nearest_node(const CChang& field, float x, float y) {
  const CChangNode* nearest = nullptr;
  float least = kFarAway;
  for (const CChangNode& node : field.m_Nodes) {
    const float distance = get_dist(node.x, node.y, x, y);
    if (!(distance < least)) continue;
    least = distance;
    nearest = &node;
  }
  return nearest;
}

}  // namespace

float CChang::Get_Value(float x, float y) const {
  const int k = value_index(*this);
  if (const CChangNode* const node = node_at(*this, x, y)) return node->value[k];
  if (const Corners found = triangle_at(*this, x, y)) return interpolate(found, k, x, y);
  const CChangNode* const nearest = nearest_node(*this, x, y);
  return nearest ? nearest->value[k] : 0;
}

int CChang::PointInChang(float x, float y) const {
  return node_at(*this, x, y) || triangle_at(*this, x, y) ? 1 : 0;
}
