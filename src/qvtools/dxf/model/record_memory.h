#pragma once

/// Memory for records that are made by the million, walked in the order in which they were made, and given back
/// together.

#include <cstddef>
#include <new>

#include "qvtools/api.h"

namespace qv {

/// The base of classes whose single objects, derived ones included, live in a pool: those of one size lie side by side
/// in the order of their making (gaps that deleted ones left are filled first), in memory of large pages where the
/// system has them. Walking a million of them then costs what reading their bytes costs.
///
/// It holds no data. Objects may be made and deleted in any thread, whichever made them; their memory goes back to the
/// system as a slab of them (2 MB, on Windows 64 KB) empties, but for the last one of each size. Those above 8 KB lie
/// by themselves. Alignment up to 64 bytes is kept; a class that needs more brings its own operators. What `::new` made
/// is for `::delete` alone. Arrays and objects within others are not concerned. Under an address sanitizer every object
/// is an allocation of its own.
class QV_API PooledRecord {
 public:
  /// Throws `std::bad_alloc` when the system gives no memory; the second form returns null.
  static void* operator new(std::size_t size);
  static void* operator new(std::size_t size, const std::nothrow_t&) noexcept;
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* record) noexcept;
  static void operator delete(void* record, const std::nothrow_t&) noexcept;
  static void operator delete(void*, void*) noexcept {}
};

}  // namespace qv
