#pragma once

#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
#error "qvtools needs C++20"
#endif

/// QV_API marks what the shared library exports; everything else stays hidden in it. Programs that link the static library
/// define QV_STATIC, as the build's own targets and packages do for them.
#if !defined(_WIN32)
#define QV_API __attribute__((visibility("default")))
#elif defined(QV_STATIC)
#define QV_API
#elif defined(QV_BUILDING_LIBRARY)
#define QV_API __declspec(dllexport)
#else
#define QV_API __declspec(dllimport)
#endif
