#include "apps/workbench/project/zip_archive.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <optional>

#include <zip.h>

namespace korvel::workbench {
namespace {

struct CloseSource {
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};
struct DiscardZip {
    void operator()(zip_t* zip) const { zip_discard(zip); }
};
struct CloseEntry {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using Source = std::unique_ptr<zip_source_t, CloseSource>;
using Zip = std::unique_ptr<zip_t, DiscardZip>;

std::string zip_of(const std::vector<ZipEntry>& entries);
void add_entry(zip_t& zip, const ZipEntry& entry);
std::string bytes_of(zip_source_t& source);
[[noreturn]] void fail_to_pack(const std::string& reason);

} // namespace

struct ZipReader::Archive {
    Zip zip;
};

void write_zip(const std::vector<ZipEntry>& entries, const std::filesystem::path& file) {
    kit::OutputFile out(file);
    const std::string bytes = zip_of(entries);
    std::fwrite(bytes.data(), 1, bytes.size(), out.stream());
    out.replace();
}

namespace {

std::string zip_of(const std::vector<ZipEntry>& entries) {
    zip_error_t error;
    zip_error_init(&error);
    Source source(zip_source_buffer_create(nullptr, 0, 0, &error));
    zip_source_keep(source.get()); // beyond `zip_close`
    Zip zip(zip_open_from_source(source.get(), ZIP_TRUNCATE, &error));
    if (zip == nullptr) {
        zip_source_free(source.get());
        fail_to_pack(zip_error_strerror(&error));
    }
    for (const ZipEntry& entry : entries) {
        add_entry(*zip, entry);
    }
    if (zip_close(zip.get()) != 0) {
        fail_to_pack(zip_strerror(zip.get()));
    }
    (void)zip.release();
    return bytes_of(*source);
}

void add_entry(zip_t& zip, const ZipEntry& entry) {
    constexpr zip_uint32_t fast = 1; // larger levels take longer than they save
    zip_source_t* const bytes = zip_source_buffer(&zip, entry.bytes.data(), entry.bytes.size(), 0);
    const zip_int64_t index = zip_file_add(&zip, entry.name.c_str(), bytes, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
        zip_source_free(bytes);
        fail_to_pack(zip_strerror(&zip));
    }
    const auto number = static_cast<zip_uint64_t>(index);
    zip_set_file_compression(&zip, number, entry.is_compressed ? ZIP_CM_DEFLATE : ZIP_CM_STORE,
                             fast);
}

std::string bytes_of(zip_source_t& source) {
    zip_stat_t facts;
    if (zip_source_open(&source) != 0 || zip_source_stat(&source, &facts) != 0) {
        fail_to_pack(zip_error_strerror(zip_source_error(&source)));
    }
    std::string bytes(facts.size, '\0');
    const zip_int64_t count = zip_source_read(&source, bytes.data(), bytes.size());
    zip_source_close(&source);
    if (count < 0 || static_cast<std::size_t>(count) != bytes.size()) {
        fail_to_pack("it cannot be read back");
    }
    return bytes;
}

void fail_to_pack(const std::string& reason) {
    throw kit::output_error("the project cannot be packed: " + reason);
}

} // namespace

ZipReader::ZipReader(const std::filesystem::path& file)
    : name_(kit::text_of(file)), archive_(std::make_unique<Archive>()) {
    FILE* const stream = kit::open_file(file, "rb"); // says why it cannot be opened
    if (stream == nullptr) {
        throw kit::input_error(name_ + ": " + std::generic_category().message(errno),
                               {.file = name_});
    }
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* const source = zip_source_filep_create(stream, 0, -1, &error);
    if (source == nullptr) {
        (void)std::fclose(stream);
        fail(zip_error_strerror(&error));
    }
    archive_->zip.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
    if (archive_->zip == nullptr) {
        zip_source_free(source);
        fail(std::string("not a whole zip file: ") + zip_error_strerror(&error));
    }
}

ZipReader::~ZipReader() = default;

bool ZipReader::contains(const std::string& name) const {
    return zip_name_locate(archive_->zip.get(), name.c_str(), 0) >= 0;
}

// Deflate makes at most 1032 bytes of one, so that a size beyond that is a lie.
std::string ZipReader::read(const std::string& name, const kit::Context& context) {
    constexpr std::uint64_t most_from_a_byte = 1032;
    constexpr std::uint64_t block = 1U << 20U;
    zip_t* const zip = archive_->zip.get();
    zip_stat_t facts;
    zip_stat_init(&facts);
    if (zip_stat(zip, name.c_str(), 0, &facts) != 0) {
        fail("the entry " + name + " is missing");
    }
    const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen(zip, name.c_str(), 0));
    if (entry == nullptr) {
        fail("the entry " + name + " cannot be read: " + zip_strerror(zip));
    }
    const std::uint64_t memory = kit::FindOptions().memory;
    if (facts.size > memory / 2 || facts.size / most_from_a_byte > facts.comp_size) {
        fail("the entry " + name + " is too large: " + std::to_string(facts.size) + " bytes");
    }
    std::string bytes;
    while (true) {
        const std::size_t before = bytes.size();
        bytes.resize(static_cast<std::size_t>(std::min(facts.size, before + block)) + 1);
        const zip_int64_t count =
            zip_fread(entry.get(), bytes.data() + before, bytes.size() - before);
        if (count < 0) {
            fail("the entry " + name + " is damaged: " + zip_file_strerror(entry.get()));
        }
        bytes.resize(before + static_cast<std::size_t>(count));
        if (count == 0) {
            break;
        }
        if (bytes.size() > facts.size) {
            fail("the entry " + name + " is longer than the zip file states");
        }
        context.stop_if_requested("opening");
    }
    if (bytes.size() < facts.size) {
        fail("the entry " + name + " is shorter than the zip file states");
    }
    return bytes;
}

void ZipReader::fail(const std::string& message) const {
    throw kit::input_error(name_ + ": " + message, {.file = name_});
}

} // namespace korvel::workbench
