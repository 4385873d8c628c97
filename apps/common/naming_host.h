#pragma once

/// A host whose boxes also name what a report is about: "Layer Name Error ! (WALL)".

#include <string>

#include "qvtools.h"

namespace qvapps {

template <class Base>
class NamingHost : public Base {
 public:
  using Base::Base;
  qv::Answer ShowBox(const char* text, qv::BoxKind kind) override {
    const std::string subject = qv::ReportSubject::Current();
    return subject.empty() ? Base::ShowBox(text, kind) : Base::ShowBox((text + (" (" + subject + ')')).c_str(), kind);
  }
};

}  // namespace qvapps
