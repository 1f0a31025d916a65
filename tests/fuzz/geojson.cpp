// GeoJSON is read or refused, and what was read is the same once it is written and read again.

#include <cstdint>
#include <cstdlib>

#include "kit/base/error.h"
#include "kit/files/feature_files.h"
#include "tests/fuzz/exercise.h"

namespace {

using namespace korvel::kit;

bool has_same_values(const Features& one, const Features& other) {
    for (std::size_t i = 0; i < one.features.size(); ++i) {
        for (std::size_t field = 0; field < one.fields.size(); ++field) {
            if (one.value(i, field) != other.value(i, field)) {
                return false;
            }
        }
    }
    return true;
}

// Rings may be turned.
bool is_same_layer(const Features& one, const Features& other) {
    return one.features.size() == other.features.size() && one.paths.size() == other.paths.size() &&
           one.points.size() == other.points.size() && one.fields.size() == other.fields.size() &&
           has_same_values(one, other);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FILE* const stream = korvel::test::stream_over(reinterpret_cast<const char*>(data), size);
    try {
        const Features features = read_geojson_features(stream, "fuzzed");
        write_features(features, "written.geojson");
        if (!is_same_layer(features, read_features("written.geojson"))) {
            std::abort();
        }
    } catch (const Error&) {
        // Not GeoJSON.
    }
    std::fclose(stream);
    return 0;
}
