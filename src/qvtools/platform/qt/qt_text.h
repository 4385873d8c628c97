#pragma once

#include <QtCore/QString>

namespace qv {

/// GBK bytes as Unicode. Where Qt has no GBK codec, what is not ASCII becomes a replacement character.
QString from_gbk(const char* text);

}  // namespace qv
