#pragma once

/// Memory that runs out, without a word: for what is below the reports (`services/internal/out_of_memory.h` tells it).

#include <new>
#include <stdexcept>

namespace qv::detail {

/// What f returns; `failed` when memory runs out in it.
template <class F, class Result>
auto unless_silently_out_of_memory(const F& f, const Result& failed) -> decltype(f()) {
  try {
    return f();
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {  // more than a container can ever hold
  }
  return failed;
}

}  // namespace qv::detail
