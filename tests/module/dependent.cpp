// A library that is linked with korvel, as other extension libraries of a host are.

#include "korvel/geometry/vert3d.h"

#if defined(_WIN32)
#define EXPORTED __declspec(dllexport)
#else
#define EXPORTED __attribute__((visibility("default")))
#endif

extern "C" EXPORTED void use_korvel() {
    VERT3D vertex;
    vertex.restorvert();
}
