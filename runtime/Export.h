// The mark of everything that the library exports.
#pragma once

#if defined(QXSVG_SHARED)
#define QXSVG_API __attribute__((visibility("default")))
#else
#define QXSVG_API
#endif
