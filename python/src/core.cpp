#include "core.h"

#include <algorithm>
#include <atomic>
#include <unordered_set>

namespace pybind11::detail {

bool type_caster<qvpy::Text>::load(handle source, bool) {
  if (!PyUnicode_Check(source.ptr())) return false;
  Py_ssize_t size = 0;
  const char* const utf8 = PyUnicode_AsUTF8AndSize(source.ptr(), &size);
  if (!utf8) throw error_already_set();
  const std::string_view text(utf8, static_cast<std::size_t>(size));
  if (text.find('\0') != text.npos) throw value_error("a text must not hold a zero character");
  value.gbk = qv::to_gbk(text);
  return true;
}

bool type_caster<qvpy::Path>::load(handle source, bool) {
  PyObject* bytes = nullptr;
  if (!PyUnicode_FSConverter(source.ptr(), &bytes)) {
    if (!PyErr_ExceptionMatches(PyExc_TypeError)) throw error_already_set();
    PyErr_Clear();
    return false;
  }
  value.bytes = reinterpret_steal<pybind11::bytes>(bytes);
  return true;
}

}  // namespace pybind11::detail

namespace qvpy {

py::str to_str(const char* gbk) {
  return qv::from_gbk(gbk);
}

py::str lenient(const std::string& utf8) {
  return py::bytes(utf8).attr("decode")("utf-8", "replace");
}

namespace {
thread_local Call* t_call = nullptr;
constexpr std::size_t kMostReports = 10;

void note(std::vector<std::string>& texts, std::string text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  if (!text.empty() && texts.size() < kMostReports && std::find(texts.begin(), texts.end(), text) == texts.end())
    texts.push_back(std::move(text));
}

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : "\n") + text;
  return all;
}
}  // namespace

/// Boxes and lines go to the call of the thread that reports. The screen is as large as any picture, so that nothing is
/// cut to it.
class CollectingHost : public qv::ConsoleHost {
 public:
  CollectingHost() : ConsoleHost({32767, 32767}) {}
  qv::Answer ShowBox(const char* text, qv::BoxKind kind) override {
    if (!t_call) return ConsoleHost::ShowBox(text, kind);
    std::string told = qv::from_gbk(text);
    const std::string subject = qv::from_gbk(qv::ReportSubject::Current());
    if (!subject.empty()) told += " (" + subject + ")";
    note(t_call->boxes_, std::move(told));
    return qv::Answer::Ok;
  }
  void ReplaceMessageSelection(const char* text) override {
    if (t_call) note(t_call->lines_, qv::from_gbk(text));
  }
};

void install_host() {
  qv::SetHost(new CollectingHost);  // for as long as the process
}

Call::Call() : before_(std::exchange(t_call, this)) {}

Call::~Call() {
  t_call = before_;
}

void Call::finish() {
  if (!lines_.empty()) {
    const std::string lines = joined(std::exchange(lines_, {}));
    const py::object kind = py::module_::import("qvtools._values").attr("Notice");
    if (PyErr_WarnEx(kind.ptr(), lines.c_str(), 1) != 0) throw py::error_already_set();
  }
  if (boxes_.empty()) return;
  std::atomic_ref<int>{QV_ERROR_CODE}.store(0);
  throw Error(joined(boxes_));
}

void Call::finish(bool done, const std::string& otherwise) {
  finish();
  if (!done) throw Error(lenient(otherwise));
}

bool Progress::operator()(double share) {
  const py::gil_scoped_acquire lock;
  try {
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    return function_.is_none() || !function_(share).is(py::bool_(false));
  } catch (...) {
    raised_ = std::current_exception();
    return false;
  }
}

void Progress::finish() {
  if (raised_) std::rethrow_exception(std::exchange(raised_, nullptr));
}

DXF& Document::use() {
  if (!dxf_) throw Error("The document is closed");
  if (busy_ > 0) throw Error("The document is in use by another thread");
  return *dxf_;
}

DXF& Document::change() {
  DXF& dxf = use();
  prepared_.reset();
  return dxf;
}

const std::vector<ACAD_ENTITY*>& Document::entities() {
  const CPtrList& list = use().m_EntityList;
  POSITION at = last_;
  // Entities are only ever added at the end; `remove` begins anew.
  if (at)
    list.GetNext(at);
  else
    at = list.GetHeadPosition();
  while (at) {
    last_ = at;
    entities_.push_back(static_cast<ACAD_ENTITY*>(list.GetNext(at)));
  }
  return entities_;
}

qv::PreparedDrawing& Document::prepared() {
  DXF& dxf = use();
  if (preparedFonts_ != fontLoads) prepared_.reset();
  preparedFonts_ = fontLoads;
  if (!prepared_) prepared_ = checked([&] { return std::make_unique<qv::PreparedDrawing>(dxf); });
  return *prepared_;
}

