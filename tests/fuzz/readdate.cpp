// Reads a section file, then makes every call on the result.

#include <string>

#include "tests/fuzz/exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    korvel::test::Bytes bytes(text);
    TMOD2D section;
    FILE* const stream = korvel::test::stream_over(text.data(), text.size());
    section.readdate(stream);
    korvel::test::exercise(section, bytes);
    std::rewind(stream);
    section.readdate(stream); // into a model that is not empty
    korvel::test::exercise(section, bytes);
    std::fclose(stream);
    return 0;
}
