#pragma once

/// Finds records of a name without going through all of them: a table of hashes that is built for one walk or one
/// merge, since hosts may change lists and names between two calls.

#include <cstdint>
#include <memory>
#include <new>
#include <string_view>

#include "qvtools/dxf/model/document.h"

namespace qv::detail {

/// The first record added of each name. Names are the records' own and must stay as they are.
template <class Record>
class NameIndex {
 public:
  NameIndex() = default;
  /// Room for as many records. When memory runs out the index is not ready and finds nothing.
  explicit NameIndex(std::size_t room) {
    std::size_t size = 16;
    while (size < 2 * room) size *= 2;
    slots_.reset(new (std::nothrow) Slot[size]);
    mask_ = size - 1;
  }
  bool is_ready() const { return slots_ != nullptr; }

  /// Adds a record, unless one of its name is there; whether it was added. No more than there is room for.
  bool add(Record& record) {
    const std::string_view name = record.m_szName;
    Slot& slot = slot_of(name);
    if (slot.record) return false;
    slot = {name, &record};
    return true;
  }
  /// The record of a name; null when there is none.
  Record* find(std::string_view name) const { return is_ready() ? slot_of(name).record : nullptr; }

 private:
  struct Slot {
    std::string_view name;
    Record* record = nullptr;
  };
  /// Where a name stands, or may be put.
  Slot& slot_of(std::string_view name) const {
    std::uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
    for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    for (std::size_t at = static_cast<std::size_t>(hash ^ hash >> 32) & mask_;; at = (at + 1) & mask_) {
      Slot& slot = slots_[at];
      if (!slot.record || slot.name == name) return slot;
    }
  }

  std::unique_ptr<Slot[]> slots_;
  std::size_t mask_ = 0;
};

/// The blocks of a document's inserts, for one walk: the first of each name, as `GetBlock` finds it. The index is made
/// at the first insert.
class InsertedBlocks {
 public:
  explicit InsertedBlocks(DXF& dxf) : dxf_(dxf) {}

  /// The block that an insert places; null when there is none.
  ACAD_BLOCK* operator()(const ACAD_INSERT& insert) {
    if (!made_) make_index();
    return index_.is_ready() ? index_.find(insert.m_szBlock) : dxf_.GetBlock(&insert);
  }

 private:
  void make_index() {
    const CPtrList& blocks = dxf_.m_BlockList;
    made_ = true;
    index_ = NameIndex<ACAD_BLOCK>(static_cast<std::size_t>(blocks.GetCount()));
    if (!index_.is_ready()) return;
    for (POSITION at = blocks.GetHeadPosition(); at;) index_.add(*static_cast<ACAD_BLOCK*>(blocks.GetNext(at)));
  }

  DXF& dxf_;
  NameIndex<ACAD_BLOCK> index_;
  bool made_ = false;
};

}  // namespace qv::detail
