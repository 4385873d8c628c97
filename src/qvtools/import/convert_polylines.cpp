// Polylines of all kinds, and meshes.

#include "qvtools/import/internal/converters.h"

namespace qv::importing {

namespace {

/// Flags of group 70 of a POLYLINE.
enum PolylineFlag { Closed = 1, CurveFit = 2, SplineFit = 4, InSpace = 8, Mesh = 16, MeshClosedN = 32, PolyFace = 64 };
/// Flags of group 70 of a VERTEX.
enum VertexFlag { FrameControl = 16, MeshVertex = 64, FaceVertex = 128 };

struct ReadVertex {
  Vertex vertex;
  int flags = 0;
  int corner[4] = {};
};

/// Takes the groups of a vertex off the reader, up to the next record: there may be a million of them.
ReadVertex read_vertex(TagReader& in, double startWidth, double endWidth) {
  ReadVertex v;
  v.vertex.startWidth = startWidth;
  v.vertex.endWidth = endWidth;
  while (in.next()) {
    const Tag& tag = in.tag();
    switch (tag.code) {
      case 0:
        in.unread();
        return v;
      case 10:
        v.vertex.at.x = real_of(tag);
        break;
      case 20:
        v.vertex.at.y = real_of(tag);
        break;
      case 30:
        v.vertex.at.z = real_of(tag);
        break;
      case 40:
        v.vertex.startWidth = real_of(tag);
        break;
      case 41:
        v.vertex.endWidth = real_of(tag);
        break;
      case 42:
        v.vertex.bulge = real_of(tag);
        break;
      case 70:
        v.flags = integer_of(tag);
        break;
      case 71:
      case 72:
      case 73:
      case 74:
        v.corner[tag.code - 71] = integer_of(tag);
        break;
      default:
        break;
    }
  }
  return v;
}

std::vector<ReadVertex> read_vertices(TagReader& in, double startWidth, double endWidth) {
  constexpr std::size_t kUsual = 16;
  std::vector<ReadVertex> vertices;
  vertices.reserve(kUsual);
  while (in.next()) {
    if (in.tag().code != 0) continue;
    if (!in.at(0, "VERTEX")) {
      if (!in.at(0, "SEQEND")) in.unread();  // missing: what stands here is the next entity
      break;
    }
    vertices.push_back(read_vertex(in, startWidth, endWidth));
  }
  return vertices;
}

/// Faces between rows of points; a closed direction goes on from the last to the first.
bool put_mesh(Job& job, const std::vector<Vec>& points, std::size_t m, std::size_t n, bool closedM, bool closedN) {
  if (m < 2 || n < 2 || points.size() < m * n) return false;
  bool good = true;
  for (std::size_t i = 0; i + (closedM ? 0 : 1) < m; ++i)
    for (std::size_t j = 0; j + (closedN ? 0 : 1) < n; ++j) {
      const std::size_t nextI = (i + 1) % m;
      const std::size_t nextJ = (j + 1) % n;
      const Vec face[4] = {points[i * n + j], points[i * n + nextJ], points[nextI * n + nextJ], points[nextI * n + j]};
      good = job.out.face(face) && good;
    }
  return good;
}

Outcome convert_mesh(Job& job, const Record& header, const std::vector<ReadVertex>& vertices, int flags) {
  // A smoothed mesh shows its computed points, which have sizes of their own.
  const bool smooth = (flags & SplineFit) != 0;
  std::vector<Vec> points;
  for (const ReadVertex& v : vertices)
    if (!smooth || (v.flags & FrameControl) == 0) points.push_back(job.place(v.vertex.at));
  const auto size = [&](int code, int smoothCode) {
    return static_cast<std::size_t>(std::max(0, header.integer(smooth && header.has(smoothCode) ? smoothCode : code)));
  };
  const bool good =
      put_mesh(job, points, size(71, 73), size(72, 74), (flags & Closed) != 0, (flags & MeshClosedN) != 0);
  return good ? converted("3DFACE") : left_out("a mesh that lacks points");
}

Outcome convert_poly_face(Job& job, const std::vector<ReadVertex>& vertices) {
  std::vector<Vec> points;
  for (const ReadVertex& v : vertices)
    if ((v.flags & MeshVertex) != 0) points.push_back(job.place(v.vertex.at));
  bool good = true;
  for (const ReadVertex& v : vertices) {
    if ((v.flags & FaceVertex) == 0 || (v.flags & MeshVertex) != 0) continue;
    Vec corners[4];
    int n = 0;
    bool hidden = false;
    for (const int corner : v.corner) {
      const auto index = static_cast<std::size_t>(std::abs(static_cast<long>(corner)));
      if (index == 0 || index > points.size()) continue;
      corners[n++] = points[index - 1];
      hidden = hidden || corner < 0;
    }
    if (n < 2) continue;
    const int edges = n;
    for (; n < 4; ++n) corners[n] = corners[n - 1];
    if (!hidden) {
      good = job.out.face(corners) && good;
      continue;
    }
    for (int i = 0; i < edges; ++i)
      if (v.corner[i] > 0) good = job.out.line(corners[i], corners[(i + 1) % edges]) && good;
  }
  return outcome(good, converted("3DFACE"));
}

/// The walls of a polyline with thickness.
bool put_walls(Job& job, const Matrix& frame, const std::vector<Vertex>& vertices, bool closed, double thickness) {
  bool good = true;
  std::vector<Vec> points{vertices[0].at};
  for (std::size_t i = 0; i + (closed ? 0 : 1) < vertices.size(); ++i)
    flatten_bulge(points.back(), vertices[(i + 1) % vertices.size()].at, vertices[i].bulge, job.options.tolerance,
                  points);
  const Vec up = frame.z * thickness;
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const Vec wall[4] = {frame(points[i]), frame(points[i + 1]), frame(points[i + 1]) + up, frame(points[i]) + up};
    good = job.out.face(wall) && good;
  }
  return good;
}

Outcome put_flat(Job& job, const Record& record, const std::vector<Vertex>& vertices, bool closed, Outcome otherwise) {
  if (vertices.empty()) return left_out("no vertices");
  const Matrix frame = frame_of(job, record);
  bool good;
  if (vertices.size() == 1)
    good = job.out.point(frame(vertices[0].at));
  else
    good = put_polyline(job, frame, vertices, closed);
  const double thickness = record.real(39);
  if (good && thickness != 0) good = put_walls(job, frame, vertices, closed, thickness);
  return outcome(good, otherwise);
}

}  // namespace

