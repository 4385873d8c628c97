#pragma once

/// The drawing document: an in-memory drawing, or a writer or reader that streams a drawing file. The same write calls
/// serve both. Files are ASCII DXF of the flat form: a HEADER section that is empty unless asked for, the tables LTYPE,
/// LAYER and STYLE, BLOCKS, ENTITIES and EOF, with group codes right-aligned in three characters, reals "%.2f" and
/// lines that end in CR LF.
///
/// Calling order for a file: `Set_MaxNum_of_Tables` (optional), `New`, `Add_*`, `Write_Tables`, `Begin_AllBlocks` …
/// `End_AllBlocks` (optional), `Begin_Entity`, write calls, `End_Entity` or `Close`. In memory: `New_MemDxf`, `Add_*`,
/// write calls, `Write_MemDxf_To_File` whenever wanted, `Close`. The document writes what it is told, when it is told;
/// it does not check the order.
///
/// Operations return 1 for success and 0 for failure unless they say otherwise. A failure is reported through
/// `tell_error(301, text)`, a file that cannot be created or written by the result alone; it leaves the document as it
/// was. What is written to a document that is closed, or read into one that is not in memory, is told once more, with
/// code 20.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "qvtools/display/appearance.h"
#include "qvtools/dxf/model/block.h"
#include "qvtools/dxf/model/table.h"

namespace qv::detail {
class GroupReader;
}  // namespace qv::detail

namespace qv {
/// What a new document has until told otherwise.
inline constexpr int kDefaultMaxLType = 5;
inline constexpr int kDefaultMaxLayer = 20;
inline constexpr int kDefaultMaxStyle = 5;
}  // namespace qv

/// A drawing, in memory or streamed.
class QV_API DXF : public qv::WorkingRecords {
 public:
  DXF();
  /// Closes an open file without writing its end, and deletes tables, entities and blocks.
  virtual ~DXF();
  DXF(const DXF&) = delete;
  DXF& operator=(const DXF&) = delete;

  /// Sets the capacities of the tables, before the first open only. A capacity below 1 is reported and becomes 1.
  int Set_MaxNum_of_Tables(long ltypes, long layers, long styles);
  /// Creates the file, with tables that hold "CONTINUOUS", "0" and "STANDARD". An open document is closed first. What
  /// is streamed goes to the file of this name at once: when the program stops, a part of the drawing is there.
  int New(const char* fileName);
  /// The same in memory.
  int New_MemDxf();
  /// Makes this an in-memory document that is open for reading. Returns 1.
  int Open_MemDxf();

  /// Adds a line type: at most 30 elements (dashes positive, gaps negative, in drawing units) of the total length.
  int Add_LType(const char* name, const char* description, int count, float length, const float* elements);
  /// Adds a layer; its line type must be present.
  int Add_Layer(const char* name, int color, const char* ltype);
  /// Adds a text style of a shape font for single bytes and a big font (may be "") for Chinese, by their names, such as
  /// "txt" and "hztxt".
  int Add_STyle(const char* name, const char* font, const char* bigFont);

  /// Takes whole tables in the place of the present ones, each of that many entries, at least 1, the standard entry
  /// first. The document is in memory and open for reading then: what is merged into it makes its tables larger.
  void Take_Tables(std::unique_ptr<ACAD_LTYPE[]> ltypes, int ltypeCount, std::unique_ptr<ACAD_LAYER[]> layers,
                   int layerCount, std::unique_ptr<ACAD_STYLE[]> styles, int styleCount);

  /// The parts of a file's frame. In memory they do nothing and return 1.
  int Write_Tables();
  int Begin_AllBlocks();
  int End_AllBlocks();
  /// Quirk: group 70 is the value of `flags` itself as an integer, not the text it points to; callers pass small
  /// numbers.
  int Begin_OneBlock(const char* name, float x, float y, float z, const char* layer, const char* ignored,
                     const char* flags);
  /// The end of a block's definition, and the frame of the entities.
  int End_OneBlock();
  int Begin_Entity();
  int End_Entity();

  /// The write calls. Layer, line type ("BYLAYER" or a name) and style must be present in the tables; the colour is
  /// "BYLAYER" or a decimal number. In a file the entity is written at once; in memory a record is appended.
  int Write_Point(float x, float y, float z, const char* layer);
  int Write_Line(float x1, float y1, float z1, float x2, float y2, float z2, const char* layer, const char* color,
                 const char* ltype);
  /// Rotation in degrees. The style's width factor becomes the text's.
  int Write_Text(float x, float y, float z, float height, float rotation, const char* text, const char* style,
                 const char* layer, const char* color, const char* ltype);
  /// A circle, which lies in the plane.
  int Write_Circle(float x, float y, float z, float radius, const char* layer, const char* color, const char* ltype);
  /// Angles in degrees, counter-clockwise from start to end.
  int Write_Arc(float x, float y, float z, float radius, float startAngle, float endAngle, const char* layer,
                const char* color, const char* ltype);
  /// A polyline of two vertices.
  int Write_Pline(float x1, float y1, float z1, float x2, float y2, float z2, float startWidth, float endWidth,
                  const char* layer, const char* color, const char* ltype);
  /// A polyline of `count` vertices. Quirk: entry 1 of x, y and z is read even when the count is 1. Vertices stay on
  /// layer "0".
  int Write_Pline(int count, const float* x, const float* y, const float* z, const float* bulge, int flags,
                  const float* startWidth, const float* endWidth, const char* layer, const char* color,
                  const char* ltype);
  /// Corners in zigzag order: the third is opposite the second.
  int Write_Solid(float x1, float y1, float z1, float x2, float y2, float z2, float x3, float y3, float z3, float x4,
                  float y4, float z4, const char* layer, const char* color, const char* ltype);
  int Write_3DFace(float x1, float y1, float z1, float x2, float y2, float z2, float x3, float y3, float z3, float x4,
                   float y4, float z4, const char* layer, const char* color, const char* ltype);

