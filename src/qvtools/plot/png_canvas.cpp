#include "qvtools/plot/internal/canvas.h"
namespace qv::detail {
std::unique_ptr<Canvas> png_canvas(const std::string&, const CanvasOptions&) {
  return nullptr;
}
}  // namespace qv::detail
