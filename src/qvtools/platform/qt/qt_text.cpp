#include "qvtools/platform/qt/qt_text.h"

#include <QtCore/QStringDecoder>

namespace qv {

QString from_gbk(const char* text) {
  QStringDecoder decoder("GBK");
  if (decoder.isValid()) return decoder(QByteArrayView(text));
  return QString::fromUtf8(text);
}

}  // namespace qv
