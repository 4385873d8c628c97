#pragma once

/// QV_API marks what the shared library exports; everything else stays hidden in it.
#if defined(_WIN32)
#if defined(QV_BUILDING_LIBRARY)
#define QV_API __declspec(dllexport)
#else
#define QV_API __declspec(dllimport)
#endif
#else
#define QV_API __attribute__((visibility("default")))
#endif
