#include "composer.h"

#include <pybind11/eval.h>

namespace qvpy {

namespace {

/// The parameters of a method, by which Python's arguments are put in order.
class Parameters {
 public:
  explicit Parameters(const Method& method) : name_(method.name) {
    const std::string all = method.parameters;
    for (std::size_t at = 0; at < all.size();) {
      const std::size_t end = std::min(all.find(", ", at), all.size());
      add(all.substr(at, end - at), method.types[names_.size()]);
      at = end + 2;
    }
    doc_ = name_ + "(self" + doc_ + ") -> " + method.types.back() + "\n\n" + method.doc;
  }

  const std::string& doc() const { return doc_; }

  /// The value of each parameter; a TypeError where one is missing, or an argument has no place.
  std::array<py::handle, detail::kMostArguments> order(const py::args& args, const py::kwargs& named) const {
    if (args.size() > names_.size()) fail("takes " + std::to_string(names_.size()) + " arguments");
    std::array<py::handle, detail::kMostArguments> values;
    std::copy(args.begin(), args.end(), values.begin());
    std::size_t used = 0;
    for (std::size_t i = 0; i < names_.size(); ++i) {
      const py::handle given = named.size() > used ? PyDict_GetItemString(named.ptr(), names_[i].c_str()) : nullptr;
      if (given) ++used;
      if (i < args.size()) {
        if (given) fail("got two values for " + names_[i]);
        continue;
      }
      values[i] = given ? given : defaults_[i];
      if (!values[i]) fail("needs the argument " + names_[i]);
    }
    if (used < named.size()) fail("got an argument that it does not know");
    return values;
  }
  [[noreturn]] void fail(const std::string& why) const { throw py::type_error(name_ + "() " + why + ":\n" + doc_); }

 private:
  void add(const std::string& parameter, const char* type) {
    const std::size_t equals = parameter.find('=');
    names_.push_back(parameter.substr(0, equals));
    doc_ += ", " + names_.back() + ": " + type;
    py::object value;
    if (equals != parameter.npos) {
      value = py::eval(parameter.substr(equals + 1));
      doc_ += " = " + parameter.substr(equals + 1);
    }
    defaults_.push_back(std::move(value));
  }

  std::string name_;
  std::string doc_;
  std::vector<std::string> names_;
  std::vector<py::object> defaults_;
};

}  // namespace

void bind_methods(ComposerClass& composer, std::span<const Method> methods) {
  py::options options;
  options.disable_function_signatures();
  for (const Method& method : methods) {
    // For as long as the process: the function needs them.
    const Parameters& parameters = *new Parameters(method);
    const auto call = [&parameters, run = method.run](Composer& self, const py::args& args, const py::kwargs& named) {
      const auto arguments = parameters.order(args, named);
      try {
        return run(self, arguments.data());
      } catch (const py::cast_error&) {
        parameters.fail("got an argument of another type");
      }
    };
    composer.def(method.name, call, parameters.doc().c_str());
  }
}

}  // namespace qvpy