  /// Opens a drawing file for reading, takes its tables and stands before its first entity; blocks are not read. A
  /// missing file is not reported; missing tables or entities are.
  int Open(const char* fileName);
  /// Find the start of a section, by lines from the start of the file, and stand just behind it. 0 when the document is
  /// not open for reading or has no such section.
  int Find_Start_Tables() { return find_section("TABLES"); }
  int Find_Start_Blocks() { return find_section("BLOCKS"); }
  int Find_Start_Entities() { return find_section("ENTITIES"); }
  /// Reads the tables section, each table sized from its own count (1 to 1000).
  int Read_Tables();
  /// Reads the next of the three tables, up to the end of the section: 0 when none is left.
  int Read_One_Table();
  /// Reads the next block definition into the working block.
  int Read_One_Block();
  /// Reads the next entity into its working record and returns its kind. A text without a width factor of its own takes
  /// its style's. `ACAD_TYPE_END` at the end of the entities and ever after, and where the file ends before them
  /// (`IsComplete` tells). `ACAD_TYPE_NONE` for an entity that is malformed (the next call goes on behind it), when the
  /// document is not open for reading, and, after report 301, when the disk fails or memory runs out (`IsCutShort`).
  /// The working record then holds what was read of the entity.
  ACAD_Entity_Type Read_One_Entity();
  /// Loads a whole drawing file into this in-memory document: its tables replace the present ones (also where the
  /// result is 0 because no entities follow them), its blocks and entities are appended. A file whose entities end
  /// early is loaded as far as it goes, with the result 1. When the disk fails or memory runs out, what was read is
  /// kept, and the result is 0 after report 301. `IsComplete` tells all of these from a whole drawing.
  int Read_FileDxf_To_Mem(const char* fileName) { return Read_FileDxf_To_Mem(fileName, nullptr); }
  /// The same, telling every few thousand entities what share of the file has been read, 0 to 1. When `progress`
  /// returns false the loading is given up: what was read is kept, and the result is 0.
  int Read_FileDxf_To_Mem(const char* fileName, const std::function<bool(double share)>& progress);

  /// Whether all was read of what was read last: false when the file's entities end without their ENDSEC, when
  /// `progress` gave the loading up, and when the disk failed or memory ran out.
  bool IsComplete() const { return end_ == End::Whole; }
  /// Whether the disk failed or memory ran out. Until the document is made anew or `TakeAsComplete` is called, it is
  /// not saved over the file that it came from.
  bool IsCutShort() const { return end_ == End::CutShort; }
  /// Takes what was read for the whole drawing.
  void TakeAsComplete();

  /// Appends the other document's drawing, turned by an angle in degrees and then shifted; or transformed by a matrix
  /// (nine floats, row by row) and then an offset (three floats), either of which may be null. Table entries and blocks
  /// are merged by name, present names win; entities are copied whole. Text and insert rotations turn with the drawing,
  /// radii, heights and widths stay. A program's own kinds of entities are passed over, as in saved files. Returns 1,
  /// or 0, after report 301 and with the document as it was, when memory runs out.
  int InsertDxf(DXF* other, float dx, float dy, float angle);
  int InsertDxf(DXF* other, const float* offset, const float* matrix);

  /// Ends and closes a file (a created one gets its ENDSEC and EOF, whether or not `End_Entity` wrote them before), and
  /// deletes tables, entities and blocks. The counts stay as they are, but nothing is found in the tables any more.
  /// Returns 0 when the stream failed.
  int Close();
  /// Saves an in-memory document. An existing file is replaced only by a complete one, see `qv::SavedFile`; 0 when
  /// anything could not be written, and, after report 301, when the document was cut short (`IsCutShort`) while it was
  /// read from this file. Coordinates that are no finite numbers are written as they are and reported once, with
  /// code 20. A layer, line type, style or block called TABLES, BLOCKS or ENTITIES, which flat readers take for that
  /// section, is reported once, with code 20.
  int Write_MemDxf_To_File(const char* fileName);

