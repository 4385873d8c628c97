#pragma once

/// Names that host programs use and that Windows defines itself.

#include <cstdint>

/// A colour: red in the low byte, then green, then blue.
#if defined(_WIN32)
typedef unsigned long COLORREF;  // as in windows.h, which may be included too
/// 1 where the system has POINT and RECT of its own.
#define QV_SYSTEM_DEFINES_POINT 1
#else
typedef std::uint32_t COLORREF;
/// 1 where the system has POINT and RECT of its own.
#define QV_SYSTEM_DEFINES_POINT 0
#endif
