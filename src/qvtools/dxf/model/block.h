#pragma once

/// A block definition: entities that inserts place in a drawing.

#include <memory>

#include "qvtools/dxf/model/entity.h"

namespace qv::detail {
class GroupReader;
/// Deletes the entities of a list and empties it.
void delete_entities(CPtrList& list);
/// The same for blocks.
void delete_blocks(CPtrList& list);
}  // namespace qv::detail

namespace qv {

/// One record of each entity kind: what readers read into and the write calls fill.
struct QV_API WorkingRecords {
  ACAD_POINT m_Point;
  ACAD_LINE m_Line;
  ACAD_TEXT m_Text;
  ACAD_CIRCLE m_Circle;
  ACAD_ARC m_Arc;
  ACAD_POLYLINE m_Polyline;
  ACAD_SOLID m_Solid;
  ACAD_3DFACE m_3DFace;
  ACAD_INSERT m_Insert;

  /// The working record of a kind from 0 to 8; null for any other.
  ACAD_ENTITY* Of(ACAD_Entity_Type type);
};

/// A new copy of an entity of type 0 to 8, deep for a polyline; null for any other type or when memory runs out. The
/// caller owns it.
QV_API ACAD_ENTITY* CloneEntity(ACAD_ENTITY& entity);

namespace detail {
/// Working records for the blocks of a drawing, which all share them; null when memory runs out.
std::shared_ptr<WorkingRecords> records_of_kept_blocks();
}  // namespace detail

}  // namespace qv

/// A block definition. It owns its entities. Operations that take an insert work on the block as that insert places it:
/// moved by the insertion point less the base point, neither scaled nor turned; inserts within the block are passed
/// over.
class QV_API ACAD_BLOCK {
 public:
  /// A block with working records of its own, over 1 KB: what a host reads into. Throws `std::bad_alloc` when memory
  /// runs out.
  ACAD_BLOCK();
  /// A block that shares its working records with others: those of a document, into which nothing is read any more, so
  /// that it takes 0.2 KB. `records` is not null.
  explicit ACAD_BLOCK(std::shared_ptr<qv::WorkingRecords> records) noexcept;
  ACAD_BLOCK(const ACAD_BLOCK&) = delete;
  /// Becomes a deep copy of the other block, without its nested inserts. Returns 1, or 0, with the block as it was,
  /// when memory runs out. Assigning says so by report 301. A block copied to itself stays as it is.
  int Copy(const ACAD_BLOCK* other);
  ACAD_BLOCK& operator=(const ACAD_BLOCK& other);

  /// What the operations of an entity do, for all entities of the block together; see `ACAD_ENTITY`.
  virtual CFRect GetFRect(ACAD_INSERT* insert);
  virtual CFRect GetFRect3D(float a, float b, ACAD_INSERT* insert);
  virtual void Draw3D(CDC* dc, CFCoor* coor, float a, float b, ACAD_INSERT* insert);
  virtual int HitTest(const CFRegion& region, int mode, float a, float b, ACAD_INSERT* insert);
  virtual int HitTest(const CFRect& rect, int mode, float a, float b, ACAD_INSERT* insert);
  void Draw(CDC* dc, CFCoor* coor, ACAD_INSERT* insert);
  /// Restores the defaults and deletes the entities.
  void Ini();
  /// Reads the definition from BLOCK to ENDBLK (or the end of the file), nested inserts left out. Returns 1, or 0 when
  /// the stream does not stand at a block.
  int Read(std::FILE* file);
  /// Writes the definition with its entities. Returns 1, or 0 when a write failed.
  int Write(std::FILE* file);
  /// Reads the next entity into its working record and returns its kind; ENDBLK ends the entities here. One that is
  /// malformed gives `ACAD_TYPE_NONE`, with the stream behind what was read, and so do, after report 301, a disk that
  /// fails and memory that runs out.
  ACAD_Entity_Type Read_One_Entity(std::FILE* file);
  virtual ~ACAD_BLOCK();

  /// The working records all together.
  qv::WorkingRecords& Records() { return *records_; }

 private:
  std::shared_ptr<qv::WorkingRecords> records_;

 public:
  // What `Read_One_Entity` reads into, one of each kind.
  ACAD_POINT& m_Point = records_->m_Point;           ///< working record
  ACAD_LINE& m_Line = records_->m_Line;              ///< working record
  ACAD_TEXT& m_Text = records_->m_Text;              ///< working record
  ACAD_CIRCLE& m_Circle = records_->m_Circle;        ///< working record
  ACAD_ARC& m_Arc = records_->m_Arc;                 ///< working record
  ACAD_POLYLINE& m_Polyline = records_->m_Polyline;  ///< working record
  ACAD_SOLID& m_Solid = records_->m_Solid;           ///< working record
  ACAD_3DFACE& m_3DFace = records_->m_3DFace;        ///< working record
  ACAD_INSERT& m_Insert = records_->m_Insert;        ///< working record

  float m_fScale = 1;     ///< not in the file; for callers
  float m_fScale2 = 0;    ///< Quirk: `Ini` leaves it as it is; derived programs keep a value of their own here.
  float m_fRotation = 0;  ///< not in the file; for callers
  char m_szLayer[qv::kNameSize] = "0";  ///< group 8
  char m_szName[qv::kNameSize] = "0";   ///< group 2; what inserts name
  int m_nFlags = 0;                     ///< group 70
  int m_nColor = qv::kByLayer;          ///< not in the file
  qv::Point3 m_Base;                    ///< group 10: the point that comes to the insertion point
  CPtrList m_EntityList;                ///< owned `ACAD_ENTITY` records, in file order
};
