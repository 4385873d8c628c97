#include "qvtools/version.h"

namespace qv {

int LibraryVersionNumber() {
  return QVTOOLS_VERSION_NUMBER;
}

const char* LibraryVersion() {
  return QVTOOLS_VERSION;
}

}  // namespace qv
