#pragma once

/// Where converted entities go: records of the nine kinds in a document or a block, rounded to float here and nowhere
/// before. Points are in the coordinates of the document in double.

#include <span>

#include "qvtools/import/internal/output_tables.h"

namespace qv::importing {

/// Layer, colour, line type and the rest that an entity is drawn with.
struct Look {
  int layer = 0;
  int color = kByLayer;
  int lineType = -1;  // -1 the layer's
  int lineWeight = kWeightByLayer;
  int trueColor = -1;

  void set_color(int number);
  void set_true_color(int rgb);
  /// A colour whose first byte tells its kind, as multileaders and pictures of objects have it; one "by block" and
  /// others change nothing.
  void set_raw_color(int raw);
};

/// The number of the standard palette whose colour comes nearest to 0xRRGGBB, of those that every display shows alike.
int nearest_color(int rgb);

/// The box of what has been put out.
struct Bounds {
  double x1 = 1e300;
  double y1 = 1e300;
  double x2 = -1e300;
  double y2 = -1e300;

  void add(double x, double y) {
    x1 = std::min(x1, x);
    y1 = std::min(y1, y);
    x2 = std::max(x2, x);
    y2 = std::max(y2, y);
  }
  bool empty() const { return x1 > x2; }
  double size() const { return empty() ? 0 : std::max(x2 - x1, y2 - y1); }
  double farthest() const {
    return empty() ? 0 : std::max({std::fabs(x1), std::fabs(y1), std::fabs(x2), std::fabs(y2)});
  }
};

struct Vertex {
  Vec at;
  double startWidth = 0;
  double endWidth = 0;
  double bulge = 0;
};

struct TextLine {
  Vec at;  // the left end of the base line
  double height = 1;
  double turn = 0;  // degrees
  double width = 1;
  std::string bytes;
  std::string unicode;  // UTF-8, where the bytes are not all of it
  StyleKey style;
  int justify = 0;  // group 72: 0 to 3 and 5
  Vec align;
};

/// A window that cuts what is put out.
struct Window {
  double x1, y1, x2, y2;
};

class Output {
 public:
  Output(OutputTables& tables, ReportBuilder& report) : tables_(tables), report_(report) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// Everything below goes to the list, less the shift; the bounds are in the list's own coordinates with the shift
  /// put back.
  void begin(CPtrList& list, const Vec& shift);
  const Vec& shift() const { return shift_; }
  CPtrList& list() const { return *list_; }

  Look look;
  Bounds bounds;
  DrawingNotes* notes = nullptr;
  const Window* window = nullptr;
  double tolerance = 1.0 / 2000;
  long made = 0;

  // Each returns false when a coordinate is no number that a record can hold; nothing is put out then.
  bool point(const Vec& p);
  bool line(const Vec& a, const Vec& b);
  bool circle(const Vec& center, double radius);
  /// Degrees, counter-clockwise.
  bool arc(const Vec& center, double radius, double start, double end);
  /// Widths and bulges as records have them; flags of group 70.
  bool polyline(std::span<const Vertex> vertices, int flags);
  /// Corners in the zigzag order of records.
  bool solid(const Vec (&corners)[4]);
  bool face(const Vec (&corners)[4]);
  bool text(const TextLine& text);
  bool insert(const char* block, const Vec& at);

 private:
  bool put(ACAD_ENTITY* record, const std::string& text = {});
  bool rounded(const Vec& p, Point3& out);
  void dress(char (&layer)[kNameSize], char (&lineType)[kNameSize], int& color);
  bool put_dashes(std::span<const Vertex> vertices, bool closed);
  bool cut_line(const Vec& a, const Vec& b);
  bool cut_polyline(std::span<const Vertex> vertices, int flags);
  bool cut_solid(const Vec (&corners)[4]);

  OutputTables& tables_;
  ReportBuilder& report_;
  CPtrList* list_ = nullptr;
  Vec shift_;
};

}  // namespace qv::importing
