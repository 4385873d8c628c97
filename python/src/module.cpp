#include "core.h"

namespace qvpy {

namespace {

/// Fonts belong to the whole process: none is changed while a call works.
void load_fonts(const std::optional<Path>& text, const std::optional<Path>& big) {
  if (Busy::any()) throw Error("Fonts cannot be loaded while a drawing is in use by another thread");
  CShx fonts;
  checked([&] {
    if (text) {
      must_be_readable(*text);
      if (!qv::LoadTextFont(fonts, *text)) throw Error(shown(*text) + ": has no text font");
    }
    if (big) {
      must_be_readable(*big);
      if (!qv::LoadBigFont(fonts, *big)) throw Error(shown(*big) + ": has no big font");
    }
  });
  G_ShapeFont = fonts;
  ++fontLoads;
}

/// Arguments that are looked at later than at the call's beginning raise what others do.
void translate(std::exception_ptr raised) {
  try {
    std::rethrow_exception(raised);
  } catch (const py::cast_error&) {
    PyErr_SetString(PyExc_TypeError, "an argument is of another type");
  }
}

}  // namespace

}  // namespace qvpy

PYBIND11_MODULE(_core, m) {
  using namespace qvpy;
  py::options options;
  options.disable_enum_members_docstring();
  m.doc() = "What of qvtools is bound to the library.";
  m.attr("__name__") = "qvtools";  // of the classes, as programs see them
  m.attr("__version__") = qv::LibraryVersion();
  m.attr("BY_LAYER") = qv::kByLayer;
  py::register_exception<Error>(m, "Error", PyExc_RuntimeError).doc() =
      "What the library reports as an error, in its own words; or a file that is not what it should be.";
  m.def(
      "load_fonts", &load_fonts, py::arg("text"), py::arg("big") = py::none(),
      R"(Loads the shape fonts that texts are measured and drawn with, for the whole process: the text font and the big
font, shape files of any kind (qv::LoadTextFont, LoadBigFont). None: without one.)");
  m.def(
      "text_width",
      [](const Text& text, float height, float widthFactor) { return DXF::GetTextWidth(text, height, widthFactor); },
      py::arg("text"), py::arg("height"), py::arg("width_factor") = 0.75,
      "The width of a text in the shape fonts, in the unit of the height (DXF::GetTextWidth).");
  py::register_exception_translator(&translate);
  install_host();
  bind_entities(m);
  bind_picture(m);
  bind_document(m);
  bind_slides(m);
  bind_data(m);
  m.attr("__name__") = "qvtools._core";
}
