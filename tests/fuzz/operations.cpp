// A starter model, and any sequence of calls and changes by the host.

#include "tests/fuzz/exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace korvel::test;
    constexpr int most_steps = 40;
    Bytes bytes(data, size);
    TMOD3D model;
    double center[3] = {0, 0, 0};
    double edges[3] = {20, 20, 20};
    if (!bytes.chance(8)) {
        model.inti_mode(center, edges, bytes.choice(2), 0);
    }
    for (int step = 0; step < most_steps && !bytes.is_empty(); ++step) {
        if (bytes.chance(3)) {
            edit(model, bytes);
        } else {
            exercise_once(model, bytes);
        }
    }
    return 0;
}
