// A set of regions of any coordinates and indices: triangulated, lifted, raised to a body, cut.

#include "tests/fuzz/exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace korvel::test;
    Bytes bytes(data, size);
    PLYDT set;
    take_set(set, bytes);
    exercise(set, bytes);
    TMOD3D model;
    model.create3dmode(set);
    exercise_once(model, bytes);
    model.create3dmode(set); // a second body beside the first
    TMOD2D section;
    model.get_x_section(bytes.real(), section);
    exercise(section, bytes);
    exercise(model, bytes);
    return 0;
}