void Document::remove(const std::vector<ACAD_ENTITY*>& entities) {
  const std::unordered_set<ACAD_ENTITY*> gone(entities.begin(), entities.end());
  const std::vector<ACAD_ENTITY*> all = this->entities();
  removed_.reserve(removed_.size() + all.size());
  CPtrList& list = change().m_EntityList;
  last_ = nullptr;
  entities_.clear();
  list.RemoveAll();
  for (ACAD_ENTITY* entity : all)
    if (gone.contains(entity) || !list.AddTail(entity)) removed_.emplace_back(entity);
}

void Document::close() {
  if (!dxf_) return;
  change();
  entities_.clear();
  last_ = nullptr;
  removed_.clear();
  report.reset();
  dxf_.reset();
}

int fontLoads = 0;
int Busy::running_ = 0;

Busy::Busy(std::vector<Document*> documents) : documents_(std::move(documents)) {
  for (Document* document : documents_) document->use();
  for (Document* document : documents_) ++document->busy_;
  ++running_;
  release_.emplace();
}

Busy::~Busy() {
  release_.reset();
  --running_;
  for (Document* document : documents_) --document->busy_;
}

namespace {

[[noreturn]] void wrong_shape(const char* name, const char* wanted, const py::array& array) {
  throw py::value_error(std::string(name) + ": " + wanted + " expected, not an array of shape " +
                        std::string(py::str(array.attr("shape"))));
}

/// The value as an array of floats of any shape.
py::array_t<float> floats_of(const py::handle& value, const char* name) {
  const py::module_ numpy = py::module_::import("numpy");
  const py::array array = numpy.attr("asarray")(value);
  const char kind = array.dtype().kind();
  if (kind != 'f' && kind != 'i' && kind != 'u')
    throw py::type_error(std::string(name) + ": numbers expected, not " + std::string(py::str(array.dtype())));
  return numpy.attr("asarray")(array, py::dtype::of<float>(), "C");
}

}  // namespace

Floats points_of(const py::handle& value, const char* name, int exactly) {
  Floats points{floats_of(value, name)};
  const py::array& array = points.array;
  const char* const wanted = exactly == 2 ? "points of 2 numbers" : "points of 2 or 3 numbers";
  const bool none = array.size() == 0 && array.ndim() <= 2;
  if (!none) {
    if (array.ndim() != 1 && array.ndim() != 2) wrong_shape(name, wanted, array);
    const py::ssize_t columns = array.shape(array.ndim() - 1);
    if (exactly ? columns != exactly : columns != 2 && columns != 3) wrong_shape(name, wanted, array);
    points.columns = static_cast<int>(columns);
    points.rows = array.ndim() == 1 ? 1 : array.shape(0);
  }
  points.data = points.array.data();
  return points;
}

Floats numbers_of(const py::handle& value, const char* name) {
  Floats numbers{floats_of(value, name)};
  if (numbers.array.ndim() > 1) wrong_shape(name, "numbers in one dimension", numbers.array);
  numbers.data = numbers.array.data();
  numbers.rows = numbers.array.size();
  return numbers;
}

Spread::Spread(Floats floats, py::ssize_t rows, const char* name) : floats_(std::move(floats)) {
  if (floats_.rows != rows && floats_.rows != 1)
    throw py::value_error(std::string(name) + ": " + std::to_string(rows) + " rows expected, or one, not " +
                          std::to_string(floats_.rows));
  step_ = floats_.rows == rows ? 1 : 0;
}

std::vector<float> spread(const py::handle& value, py::ssize_t rows, const char* name) {
  const Spread values(numbers_of(value, name), rows, name);
  std::vector<float> all;
  for (py::ssize_t i = 0; i < rows; ++i) all.push_back(values[i]);
  return all;
}

py::object rect(const qv::DrawingRect& r) {
  return value("Rect", r.left, r.bottom, r.right, r.top);
}

py::object rect(const CFRect& r) {
  return rect(qv::DrawingRect{r.x1, r.y1, r.x2, r.y2});
}

std::optional<qv::DrawingRect> rect_of(const py::object& value, const char* name) {
  if (value.is_none()) return std::nullopt;
  const Floats numbers = numbers_of(value, name);
  if (numbers.rows != 4) throw py::value_error(std::string(name) + ": left, bottom, right and top expected");
  const float* const v = numbers.data;
  return qv::DrawingRect{std::min(v[0], v[2]), std::min(v[1], v[3]), std::max(v[0], v[2]), std::max(v[1], v[3])};
}

std::string shown(const Path& path) {
  return lenient(path.bytes);
}

void must_be_readable(const Path& path) {
  py::module_::import("io").attr("open")(py::bytes(path.bytes), "rb").attr("close")();
}

}  // namespace qvpy
