#pragma once

/// The whole public interface.
///
/// Memory that runs out, and disks that fail. The library throws no exceptions. An interface that returns a code gives
/// the code for failure; any other reports 301 (`tell_error`), leaves its object as it was and returns its empty value;
/// one that draws may have drawn a part. Objects stay usable, documents are as they were or say that they are cut short
/// (`DXF::IsComplete`), files are the old ones or whole new ones (`qv::SavedFile`), and nothing leaks. What host
/// programs themselves do with the containers that the interface names (`CString`, `CArray`, those of the standard
/// library) throws `std::bad_alloc` as the standard library does; exceptions of a host's own code pass through the
/// library.

#include "qvtools/api.h"  // first: it says what is missing when the compiler is set to an older standard

#include "qvtools/compare/compare.h"
#include "qvtools/display/safe_dc.h"
#include "qvtools/drawing/axis_grid.h"
#include "qvtools/drawing/bar_list.h"
#include "qvtools/drawing/base_sgt.h"
#include "qvtools/drawing/dimension_chain.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/leaders.h"
#include "qvtools/drawing/note_block.h"
#include "qvtools/drawing/second_scale.h"
#include "qvtools/drawing/sheet_frame.h"
#include "qvtools/drawing/sheet_table.h"
#include "qvtools/drawing/title_block.h"
#include "qvtools/drawing/underlay.h"
#include "qvtools/dxf/model/document.h"
#include "qvtools/dxf/model/visit.h"
#include "qvtools/dxf/view/measure.h"
#include "qvtools/dxf/view/prepared_drawing.h"
#include "qvtools/engineering/bars.h"
#include "qvtools/engineering/base_data.h"
#include "qvtools/engineering/component.h"
#include "qvtools/engineering/database_file.h"
#include "qvtools/engineering/field.h"
#include "qvtools/engineering/field_locator.h"
#include "qvtools/engineering/materials.h"
#include "qvtools/fonts/shape_file.h"
#include "qvtools/fonts/shx.h"
#include "qvtools/geometry/domains/domain.h"
#include "qvtools/geometry/domains/prepared_domain.h"
#include "qvtools/geometry/functions/jh.h"
#include "qvtools/geometry/numerics/analysis.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/geometry/numerics/polygons.h"
#include "qvtools/geometry/numerics/vectors.h"
#include "qvtools/geometry/values/coor.h"
#include "qvtools/geometry/values/point.h"
#include "qvtools/geometry/values/rect.h"
#include "qvtools/geometry/values/region.h"
#include "qvtools/geometry/values/shape.h"
#include "qvtools/import/import.h"
#include "qvtools/navigation/catch_tool.h"
#include "qvtools/navigation/draw_tool.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/platform/console/console_host.h"
#include "qvtools/platform/device.h"
#include "qvtools/platform/framework.h"
#include "qvtools/platform/host.h"
#include "qvtools/plot/picture.h"
#include "qvtools/plot/plot.h"
#include "qvtools/scripts/script.h"
#include "qvtools/services/report_subject.h"
#include "qvtools/services/services.h"
#include "qvtools/slides/slide.h"
#include "qvtools/slides/slide_library.h"
#include "qvtools/system/saved_file.h"
#include "qvtools/system/textfile.h"
#include "qvtools/text/code_page.h"
#include "qvtools/text/gbk_text.h"
#include "qvtools/text/numbers.h"
