#pragma once

/// The fields of entities, stated once: attributes of Python objects and columns of arrays are both made of these rows.

#include <span>

#include "core.h"

namespace qvpy {

struct Field {
  enum class Type : char { Real, Integer, Point, Corners, Name };
  const char* name;
  const char* doc;
  Type type;
  std::size_t size;  ///< bytes of a name, its terminator included
  void* (*at)(ACAD_ENTITY& entity);
};

struct Kind {
  const char* keyword;  ///< of the file
  const char* name;     ///< of the class in Python
  const char* doc;
  std::span<const Field> fields;
};

inline constexpr int kKinds = ACAD_TYPE_INSERT + 1;
/// The kind of a number from 0 to 8.
const Kind& kind_of(int type);
/// The number of a keyword; a ValueError for none.
int kind_named(const std::string& keyword);

}  // namespace qvpy