Outcome convert_polyline(Job& job, const Record& record) {
  const Record& header = record;
  const int flags = header.integer(70);
  const std::vector<ReadVertex> read = read_vertices(job.file.in, header.real(40), header.real(41));
  if ((flags & PolyFace) != 0) return convert_poly_face(job, read);
  if ((flags & Mesh) != 0) return convert_mesh(job, header, read, flags);
  const bool splined = (flags & SplineFit) != 0;
  const bool closed = (flags & Closed) != 0;
  if ((flags & InSpace) != 0) {
    std::vector<Vec> points;
    for (const ReadVertex& v : read)
      if (!splined || (v.flags & FrameControl) == 0) points.push_back(job.place(v.vertex.at));
    if (points.size() < 2) return left_out("no vertices");
    return outcome(put_chain(job, std::move(points), closed), kTaken);
  }
  const double elevation = header.real(30);
  std::vector<Vertex> vertices;
  vertices.reserve(read.size());
  for (const ReadVertex& v : read) {
    if (splined && (v.flags & FrameControl) != 0) continue;
    vertices.push_back(v.vertex);
    if (elevation != 0) vertices.back().at.z = elevation;
  }
  return put_flat(job, header, vertices, closed, kTaken);
}

Outcome convert_lwpolyline(Job& job, const Record& record) {
  std::vector<Vertex> vertices;
  const double width = record.real(43);
  const double elevation = record.real(38);
  for (const Tag& tag : record.tags) {
    if (tag.code == 10)
      vertices.push_back({{real_of(tag), 0, elevation}, width, width});
    else if (vertices.empty())
      continue;
    else if (tag.code == 20)
      vertices.back().at.y = real_of(tag);
    else if (tag.code == 40 && width == 0)
      vertices.back().startWidth = real_of(tag);
    else if (tag.code == 41 && width == 0)
      vertices.back().endWidth = real_of(tag);
    else if (tag.code == 42)
      vertices.back().bulge = real_of(tag);
  }
  return put_flat(job, record, vertices, (record.integer(70) & Closed) != 0, converted("POLYLINE"));
}

Outcome convert_mesh_object(Job& job, const Record& record) {
  // Vertices under 92 and 10, then faces under 93 and 90: a count and as many indices each.
  std::vector<Vec> points;
  std::vector<int> faces;
  int stage = 0;
  for (const Tag& tag : record.tags) {
    if (tag.code == 92) stage = 1;
    if (tag.code == 93 || tag.code == 94) stage = tag.code == 93 ? 2 : 3;
    if (stage == 1 && tag.code == 10) points.push_back({real_of(tag), 0, 0});
    if (stage == 1 && tag.code == 20 && !points.empty()) points.back().y = real_of(tag);
    if (stage == 1 && tag.code == 30 && !points.empty()) points.back().z = real_of(tag);
    if (stage == 2 && tag.code == 90) faces.push_back(integer_of(tag));
  }
  for (Vec& p : points) p = job.place(p);
  bool good = !points.empty();
  for (std::size_t i = 0; i < faces.size() && good;) {
    const auto count = static_cast<std::size_t>(std::max(0, faces[i++]));
    if (count > faces.size() - i) break;
    std::vector<Vec> corners;
    for (std::size_t j = 0; j < count; ++j) {
      const int index = faces[i + j];
      if (index >= 0 && static_cast<std::size_t>(index) < points.size())
        corners.push_back(points[static_cast<std::size_t>(index)]);
    }
    i += count;
    if (corners.size() == 3 || corners.size() == 4) {
      const Vec face[4] = {corners[0], corners[1], corners[2], corners.back()};
      good = job.out.face(face);
    } else {
      for (std::size_t j = 0; j < corners.size(); ++j)
        good = job.out.line(corners[j], corners[(j + 1) % corners.size()]) && good;
    }
  }
  return good ? converted("3DFACE") : left_out("a mesh that lacks points");
}

}  // namespace qv::importing
