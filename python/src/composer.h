#pragma once

#include <algorithm>
#include <span>

#include "core.h"

namespace qvpy {

/// A method of the composer's: one of its calls, or a function that begins with it. Rows of these cost the compiler a
/// fraction of what bindings of their own would.
struct Method {
  const char* name;
  const char* parameters;  ///< as Python has them: "x, y, angle=0"
  py::object (*run)(Composer& self, const py::handle* arguments);
  std::span<const char* const> types;  ///< of the parameters, and of the result
  const char* doc;
};
void bind_methods(ComposerClass& composer, std::span<const Method> methods);

namespace detail {

inline constexpr std::size_t kMostArguments = 12;

/// What Python gives for a parameter, and how it is called there.
template <class A>
constexpr const char* type_name() {
  if constexpr (std::is_floating_point_v<A>) return "float";
  if constexpr (std::is_same_v<A, bool>) return "bool";
  if constexpr (std::is_integral_v<A>) return "int";
  if constexpr (std::is_same_v<A, Text> || std::is_same_v<A, std::string>) return "str";
  if constexpr (std::is_same_v<A, std::optional<Text>>) return "Optional[str]";
  if constexpr (std::is_same_v<A, std::optional<float>>) return "Optional[float]";
  return "Any";
}
template <class A>
using Given = std::conditional_t<std::is_same_v<A, const char*>, Text, std::remove_cvref_t<A>>;

template <class R, class... A>
struct Signature {
  static constexpr std::size_t kCount = sizeof...(A);
  static_assert(kCount <= kMostArguments);
  static constexpr const char* kTypes[] = {type_name<Given<A>>()..., std::is_void_v<R> ? "None" : "Any"};

  /// Calls with the arguments, which are all converted before the composer is looked at.
  template <class Call>
  static py::object run(const Call& call, Composer& self, const py::handle* arguments) {
    return [&]<std::size_t... kI>(std::index_sequence<kI...>)->py::object {
      const std::tuple<Given<A>...> given{arguments[kI].cast<Given<A>>()...};
      CBase_SGT& sgt = self.sgt();
      const Hold hold(self);
      if constexpr (std::is_void_v<R>)
        return checked([&] { call(sgt, std::get<kI>(given)...); }), py::none();
      else
        return checked([&] { return call(sgt, std::get<kI>(given)...); });
    }
    (std::index_sequence_for<A...>());
  }
};
template <class R, class... A>
Signature<R, A...> signature_of(R (CBase_SGT::*)(A...));
template <class R, class... A>
Signature<R, A...> signature_of(R (*)(CBase_SGT&, A...));

template <auto kCall>
py::object run(Composer& self, const py::handle* arguments) {
  const auto call = [](CBase_SGT& sgt, const auto&... values) { return std::invoke(kCall, sgt, values...); };
  return decltype(signature_of(kCall))::run(call, self, arguments);
}
template <auto kCall>
py::object run_placed(Composer& self, const py::handle* arguments) {
  py::handle turned[decltype(signature_of(kCall))::kCount];
  std::copy_n(arguments, std::size(turned), turned);
  std::rotate(turned, turned + 2, turned + 4);
  return run<kCall>(self, turned);
}

}  // namespace detail

template <auto kCall>
constexpr Method method(const char* name, const char* parameters, const char* doc) {
  return {name, parameters, &detail::run<kCall>, decltype(detail::signature_of(kCall))::kTypes, doc};
}
/// One whose parameters begin "x, y, width, height", where the call begins with width and height.
template <auto kCall>
constexpr Method placed_method(const char* name, const char* parameters, const char* doc) {
  return {name, parameters, &detail::run_placed<kCall>, decltype(detail::signature_of(kCall))::kTypes, doc};
}

/// The coordinates of points of 2 numbers, as the composer's calls take them.
struct Coordinates {
  std::vector<float> x;
  std::vector<float> y;
  int count() const { return static_cast<int>(x.size()); }
};
inline Coordinates coordinates_of(const py::object& points, const char* name, py::ssize_t least) {
  const Floats p = points_of(points, name, 2);
  if (p.rows < least) throw py::value_error(std::string(name) + ": at least " + std::to_string(least) + " expected");
  Coordinates found;
  for (py::ssize_t i = 0; i < p.rows; ++i) found.x.push_back(p.row(i)[0]), found.y.push_back(p.row(i)[1]);
  return found;
}

}  // namespace qvpy
