// Reads a polygon-region file, then makes every call on the result.

#include <string>

#include "tests/fuzz/exercise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    korvel::test::Bytes bytes(text);
    CCPloy2DRg set;
    FILE* const stream = korvel::test::stream_over(text.data(), text.size());
    set.readpolyrg(stream);
    korvel::test::exercise(set, bytes);
    std::rewind(stream);
    set.readpolyrg(stream); // into a set that is not empty
    korvel::test::exercise(set, bytes);
    std::fclose(stream);
    return 0;
}
