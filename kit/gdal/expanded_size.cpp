#include "kit/gdal/expanded_size.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <cpl_string.h>
#include <cpl_vsi.h>

namespace korvel::kit {
namespace {

struct CloseFile {
    void operator()(VSILFILE* file) const { VSIFCloseL(file); }
};
using File = std::unique_ptr<VSILFILE, CloseFile>;

bool archive_expands_beyond(const std::string& archive, std::uint64_t bytes) {
    const CPLStringList names(VSIReadDirRecursive(archive.c_str()));
    std::uint64_t size = 0;
    for (int i = 0; i < names.size(); ++i) {
        VSIStatBufL status = {};
        if (VSIStatL((archive + "/" + names[i]).c_str(), &status) == 0 && status.st_size > 0) {
            size += static_cast<std::uint64_t>(status.st_size);
            if (size > bytes) {
                return true;
            }
        }
    }
    return false;
}

bool stream_expands_beyond(const std::string& compressed, std::uint64_t bytes) {
    const File file(VSIFOpenL(compressed.c_str(), "rb"));
    std::vector<char> block(1U << 20);
    std::uint64_t size = 0;
    while (file != nullptr && size <= bytes) {
        const std::size_t count = VSIFReadL(block.data(), 1, block.size(), file.get());
        if (count == 0) {
            return false;
        }
        size += count;
    }
    return size > bytes;
}

} // namespace

bool expands_beyond(const std::filesystem::path& file, std::uint64_t bytes) {
    const std::string path = std::filesystem::absolute(file).string();
    std::array<unsigned char, 4> start = {};
    if (const File opened{VSIFOpenL(path.c_str(), "rb")}; opened != nullptr) {
        VSIFReadL(start.data(), 1, start.size(), opened.get());
    }
    if (start[0] == 'P' && start[1] == 'K' && start[2] == 3 && start[3] == 4) {
        return archive_expands_beyond("/vsizip/{" + path + "}", bytes);
    }
    if (start[0] == 0x1f && start[1] == 0x8b) {
        return stream_expands_beyond("/vsigzip/" + path, bytes);
    }
    return false;
}

} // namespace korvel::kit
