#pragma once

/// The nine kinds of entity, for what every kind does in the same way: X(class, type) for each.

#define QV_FOR_EACH_ENTITY_KIND(X)     \
  X(ACAD_POINT, ACAD_TYPE_POINT)       \
  X(ACAD_LINE, ACAD_TYPE_LINE)         \
  X(ACAD_TEXT, ACAD_TYPE_TEXT)         \
  X(ACAD_CIRCLE, ACAD_TYPE_CIRCLE)     \
  X(ACAD_ARC, ACAD_TYPE_ARC)           \
  X(ACAD_POLYLINE, ACAD_TYPE_POLYLINE) \
  X(ACAD_SOLID, ACAD_TYPE_SOLID)       \
  X(ACAD_3DFACE, ACAD_TYPE_3DFACE)     \
  X(ACAD_INSERT, ACAD_TYPE_INSERT)
