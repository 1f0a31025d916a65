#pragma once

// The version of the library, which the build reads from here. While the major version is 0, each
// minor version may change the interface and has a shared object name of its own.

#define KORVEL_VERSION_MAJOR 0
#define KORVEL_VERSION_MINOR 1
#define KORVEL_VERSION_PATCH 0
#define KORVEL_VERSION "0.1.0"
