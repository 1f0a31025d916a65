// Reads a body model file, then makes every call on the result.

#include <cstdlib>
#include <string>

#include "tests/fuzz/exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    korvel::test::Bytes bytes(text);
    TMOD3D model;
    FILE* const stream = korvel::test::stream_over(text.data(), text.size());
    model.read_mode(stream);
    if (model.mode_ok == 0 && !model.lines.IsEmpty()) {
        std::abort(); // derived from an incomplete file
    }
    korvel::test::exercise(model, bytes);
    std::rewind(stream);
    model.read_mode(stream); // into a model that is not empty
    korvel::test::exercise_once(model, bytes);
    std::fclose(stream);
    return 0;
}
