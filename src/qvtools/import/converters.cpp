#include "qvtools/import/internal/converters.h"

#include <algorithm>

namespace qv::importing {

namespace {

struct Row {
  std::string_view kind;
  Converter converter;
};

// Those that come often first.
constexpr Row kRows[] = {
    {"LWPOLYLINE", convert_lwpolyline},
    {"POLYLINE", convert_polyline},
    {"TEXT", convert_text},
    {"CIRCLE", convert_circle},
    {"ARC", convert_arc},
    {"INSERT", convert_insert},
    {"MTEXT", convert_mtext},
    {"POINT", convert_point},
    {"SOLID", convert_solid},
    {"HATCH", convert_hatch},
    {"DIMENSION", convert_dimension},
    {"3DFACE", convert_face},
    {"TRACE", convert_solid},
    {"ELLIPSE", convert_ellipse},
    {"SPLINE", convert_spline},
    {"HELIX", convert_spline},
    {"ATTDEF", convert_attribute_definition},
    {"ATTRIB", put_attribute},
    {"LEADER", convert_leader},
    {"MULTILEADER", convert_multileader},
    {"MLEADER", convert_multileader},
    {"TOLERANCE", convert_tolerance},
    {"ARC_DIMENSION", convert_dimension},
    {"LARGE_RADIAL_DIMENSION", convert_dimension},
    {"MPOLYGON", convert_hatch},
    {"MLINE", convert_mline},
    {"RAY", convert_ray},
    {"XLINE", convert_ray},
    {"MESH", convert_mesh_object},
    {"ACAD_TABLE", convert_table},
    {"IMAGE", convert_image_frame},
    {"WIPEOUT", convert_image_frame},
    {"PDFUNDERLAY", convert_body},
    {"OLEFRAME", convert_ole_frame},
    {"OLE2FRAME", convert_ole_frame},
    {"VIEWPORT", convert_viewport},
    {"SHAPE", convert_shape},
    {"ACAD_PROXY_ENTITY", convert_proxy},
    {"REGION", convert_body},
    {"BODY", convert_body},
    {"3DSOLID", convert_body},
    {"SURFACE", convert_body},
    {"EXTRUDEDSURFACE", convert_body},
    {"LOFTEDSURFACE", convert_body},
    {"PLANESURFACE", convert_body},
    {"REVOLVEDSURFACE", convert_body},
    {"SWEPTSURFACE", convert_body},
};

}  // namespace

Converter converter_of(std::string_view name) {
  const auto found = std::ranges::find(kRows, name, &Row::kind);
  return found == std::end(kRows) ? convert_unknown : found->converter;
}

}  // namespace qv::importing
