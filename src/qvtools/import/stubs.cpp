#include "qvtools/import/internal/converters.h"
namespace qv::importing {
#define S(f)                       \
  Outcome f(Job&, const Record&) { \
    return left_out("later");      \
  }
S(convert_mtext)
S(convert_mline) S(convert_hatch) S(convert_dimension) S(convert_leader) S(convert_multileader) S(convert_tolerance)
    S(convert_table) S(convert_image_frame) S(convert_ole_frame) S(convert_proxy)
}  // namespace qv::importing
