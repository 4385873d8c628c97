#pragma once

#include "qvtools/api.h"

namespace qv {

/// Names what a report is about (a layer that is not there, say) for as long as the object lives: the report's text
/// stays the one that programs know, and a host that shows it can tell the name beside it. Belongs to its thread.
class QV_API ReportSubject {
 public:
  /// The name is not copied; it must outlive the object.
  explicit ReportSubject(const char* name);
  ~ReportSubject();
  ReportSubject(const ReportSubject&) = delete;
  ReportSubject& operator=(const ReportSubject&) = delete;

  /// The name that the report of this moment is about, GBK; empty when none is known.
  static const char* Current();

 private:
  const char* before_;
};

}  // namespace qv
