#pragma once

#include <QtCore/QString>

namespace qv {

/// GBK bytes as Qt's text. A byte that begins no character becomes U+F700 plus its value, as `from_gbk` says.
QString qt_text(const char* gbk);

}  // namespace qv
