#pragma once

#include "qvtools/api.h"

/// The version of the library that a program is compiled with. It stands here alone: the build, the packages and the
/// programs read it from these lines. Where the first number changes, programs are compiled anew and may have to be
/// changed; a new second number adds to the interface, a new third one mends.
#define QVTOOLS_VERSION_MAJOR 0
#define QVTOOLS_VERSION_MINOR 1
#define QVTOOLS_VERSION_PATCH 0

/// The same as one number for `#if`: 10203 is 1.2.3. The second and third numbers stay below 100.
#define QVTOOLS_VERSION_NUMBER (QVTOOLS_VERSION_MAJOR * 10000 + QVTOOLS_VERSION_MINOR * 100 + QVTOOLS_VERSION_PATCH)

/// The same as text, "1.2.3".
#define QVTOOLS_VERSION                  \
  QVTOOLS_TEXT_OF(QVTOOLS_VERSION_MAJOR) \
  "." QVTOOLS_TEXT_OF(QVTOOLS_VERSION_MINOR) "." QVTOOLS_TEXT_OF(QVTOOLS_VERSION_PATCH)
#define QVTOOLS_TEXT_OF(number) QVTOOLS_TEXT_OF_WORD(number)
#define QVTOOLS_TEXT_OF_WORD(word) #word

namespace qv {

/// `QVTOOLS_VERSION_NUMBER` and `QVTOOLS_VERSION` of the library that the program runs with, which may be another one
/// than it was compiled with. The text lives as long as the program.
QV_API int LibraryVersionNumber();
QV_API const char* LibraryVersion();

}  // namespace qv
