#include "qvtools/services/report_subject.h"

namespace qv {

namespace {

thread_local const char* g_subject = "";

}  // namespace

ReportSubject::ReportSubject(const char* name) : before_(g_subject) {
  g_subject = name ? name : "";
}

ReportSubject::~ReportSubject() {
  g_subject = before_;
}

const char* ReportSubject::Current() {
  return g_subject;
}

}  // namespace qv
