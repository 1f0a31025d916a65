#include "kit/files/feature_files.h"

#include <array>
#include <cerrno>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "kit/base/error.h"
#include "kit/base/system_files.h"
#include "kit/files/feature_formats.h"
#include "kit/files/geojson_reader.h"
#include "kit/files/text_file.h"

namespace korvel::kit {
namespace fs = std::filesystem;
namespace {

using Stream = std::unique_ptr<FILE, int (*)(FILE*)>;

Stream open_to_read(const fs::path& file);
bool begins_with_brace(const fs::path& file);
bool is_geojson(const fs::path& file, const ReadFeaturesOptions& options);
std::optional<Features> read_own(FILE* stream, const std::string& name, long long size,
                                 const ReadFeaturesOptions& options, const Context& context);

} // namespace

bool holds_features(const fs::path& file) {
    return !feature_format(file).empty() || begins_with_brace(file);
}

Features read_features(const fs::path& file, const ReadFeaturesOptions& options,
                       const Context& context) {
    ReadFeaturesOptions foreign = options;
    if (is_geojson(file, options)) {
        const Stream stream = open_to_read(file);
        std::error_code unknown; // of what is no regular file
        const auto size = fs::file_size(file, unknown);
        std::optional<Features> features =
            read_own(stream.get(), text_of(file), unknown ? 0 : static_cast<long long>(size),
                     options, context);
        if (features) {
            if (features->name.empty()) {
                features->name = text_of(file.stem());
            }
            return std::move(*features);
        }
        foreign.format = "TopoJSON";
    } else if (std::error_code error; !fs::is_directory(file, error)) {
        open_to_read(file);
    }
    const std::string format = foreign.format.empty() ? feature_format(file) : foreign.format;
    return need_foreign_formats(file, format, "read").read(file, foreign, context);
}

Features read_geojson_features(FILE* stream, const std::string& name,
                               const ReadFeaturesOptions& options, const Context& context) {
    // GDAL opens files by their names.
    if (!options.where.empty() || !is_format(options.format, geojson_format)) {
        throw input_error(name + ": only GeoJSON, and all of it, is read from a stream",
                          {.file = name, .value = options.format});
    }
    std::optional<Features> features = read_own(stream, name, 0, options, context);
    if (!features) {
        throw input_error(name + ": TopoJSON, which is read from a file only", {.file = name});
    }
    return std::move(*features);
}

namespace {

// GeoJSON that the kit reads itself: a condition needs GDAL.
bool is_geojson(const fs::path& file, const ReadFeaturesOptions& options) {
    if (!options.where.empty()) {
        return false;
    }
    if (!options.format.empty()) {
        return is_format(options.format, geojson_format);
    }
    const std::string format = feature_format(file);
    return format == geojson_format || (format.empty() && begins_with_brace(file));
}

// Nothing for TopoJSON.
std::optional<Features> read_own(FILE* stream, const std::string& name, long long size,
                                 const ReadFeaturesOptions& options, const Context& context) {
    std::optional<Features> features = read_geojson(stream, name, size, context);
    if (features && !options.layer.empty() && options.layer != features->name) {
        throw input_error(
            name + ": no layer " + kit::quoted(options.layer) + ": GeoJSON has one" +
                (features->name.empty() ? ", without a name" : ", " + kit::quoted(features->name)),
            {.file = name, .value = options.layer});
    }
    return features;
}

Stream open_to_read(const fs::path& file) {
    Stream stream(open_file(file, "rb"), std::fclose);
    if (!stream) {
        throw input_error(text_of(file) +
                              ": cannot be read: " + std::generic_category().message(errno),
                          {.file = text_of(file)});
    }
    return stream;
}

// A pipe cannot be looked into beforehand.
bool begins_with_brace(const fs::path& file) {
    const Stream stream(is_device(file) ? nullptr : open_file(file, "rb"), std::fclose);
    std::array<char, 4096> start; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const std::size_t got = stream ? std::fread(start.data(), 1, start.size(), stream.get()) : 0;
    std::string_view text(start.data(), got);
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    text.remove_prefix(text.starts_with(byte_order_mark) ? byte_order_mark.size() : 0);
    const std::size_t first = text.find_first_not_of(white_space);
    return first != std::string_view::npos && text[first] == '{';
}

} // namespace
} // namespace korvel::kit
