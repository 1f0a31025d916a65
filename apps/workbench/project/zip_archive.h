#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kit/kit.h"

namespace korvel::workbench {

/// An entry of a zip file.
struct ZipEntry {
    std::string name;
    std::string bytes;
    bool is_compressed = true;
};

/// Writes a zip file with these entries in this order, completely or not at all. Throws a
/// kit::Error of kind output.
void write_zip(const std::vector<ZipEntry>& entries, const std::filesystem::path& file);

/// A zip file that is read. It is not trusted: what its directory states is believed only as far as
/// the bytes of the file can make it true.
class ZipReader {
public:
    /// Throws a kit::Error if the file cannot be opened, or is no zip file.
    explicit ZipReader(const std::filesystem::path& file);
    ~ZipReader();
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    bool contains(const std::string& name) const;

    /// The bytes of an entry. Throws a kit::Error if there is none of the name, if it is damaged,
    /// or larger than memory allows.
    std::string read(const std::string& name, const kit::Context& context = {});

    [[noreturn]] void fail(const std::string& message) const;

private:
    struct Archive;
    std::string name_;
    std::unique_ptr<Archive> archive_;
};

} // namespace korvel::workbench
