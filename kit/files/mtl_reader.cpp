#include "kit/files/mtl_reader.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <memory>
#include <string_view>
#include <system_error>

#include "kit/base/system_files.h"
#include "kit/files/text_scan.h"

namespace korvel::kit {
namespace fs = std::filesystem;
namespace {

fs::path library_file(const std::string& library, const fs::path& folder);
std::optional<Colour> diffuse_colour(TextScan& scan);

} // namespace

void read_materials(const std::string& library, const fs::path& folder, const std::string& obj,
                    const Context& context, Materials& materials) {
    const fs::path file = library_file(library, folder);
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(
        file.empty() ? nullptr : open_file(file, "rb"), std::fclose);
    if (!stream) {
        context.warn(obj + ": its materials in '" + library +
                     "' cannot be read: colours are left out");
        return;
    }
    const Context silent = {.stop = context.stop}; // the progress is that of the OBJ
    ByteInput input(stream.get(), text_of(file), silent);
    TextScan scan(input);
    std::optional<Colour>* material = nullptr;
    while (scan.next_line()) {
        const std::string_view word = scan.word();
        if (word == "newmtl") {
            material = &materials[std::string(scan.rest())];
            material->reset();
        } else if (word == "Kd" && material != nullptr) {
            *material = diffuse_colour(scan);
        }
    }
}

unsigned char colour_channel(double share) {
    const double value = share > 1 ? share : 255 * share;
    return static_cast<unsigned char>(std::lround(std::clamp(value, 0.0, 255.0)));
}

namespace {

// Nothing if there is no regular file of that name, so that no pipe is waited for.
fs::path library_file(const std::string& library, const fs::path& folder) {
    std::string name = library;
    for (int attempt = 0; attempt < 2; ++attempt) {
        fs::path file = folder / path_of(name);
        if (std::error_code error; fs::is_regular_file(file, error)) {
            return file;
        }
        std::replace(name.begin(), name.end(), '\\', '/');
    }
    return {};
}

// One number is that of all channels. Spectral curves and CIE colours are not read.
std::optional<Colour> diffuse_colour(TextScan& scan) {
    std::array<double, 3> shares = {};
    for (std::size_t i = 0; i < shares.size(); ++i) {
        if (i == 1 && scan.at_line_end()) {
            shares[1] = shares[2] = shares[0];
            break;
        }
        if (i == 0) {
            TextScan ahead = scan;
            if (const std::string_view word = ahead.word();
                !word.empty() && std::isalpha(static_cast<unsigned char>(word[0])) != 0) {
                return {};
            }
        }
        shares[i] = scan.number("a share of the diffuse colour");
    }
    return Colour{colour_channel(shares[0]), colour_channel(shares[1]), colour_channel(shares[2])};
}

} // namespace
} // namespace korvel::kit
