#pragma once

/// Drawings as files, and what the commands ask of them.

#include <memory>
#include <string>

#include "qvtools.h"

namespace qvdraw {

/// Loads a drawing; throws `std::runtime_error` with one line that says what is wrong and what would help.
std::unique_ptr<DXF> load_drawing(const std::string& path);

/// GBK bytes as UTF-8.
std::string to_utf8(const char* text);

/// Calls f with each record of a list.
template <class Record, class F>
void for_each(const CPtrList& list, const F& f) {
  for (POSITION at = list.GetHeadPosition(); at;) f(*static_cast<Record*>(list.GetNext(at)));
}

/// The layer of an entity.
const char* layer_of(ACAD_ENTITY& entity);

}  // namespace qvdraw
