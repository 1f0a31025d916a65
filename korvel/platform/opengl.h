#pragma once

// OpenGL 1.1, from the system.

#include "korvel/platform/types.h" // on Windows the system's types come first

#include <GL/gl.h>
