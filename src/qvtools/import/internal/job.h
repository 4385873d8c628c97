#pragma once

/// One import at work: what converters of entities are given.

#include <map>

#include "qvtools/fonts/shape_file.h"
#include "qvtools/import/internal/curves.h"
#include "qvtools/import/internal/lettering.h"
#include "qvtools/import/internal/output.h"

namespace qv::importing {

/// The groups that all entities share.
struct Common {
  std::string_view layer;
  std::string_view lineType;
  double lineTypeScale = 1;
  int color = 256;
  int trueColor = -1;
  int lineWeight = kWeightByLayer;
  bool invisible = false;
  bool paper = false;

  /// Takes a group that is one of them.
  void take(const Tag& tag);
};

inline void Common::take(const Tag& tag) {
  switch (tag.code) {
    case 8:
      layer = word_of(tag);
      break;
    case 6:
      lineType = word_of(tag);
      break;
    case 48:
      lineTypeScale = real_of(tag);
      break;
    case 60:
      invisible = integer_of(tag) != 0;
      break;
    case 62:
      color = integer_of(tag);
      break;
    case 67:
      paper = integer_of(tag) != 0;
      break;
    case 370:
      lineWeight = integer_of(tag);
      break;
    case 420:
      trueColor = integer_of(tag) & 0xFFFFFF;
      break;
    default:
      break;
  }
}
Common common_of(const Record& record);

/// A line without end, cut when the drawing's extent is known.
struct EndlessLine {
  Vec from;
  Vec direction;
  bool both = false;  // it runs both ways
  Look look;
};

/// A block as it is placed by references of one transform and look.
struct PlacedBlock {
  std::string name;  // in the document
  Vec shift;         // what was taken off its entities, and is put on its references
  Vec base;
  Bounds bounds;  // of its entities, the shift put back
  bool empty = false;
  bool refused = false;
};

/// Which entities are wanted: those of model space or of paper, where they stand among each other.
enum class Space { All, Model, Paper };

class Job {
 public:
  Job(Drawing& drawing, const ImportOptions& importOptions, ReportBuilder& builder, OutputTables& outputTables,
      CPtrList& blocks)
      : file(drawing),
        options(importOptions),
        report(builder),
        tables(outputTables),
        madeBlocks(blocks),
        out(outputTables, builder) {}

  Drawing& file;
  const ImportOptions& options;
  ReportBuilder& report;
  OutputTables& tables;
  CPtrList& madeBlocks;                                                                     // the document's
  const std::shared_ptr<WorkingRecords> blockRecords = std::make_shared<WorkingRecords>();  // of all of them
  Output out;

  Unit unit = Unit::None;  // of the document

  /// From the world of the entity to the output's.
  Matrix place;
  /// The look of the reference whose block is converted; outside of blocks nothing is taken from it.
  Look inherited;
  bool inBlock = false;

  std::vector<int> openBlocks;  // within which the entity stands, the outermost first
  std::vector<EndlessLine> endless;
  std::unordered_map<std::string, PlacedBlock> placedBlocks;
  double madeOfReferences = 0;

  /// The look of an entity with these groups, set for what is put out next.
  void dress(const Common& common);
  /// Converts a record, and those that belong to it, which the reader hands out next.
  void convert(const Record& record);
  /// Whether an entity is to be converted; it is dressed then, and counted where it is invisible.
  bool admits(std::string_view kind, const Common& common, std::size_t begin);
  /// Converts the entities of a stretch of the file, up to its end or the end of its block or section; `wanted` tells
  /// which.
  void convert_all(Span span, Space space, const std::function<bool(double)>& progress = nullptr);
  bool cancelled = false;

  std::map<std::string, ShapeFile> shapeFiles;  // by their names in the drawing; those that are not there are empty

  /// The sheet that is read has windows on model space: their records, kept until the sheet is done.
  bool onSheet = false;
  std::vector<Record> viewports;
  std::vector<bool> hiddenLayers;  // within a window; empty: none

  /// Puts the entities of a block out, placed by the matrix; what they take from the reference is the present look.
  void expand(int block, const Matrix& at);

 private:
  Space space_ = Space::All;
  bool is_hidden(std::string_view layer);
};

using Converter = Outcome (*)(Job& job, const Record& record);
/// The text of a TEXT, ATTRIB or ATTDEF.
Outcome put_attribute(Job& job, const Record& record);
/// Converts the line at whose opening group the reader stands: there may be a million of them.
void convert_line(Job& job);
/// The converter of any other kind of entity; of kinds that are not known, one that shows the picture they may have.
Converter converter_of(std::string_view name);

/// Puts out the entities of a block whose reference is no INSERT, its base point at the matrix's origin.
Outcome put_block_entities(Job& job, int block, const Matrix& at);

// What converters put out. Coordinates are those of the frame, which lies in the output's.

/// The frame of an entity by its group 210.
Matrix frame_of(const Job& job, const Record& record);
Outcome outcome(bool good, const Outcome& otherwise);

/// Part of a circle about a point of the frame's plane, radians counter-clockwise in the frame; a whole one from a turn
/// on.
bool put_arc(Job& job, const Matrix& frame, const Vec& center, double radius, double start, double sweep);
bool put_ellipse(Job& job, const Vec& center, const Vec& major, const Vec& minor, double start, double sweep);
/// Vertices in the frame's plane; what the frame distorts is made of straight pieces.
bool put_polyline(Job& job, const Matrix& frame, std::span<const Vertex> vertices, bool closed);
/// Points of the output's world.
bool put_chain(Job& job, std::vector<Vec> points, bool closed);

/// A line of text, not yet placed.
struct Lettering {
  std::u32string text;
  std::string_view plain;  // instead of the text where that is ASCII without codes, as most are, and short
  Vec at;      // in the frame
  Vec second;  // of texts that are fitted between two points
  double height = 1;
  double width = 1;    // factor
  double turn = 0;     // radians, in the frame
  double oblique = 0;  // degrees
  int generation = 0;  // 2 mirrored, 4 upside down
  int horizontal = 0;  // group 72: 0 left, 1 centre, 2 right, 3 aligned, 4 middle, 5 fit
  int vertical = 0;    // group 73: 0 base line, 1 bottom, 2 middle, 3 top
  int style = -1;
  bool codes = true;  // "%%c" and its kin are codes
  // Strokes along the whole of it, where codes are none.
  bool under = false;
  bool over = false;
  bool strike = false;
};
bool put_text(Job& job, const Matrix& frame, const Lettering& lettering);

/// How far below the base line letters reach, as a share of their height.
inline constexpr double kDescender = 1.0 / 3;

}  // namespace qv::importing
