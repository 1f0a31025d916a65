#pragma once

// KORVEL_API marks what the library exports, KORVEL_PLATFORM_API what the platform library exports.
// The platform library is a library of its own, because its chain of loaded extension libraries
// outlives each of them. Static builds define KORVEL_STATIC, for both and for everything that links
// them; KORVEL_BUILDING and KORVEL_PLATFORM_BUILDING are defined only while the library in question
// is compiled.

#if defined(KORVEL_STATIC)
#define KORVEL_EXPORT
#define KORVEL_IMPORT
#elif defined(_WIN32)
#define KORVEL_EXPORT __declspec(dllexport)
#define KORVEL_IMPORT __declspec(dllimport)
#else
#define KORVEL_EXPORT __attribute__((visibility("default")))
#define KORVEL_IMPORT KORVEL_EXPORT
#endif

#if defined(KORVEL_BUILDING)
#define KORVEL_API KORVEL_EXPORT
#else
#define KORVEL_API KORVEL_IMPORT
#endif

#if defined(KORVEL_PLATFORM_BUILDING)
#define KORVEL_PLATFORM_API KORVEL_EXPORT
#else
#define KORVEL_PLATFORM_API KORVEL_IMPORT
#endif
