#pragma once

/// The converters, one for each kind of entity or family of kinds.

#include "qvtools/import/internal/job.h"

namespace qv::importing {

Outcome convert_point(Job& job, const Record& record);
Outcome convert_circle(Job& job, const Record& record);
Outcome convert_arc(Job& job, const Record& record);
Outcome convert_solid(Job& job, const Record& record);
Outcome convert_face(Job& job, const Record& record);
Outcome convert_polyline(Job& job, const Record& record);
Outcome convert_lwpolyline(Job& job, const Record& record);
Outcome convert_mesh_object(Job& job, const Record& record);
Outcome convert_text(Job& job, const Record& record);
Outcome convert_attribute_definition(Job& job, const Record& record);
Outcome convert_mtext(Job& job, const Record& record);
Outcome convert_insert(Job& job, const Record& record);
Outcome convert_ellipse(Job& job, const Record& record);
Outcome convert_spline(Job& job, const Record& record);
Outcome convert_ray(Job& job, const Record& record);
Outcome convert_mline(Job& job, const Record& record);
Outcome convert_hatch(Job& job, const Record& record);
Outcome convert_dimension(Job& job, const Record& record);
Outcome convert_leader(Job& job, const Record& record);
Outcome convert_multileader(Job& job, const Record& record);
Outcome convert_tolerance(Job& job, const Record& record);
Outcome convert_table(Job& job, const Record& record);
Outcome convert_image_frame(Job& job, const Record& record);
Outcome convert_ole_frame(Job& job, const Record& record);
Outcome convert_viewport(Job& job, const Record& record);
Outcome convert_proxy(Job& job, const Record& record);
Outcome convert_unknown(Job& job, const Record& record);
Outcome convert_body(Job& job, const Record& record);
Outcome convert_shape(Job& job, const Record& record);

}  // namespace qv::importing
