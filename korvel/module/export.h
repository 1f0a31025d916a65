#pragma once

// KORVEL_API marks what a host may call. Static builds define KORVEL_STATIC, for the library and
// for everything that links it; KORVEL_BUILDING is defined only while the library itself is
// compiled.

#if defined(KORVEL_STATIC)
#define KORVEL_API
#elif defined(_WIN32)
#if defined(KORVEL_BUILDING)
#define KORVEL_API __declspec(dllexport)
#else
#define KORVEL_API __declspec(dllimport)
#endif
#else
#define KORVEL_API __attribute__((visibility("default")))
#endif
