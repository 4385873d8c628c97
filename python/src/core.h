#pragma once

/// What the parts of the module share: texts and paths as Python has them, reports as exceptions, documents that
/// several threads may ask for, and numbers from arrays.

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "qvtools.h"

namespace py = pybind11;

namespace qvpy {

/// A text: `str` in Python, GBK in the library.
struct Text {
  std::string gbk;
  operator const char*() const { return gbk.c_str(); }
};

/// A path: `str`, `bytes` or `os.PathLike` in Python, bytes of the file system here.
struct Path {
  std::string bytes;
  operator const char*() const { return bytes.c_str(); }
};

/// `str` of GBK bytes, and of UTF-8 that a file may have spoilt.
py::str to_str(const char* gbk);
py::str lenient(const std::string& utf8);

/// Becomes `qvtools.Error`.
struct Error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Gathers what the library reports on this thread while it lives. Boxes become an `Error`, lines of the message window
/// a warning.
class Call {
 public:
  Call();
  ~Call();
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  bool failed() const { return !boxes_.empty(); }
  /// Raises what was reported.
  void finish();
  /// The same for a call that says whether it did its work; the text is for a failure without a report.
  void finish(bool done, const std::string& otherwise);

 private:
  friend class CollectingHost;
  Call* before_;
  std::vector<std::string> boxes_;  // UTF-8
  std::vector<std::string> lines_;
};

/// Installs the host that hands reports to calls.
void install_host();

/// Runs f as a call.
template <class F>
auto checked(const F& f) {
  Call call;
  if constexpr (std::is_void_v<decltype(f())>) {
    f();
    call.finish();
  } else {
    auto result = f();
    call.finish();
    return result;
  }
}

/// What a long operation tells on its way: calls the Python function, which may answer False to give up, and lets
/// Ctrl+C end the operation.
class Progress {
 public:
  explicit Progress(py::object function) : function_(std::move(function)) {}
  bool operator()(double share);
  /// Raises what the function raised.
  void finish();

 private:
  py::object function_;
  std::exception_ptr raised_;
};

/// A document in memory. Python's lock serves short calls; one that lets it go marks its documents as busy, so that
/// other threads get an `Error` instead of a half-made document.
class Document : public std::enable_shared_from_this<Document> {
 public:
  explicit Document(std::unique_ptr<DXF> dxf) : dxf_(std::move(dxf)) {}
  virtual ~Document() = default;

  /// The library's document, to be read or changed; raises an `Error` when it is closed or busy.
  DXF& use();
  DXF& change();
  /// Its entities in drawing order.
  const std::vector<ACAD_ENTITY*>& entities();
  qv::PreparedDrawing& prepared();
  /// Takes the entities out of the drawing. They stay in memory as long as the document.
  void remove(const std::vector<ACAD_ENTITY*>& entities);
  void close();
  bool is_open() const { return dxf_ != nullptr; }
  const qv::DrawingNotes* notes() const { return report ? &report->notes : nullptr; }

  std::optional<qv::ImportReport> report;  ///< of a document that was imported
  std::string name;                        ///< of its file, UTF-8; empty for a new one

 private:
  friend class Busy;
  friend class Hold;
  std::unique_ptr<DXF> dxf_;
  std::unique_ptr<qv::PreparedDrawing> prepared_;
  std::vector<ACAD_ENTITY*> entities_;
  POSITION last_ = nullptr;  // of the last of them in the document's list
  std::vector<std::unique_ptr<ACAD_ENTITY>> removed_;
  int preparedFonts_ = 0;
  int busy_ = 0;
};

/// How often other fonts were loaded: what was measured before is to be measured anew.
extern int fontLoads;

/// Marks a document as busy under Python's lock: what Python runs meanwhile, a finalizer say, cannot touch it.
class Hold {
 public:
  explicit Hold(Document& document) : document_(document) { document.use(), ++document.busy_; }
  ~Hold() { --document_.busy_; }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  Document& document_;
};

/// Marks documents as busy and lets Python's lock go while it lives.
class Busy {
 public:
  explicit Busy(std::vector<Document*> documents);
  ~Busy();
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;
  /// Whether any call works without the lock.
  static bool any() { return running_ > 0; }

