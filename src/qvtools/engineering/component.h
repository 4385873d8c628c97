#pragma once

/// Structural components: the base class of their records, and an index of where they stand in a stream.

#include <cstdio>

#include "qvtools/geometry/values/coor.h"
#include "qvtools/geometry/values/rect.h"
#include "qvtools/geometry/values/region.h"
#include "qvtools/platform/device.h"
#include "qvtools/platform/framework.h"

/// The range of one component in a stream: byte positions, the end not included.
struct CCxIndex {
  int m_nReserved1 = 0;
  int m_nReserved2 = 0;
  long m_lStart = 0;
  long m_lEnd = 0;
};

/// Tells which component a position of a stream belongs to. Numbers of components count from 1, in the order of
/// writing. Positions are those of `ftell` with the stream flushed.
class QV_API CCxIndexFile : public CObject {
 public:
  CCxIndexFile() = default;
  ~CCxIndexFile() override;
  CCxIndexFile(const CCxIndexFile&) = delete;
  CCxIndexFile& operator=(const CCxIndexFile&) = delete;

  /// Appends a component that begins at the stream's position. Returns 1; 0 for a null stream, one without positions,
  /// or when memory runs out.
  int Begin_Item(std::FILE* fp);
  /// Ends the last component at the stream's position. Returns 1; 0 for a null stream or without a component.
  int End_Item(std::FILE* fp);
  /// The number of the first component with start <= pos < end, 0 when there is none.
  int FindGouJian(int pos) const;
  /// The start and end of the n-th component; 0 when there is none.
  int GetStartPosGouJian(int n) const;
  int GetEndPosGouJian(int n) const;
  /// Removes all components.
  void Clear();

 private:
  const CCxIndex* entry(int n) const;
  CArray<CCxIndex*, CCxIndex*> m_Index;  // owned
  bool m_bOrdered = true;                // no component begins before the end of the one before it
};

/// A structural component (beam, column, slab, wall) that views select and draw. Only derived classes are created.
class QV_API CGouJian : public CObject {
 public:
  unsigned long m_dwGouJianID = 0;      ///< identity
  unsigned long m_dwGouJianNO = 0;      ///< number
  unsigned char m_byteBianGouJian = 0;  ///< whether it lies at the edge of the building
  unsigned char m_byteStatus = 0;       ///< selection and display status

  /// The fields, as host programs read and set them.
  unsigned long get_m_dwGouJianID() const { return m_dwGouJianID; }
  void set_m_dwGouJianID(unsigned long id) { m_dwGouJianID = id; }
  unsigned long get_m_dwGouJianNO() const { return m_dwGouJianNO; }
  unsigned char get_m_byteBianGouJian() const { return m_byteBianGouJian; }
  void set_m_byteBianGouJian(unsigned char edge) { m_byteBianGouJian = edge; }
  unsigned char get_m_byteStatus() const { return m_byteStatus; }
  unsigned long GetID() const { return m_dwGouJianID; }
  /// The code of the component's type; 0 here.
  int GetGjlx() const { return 0; }

  /// Sets the status; a class that shows it may do more.
  virtual void set_m_byteStatus(unsigned char status);
  /// Draws the component; returns 0 when nothing was drawn, as here.
  virtual int Draw(CDC* /*dc*/, CFCoor* /*coor*/) const { return 0; }
  /// Whether a region or a rectangle selects the component, in the mode that the view defines; 0 here.
  virtual int HitTest(const CFRegion& /*region*/, int /*mode*/) { return 0; }
  virtual int HitTest(const CFRect& /*rect*/, int /*mode*/) { return 0; }
  /// The extent in world units; the default rectangle here.
  virtual CFRect GetFrect() { return {}; }

 protected:
  CGouJian() = default;
  /// Copied by derived classes only.
  CGouJian(const CGouJian& other) = default;
  CGouJian& operator=(const CGouJian& other) = default;
};

/// A mode flag that host programs share; the library does not read it.
extern QV_API int G_ZOLT_P_V100;
/// Sets the flag.
QV_API void Set_ZOLT_P_V100(int mode);
