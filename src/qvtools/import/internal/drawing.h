#pragma once

/// A foreign drawing as it lies in its file: header and tables taken apart, and where blocks and entities stand.
/// Entities are read from the file's bytes whenever they are asked for: nothing of them is kept.

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "qvtools/import/import.h"
#include "qvtools/import/internal/space.h"
#include "qvtools/import/internal/tags.h"

namespace qv::importing {

/// A file's bytes, ended by a line feed.
struct SourceFile {
  std::unique_ptr<char[]> bytes;
  std::size_t size = 0;
  std::size_t ascii = 0;              // so many bytes at least, from the first on, are ASCII
  std::vector<std::size_t> sections;  // of a text: where their groups 0 stand

  std::string_view text() const { return {bytes.get(), size}; }
};
/// False when there is no such file, or it cannot be read.
bool load_file(const char* path, SourceFile& file);

/// One entity or table record with its groups, those of application data left aside.
struct Record {
  std::string_view name;
  std::size_t place = 0;
  std::vector<Tag> tags;
  std::vector<Tag> extended;  // of codes from 1000 on
  std::vector<Tag> embedded;  // of an object within it, behind group 101

  const Tag* find(int code) const;
  bool has(int code) const { return find(code) != nullptr; }
  double real(int code, double otherwise = 0) const;
  int integer(int code, int otherwise = 0) const;
  std::string_view word(int code) const;  // without blanks around it
  std::string_view text(int code) const;  // as it stands
  Vec point(int code) const;              // codes code, code + 10, code + 20
  Vec point(int code, const Vec& otherwise) const { return has(code) ? point(code) : otherwise; }
};

/// Reads the record at which the reader stands: a group 0 and all up to the next. False at the end of the file.
bool read_record(TagReader& in, Record& record);

/// Texts of the file as code points and as GBK.
class Decoder {
 public:
  CodePage page = CodePage::Windows1252;

  /// Code points, with "\U+XXXX" and "\M+nXXXX" made characters.
  std::u32string points(std::string_view text) const;
  /// In GB2312; other characters as "\U+XXXX".
  std::string gbk(std::string_view text) const;
  std::string utf8(std::string_view text) const;
};

/// Names of one table, upper and lower case alike.
class NameIndex {
 public:
  /// The index of the name; -1 when there is none.
  int find(std::string_view raw, const Decoder& decoder);
  void add(std::string_view raw, int index, const Decoder& decoder);

 private:
  std::string_view last_;
  int lastIndex_ = -1;
  std::unordered_map<std::string_view, int> seen_;  // texts of the file as they stand
  std::unordered_map<std::string, int> byName_;
};

// Line weights of group 370 that are no widths.
inline constexpr int kWeightByLayer = -1;
inline constexpr int kWeightByBlock = -2;
inline constexpr int kDefaultWeight = -3;

struct FileLayer {
  std::string name;  // GBK
  std::string fullName;
  int color = 7;
  int flags = 0;
  int trueColor = -1;
  int lineWeight = kDefaultWeight;
  bool plotted = true;
  std::string_view lineType;
};

struct FileLineType {
  std::string name;
  std::string description;
  std::vector<double> elements;
  bool hasShapes = false;
};

struct FileStyle {
  std::string name;
  std::string font;
  std::string bigFont;
  int flags = 0;
  double height = 0;
  double width = 1;
  double oblique = 0;
  int generation = 0;
};

/// Whether letters stand below each other.
inline bool is_vertical(const FileStyle& style) {
  return (style.flags & 4) != 0;
}

struct DimStyle {
  std::vector<std::pair<int, double>> values;  // by group code
  std::vector<Tag> words;
};

struct FileBlock {
  std::string name;
  std::string_view layoutOwner;  // handle of its record in the table of blocks
  Vec base;
  std::size_t from = 0;  // where its entities stand
  std::size_t to = 0;
  int flags = 0;
  // What its references need to know, nested ones included.
  std::vector<std::pair<int, double>> children;  // blocks that it refers to, and how often
  double entities = 0;                           // of its own
  double expanded = -1;                          // with all that it refers to; -1 not yet counted
  bool inherits = false;                         // something in it takes layer, colour or line type of the reference
  bool counted = false;                          // its entities stand in the report
};

struct Layout {
  std::string name;  // UTF-8
  int block = -1;
  int order = 0;
};

/// Header variables that the import asks for.
struct Header {
  std::string release;
  std::string codePage;
  double ltScale = 1;
  int insUnits = 0;
  int measurement = -1;
  Vec extMin;
  Vec extMax;
  bool hasExtents = false;
  int psLtScale = 1;
  std::vector<std::pair<std::string, double>> dim;  // $DIMxxx
};

struct Span {
  std::size_t from = 0;
  std::size_t to = 0;
};

struct MLineStyle {
  enum Flag { Filled = 1, Joints = 2, StartCap = 16, EndCap = 256, RoundCaps = 32 | 64 | 512 | 1024 };
  int flags = 0;
  std::vector<double> offsets;
  std::vector<int> colors;
};

/// A drawing, and the reader on it.
class Drawing {
 public:
  explicit Drawing(SourceFile file);

  /// Takes header, tables and blocks apart. False when nothing in the file is a drawing's.
  bool open(const ImportOptions& options);

  TagReader in;
  Header header;
  Decoder decoder;
  std::string encodingSource;
  std::vector<FileLayer> layers;
  NameIndex layerNames;
  std::vector<FileLineType> lineTypes;
  NameIndex lineTypeNames;
  std::vector<FileStyle> styles;
  NameIndex styleNames;
  std::vector<std::string> shapeFonts;  // files of shapes, as styles name them
  std::vector<DimStyle> dimStyles;
  NameIndex dimStyleNames;
  std::vector<FileBlock> blocks;
  NameIndex blockNames;
  std::unordered_map<std::uint64_t, int> blockOfHandle;
  std::unordered_map<std::uint64_t, std::string_view> nameOfHandle;  // of tables' records
  std::vector<Layout> layouts;
  NameIndex mlineStyleNames;
  std::vector<MLineStyle> mlineStyles;
  std::vector<Span> entitySections;
  std::vector<std::size_t> clippedReferences;  // where the records that cut them stand

  /// The line (in a binary file the byte) at which something stands, from 1.
  long line_of(std::size_t place);
  /// Whether the end of the file stands where it should, or the file is a fragment without sections.
  bool is_complete() const;
  /// The records that the block makes when it is placed once, all nested ones counted; infinite for a ring.
  double expanded_count(int block, int depth = 0);

 private:
  void find_sections();
  void choose_encoding(const ImportOptions& options);
  void read_header(std::size_t from);
  void read_tables(Span section);
  void read_table_record(const Record& record);
  void read_blocks(Span section);
  void index_block(FileBlock& block, const Record& header);
  void read_objects(Span section);
  void link_blocks();

  SourceFile source_;
  struct Section {
    std::string_view name;
    Span span;
  };
  std::vector<Section> sections_;
  std::vector<std::vector<std::pair<std::string_view, double>>> childNames_;
  std::size_t lineAt_ = 0;  // the last place that was asked for, and its line
  long lineThere_ = 1;
};

}  // namespace qv::importing
