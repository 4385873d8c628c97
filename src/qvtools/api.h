#pragma once

#if __cplusplus < 202002L
#error "qvtools needs C++20"
#endif

/// QV_API marks what the shared library exports; everything else stays hidden in it. Programs that link the static
/// library define QV_STATIC, as the build's own targets and packages do for them.
#if !defined(_WIN32)
#define QV_API __attribute__((visibility("default")))
#elif defined(QV_STATIC)
#define QV_API
#elif defined(QV_BUILDING_LIBRARY)
#define QV_API __declspec(dllexport)
#else
#define QV_API __declspec(dllimport)
#endif

/// QV_FORMAT(f, a): parameter f is a format of `printf` and the arguments begin at a (0 for a `va_list`); a member
/// function counts its object as the first parameter. Checked where QV_CHECK_FORMATS is defined, as in the library's
/// own build: host programs may have calls that compilers warn of.
#if !defined(QV_CHECK_FORMATS) || !defined(__GNUC__)
#define QV_FORMAT(f, a)
#elif defined(__MINGW32__) && !defined(__clang__)
#define QV_FORMAT(f, a) __attribute__((format(gnu_printf, f, a)))
#else
#define QV_FORMAT(f, a) __attribute__((format(printf, f, a)))
#endif
