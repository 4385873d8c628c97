#pragma once

/// QV_ADDRESS_SANITIZER is 1 in code that is built for an address sanitizer, else 0.

#if defined(__SANITIZE_ADDRESS__)
#define QV_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QV_ADDRESS_SANITIZER 1
#endif
#endif
#if !defined(QV_ADDRESS_SANITIZER)
#define QV_ADDRESS_SANITIZER 0
#endif
