#include "qvtools/platform/qt/qt_text.h"

#include "qvtools/text/code_page.h"

namespace qv {

QString qt_text(const char* gbk) {
  return QString::fromStdString(from_gbk(gbk));
}

}  // namespace qv
