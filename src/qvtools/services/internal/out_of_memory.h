#pragma once

/// The library throws no exceptions: a container of the standard library that runs out of memory does, and here that
/// becomes a report and a result.

#include <new>
#include <stdexcept>

#include "qvtools/services/messages.h"

namespace qv::detail {

inline void tell_out_of_memory() {
  tell_error(301, "Out of memery !");
}

/// What f returns; when memory runs out in it, the result that says so, after report 301. What a host's own code throws
/// passes through.
template <class F, class Result>
auto unless_out_of_memory(const F& f, const Result& failed) -> decltype(f()) {
  try {
    return f();
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {  // more than a container can ever hold
  }
  tell_out_of_memory();
  return failed;
}

/// The same for what has no result.
void unless_out_of_memory(const auto& f) {
  unless_out_of_memory([&] { return f(), true; }, false);
}

}  // namespace qv::detail
