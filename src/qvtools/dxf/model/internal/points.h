#pragma once

#include "qvtools/dxf/model/entity.h"

namespace qv::detail {

/// Calls f with every point that a record is drawn by.
void for_each_point(auto& r, const auto& f) {
  if constexpr (requires { r.m_Point; }) f(r.m_Point);
  if constexpr (requires { r.m_Start; }) f(r.m_Start), f(r.m_End);
  if constexpr (requires { r.m_Insert; }) f(r.m_Insert);
  if constexpr (requires { r.m_Center; }) f(r.m_Center);
  if constexpr (requires { r.m_Corner; })
    for (auto& corner : r.m_Corner) f(corner);
  if constexpr (requires { r.m_Vertices; })
    for (auto& vertex : r.m_Vertices) f(vertex.m_Point);
}

}  // namespace qv::detail
