#pragma once

/// Memory straight from the system, in stretches of one size.

#include <cstddef>

namespace qv::detail {

/// The bytes of a stretch, a power of two.
extern const std::size_t kStretchSize;

/// A stretch of zeros that begins at a multiple of its size, or null when there is no memory. A large one is a single
/// page where the system has such: reading through many of them then costs what reading their bytes costs, but the
/// first access to one clears all of it.
void* map_stretch(bool large) noexcept;

/// Gives a stretch back. False, with the stretch as it was, when the system cannot take it now.
bool unmap_stretch(void* stretch) noexcept;

/// Asks for large pages for memory that will be written from one end to the other; nothing where the system has none.
void wish_large_pages(void* memory, std::size_t size) noexcept;

}  // namespace qv::detail