  /// Draws an in-memory document in plan. The transform is remembered (not owned) for the next call without one.
  void Draw(CDC* dc, CFCoor* coor) { Draw(dc, coor, {}); }
  void Draw(CDC* dc) { Draw(dc, m_pCoor); }
  /// Draws an in-memory document projected for the view angles a and b, in radians.
  void Draw3D(CDC* dc, CFCoor* coor, float a, float b) { Draw3D(dc, coor, a, b, {}); }
  /// The same, shown as the appearance says.
  void Draw(CDC* dc, CFCoor* coor, const qv::Appearance& appearance);
  void Draw3D(CDC* dc, CFCoor* coor, float a, float b, const qv::Appearance& appearance);
  /// The extent of all entities, inserts by their blocks, in plan or projected; the empty rectangle when there are
  /// none.
  CFRect GetFRect();
  CFRect GetFRect3D(float a, float b);
  /// Picks: 1 + the index of the first entity hit in drawing order, 0 for none. An entity is hit when it lies wholly
  /// inside, and with a mode other than 0 also when it crosses the border.
  int HitTest(const CFRegion& region, int mode, float a, float b);
  int HitTest(const CFRect& rect, int mode, float a, float b);

  /// The block of the insert's name; null when there is none.
  ACAD_BLOCK* GetBlock(const ACAD_INSERT* insert);
  /// The width of a text in the shape fonts, in the unit of the height.
  static float GetTextWidth(const char* text, float height, float widthFactor);

  int m_nMemFlag = 0;  ///< 1: in memory; 0: writing to or reading from a file
  /// Not 0: written files name the release (AC1009) and the code page of their texts (ANSI_936) in the HEADER section,
  /// so that other programs show Chinese texts rightly. Off by default: the section is empty. Set it before the tables
  /// are written.
  int m_bCodePageHeader = 0;
  char m_szFileName[300] = "";             ///< of the file that is open, or was last
  std::FILE* m_fp = nullptr;               ///< the file; a binary stream into which the document itself writes CR LF
  int m_nOpenMode = -1;                    ///< -1 nothing opened yet, 0 created for writing, 1 opened for reading
  int m_nReserved = 0;                     ///< not used
  int m_nMaxLType = qv::kDefaultMaxLType;  ///< capacities of the tables
  int m_nMaxLayer = qv::kDefaultMaxLayer;  ///< capacities of the tables
  int m_nMaxStyle = qv::kDefaultMaxStyle;  ///< capacities of the tables
  CFCoor* m_pCoor;                         ///< the transform last given to `Draw`, not owned; `G_ConCoor` at first
  CPtrList m_EntityList{kListBlock};       ///< owned `ACAD_ENTITY` records, in drawing order
  CPtrList m_BlockList;                    ///< owned `ACAD_BLOCK` records, in file order
  int m_nLType = 0;                        ///< entries in use of each table
  int m_nLayer = 0;                        ///< entries in use
  int m_nStyle = 0;                        ///< entries in use
  std::unique_ptr<ACAD_LTYPE[]> m_pLType;  ///< as many entries as the capacity; null before the first open
  std::unique_ptr<ACAD_LAYER[]> m_pLayer;  ///< likewise
  std::unique_ptr<ACAD_STYLE[]> m_pStyle;  ///< likewise

 private:
  qv::WorkingRecords blockRecords_;

 public:
  ACAD_BLOCK m_Block{{std::shared_ptr<void>(), &blockRecords_}};  ///< the reader's working block

 private:
  static constexpr int kListBlock = 8000;  // long blocks are walked at the speed of an array
  int create_tables();
  void tell_once_not_open(const char* message);
  void delete_drawing();
  const ACAD_LTYPE* find_ltype(const char* name) const;
  const ACAD_LAYER* find_layer(const char* name) const;
  const ACAD_STYLE* find_style(const char* name) const;
  int open_to_read(const char* fileName);
  void close_file();
  template <class Entry>
  bool read_table(std::unique_ptr<Entry[]>& table, int& count, int& capacity, const char* countMessage,
                  const char* memoryMessage);
  template <class Entry>
  struct MergedTable;
  bool copy_blocks(const DXF& other, CPtrList& copies) const;
  int find_section(std::string_view keyword);
  void load_blocks();
  bool load_entities(const std::function<bool(double share)>& progress);
  template <class Record>
  bool set_attributes(Record& record, const char* layer, const char* color, const char* ltype);
  template <class Record>
  int put(Record& record);
  template <class Compose>
  int write_frame(const Compose& compose);

  bool is_cut_short_of(const char* fileName) const;
  void note_end();
  void out_of_memory();

  enum class End : char { Whole, Early, CutShort };
  End end_ = End::Whole;                  // of what was read
  std::string source_;                    // the file that is or was read
  bool toldNotOpen_ = false;              // since the last open
  std::unique_ptr<char[]> streamBuffer_;  // of a file that is being written
  // Entries that the present tables have room for.
  int roomLType_ = 0;
  int roomLayer_ = 0;
  int roomStyle_ = 0;
  std::unique_ptr<qv::detail::GroupReader> reader_;  // while a file is open for reading
};

namespace qv {

/// The patterns of a document's line types, for an `Appearance`.
QV_API LinePatterns PatternsOf(const DXF& document);

}  // namespace qv