 private:
  static int running_;
  std::vector<Document*> documents_;
  std::optional<py::gil_scoped_release> release_;
};

class Composer : public Document {
 public:
  explicit Composer(std::unique_ptr<CBase_SGT> sgt) : Document(std::move(sgt)) {}
  CBase_SGT& sgt() { return static_cast<CBase_SGT&>(change()); }
};

using DocumentClass = py::class_<Document, std::shared_ptr<Document>>;
using ComposerClass = py::class_<Composer, Document, std::shared_ptr<Composer>>;

/// The Python object of an entity of the document.
py::object entity_object(const std::shared_ptr<Document>& document, ACAD_ENTITY& entity);
/// The record of such an object; a TypeError for another, or one of another document.
ACAD_ENTITY& entity_of(const py::handle& object, const Document& document);

/// Numbers from Python, as C-contiguous floats: `rows` of `columns`. A TypeError or ValueError names the argument.
struct Floats {
  py::array_t<float> array;  // keeps the numbers
  const float* data = nullptr;
  py::ssize_t rows = 0;
  int columns = 1;
  const float* row(py::ssize_t i) const { return data + i * columns; }
  float z(py::ssize_t i) const { return columns > 2 ? row(i)[2] : 0; }
};
/// Points: one of 2 or 3 numbers, or an array of them; `exactly` fixes how many numbers they have.
Floats points_of(const py::handle& value, const char* name, int exactly = 0);
/// Numbers: an array of one dimension, or a single one.
Floats numbers_of(const py::handle& value, const char* name);
/// The same for an argument of as many rows as `rows`, or of one row for all of them.
class Spread {
 public:
  Spread(Floats floats, py::ssize_t rows, const char* name);
  const float* row(py::ssize_t i) const { return floats_.row(i * step_); }
  float operator[](py::ssize_t i) const { return *row(i); }
  float z(py::ssize_t i) const { return floats_.z(i * step_); }

 private:
  Floats floats_;
  py::ssize_t step_;
};

/// As many numbers as rows, of one for all of them or of one for each.
std::vector<float> spread(const py::handle& value, py::ssize_t rows, const char* name);

/// A result of the class of that name in `qvtools._values`.
template <class... Values>
py::object value(const char* name, Values&&... values) {
  return py::module_::import("qvtools._values").attr(name)(std::forward<Values>(values)...);
}
py::object rect(const CFRect& r);
py::object rect(const qv::DrawingRect& r);
/// Left, bottom, right, top.
std::optional<qv::DrawingRect> rect_of(const py::object& value, const char* name);

/// A path as messages show it, UTF-8.
std::string shown(const Path& path);
/// Raises the OSError of a file that cannot be read.
void must_be_readable(const Path& path);

/// One of the words, by its place; a ValueError names the argument and the words.
template <class Choice = int>
Choice choice(const std::string& word, std::initializer_list<const char*> words, const char* name) {
  int i = 0;
  std::string all;
  for (const char* one : words) {
    if (word == one) return static_cast<Choice>(i);
    all += (i++ ? ", " : "") + std::string(one);
  }
  throw py::value_error(std::string(name) + ": " + word + " is none of " + all);
}

void bind_document(py::module_& m);
void bind_entities(py::module_& m);
void bind_arrays(DocumentClass& document);
void bind_picture(py::module_& m);
void bind_pictures(py::module_& m, DocumentClass& document);
void bind_primitives(ComposerClass& composer);
void bind_symbols(ComposerClass& composer);
void bind_sheets(py::module_& m, ComposerClass& composer);
void bind_data(py::module_& m);
void bind_slides(py::module_& m);

}  // namespace qvpy

namespace pybind11::detail {

template <>
struct type_caster<qvpy::Text> {
  PYBIND11_TYPE_CASTER(qvpy::Text, const_name("str"));
  bool load(handle source, bool convert);
  static handle cast(const qvpy::Text& text, return_value_policy, handle) { return qvpy::to_str(text).release(); }
};

template <>
struct type_caster<qvpy::Path> {
  PYBIND11_TYPE_CASTER(qvpy::Path, const_name("Union[str, os.PathLike]"));
  bool load(handle source, bool convert);
};

}  // namespace pybind11::detail
