#include "kit/files/output_file.h"

#include <cerrno>
#include <string>
#include <system_error>

#include "kit/base/error.h"
#include "kit/base/system_files.h"

namespace korvel::kit {
namespace fs = std::filesystem;

OutputFile::OutputFile(const fs::path& target) : name_(target), target_(target) {
    if (is_device(target_)) {
        stream_ = open_file(target_, "wb");
        if (stream_ == nullptr) {
            fail(errno);
        }
        return;
    }
    std::error_code error;
    if (fs::exists(target_, error)) {
        // A link stays a link: the file that it leads to is replaced.
        target_ = fs::canonical(target_, error);
        FILE* const former = open_file(target_, "r+b");
        if (former == nullptr) {
            fail(errno);
        }
        std::fclose(former);
    }
    open_beside_target();
}

OutputFile::OutputFile(StandardOutput /*tag*/) : name_("standard output"), stream_(stdout) {}

void OutputFile::check(const fs::path& target) {
    std::error_code error;
    if (fs::is_directory(target, error)) {
        OutputFile opened(target); // throws with the reason
    }
    // Opening a pipe would disturb its reader.
    if (!is_device(target)) {
        const OutputFile dropped(target);
    }
}

void OutputFile::open_beside_target() {
    const fs::path beside = target_.parent_path() / temporary_name();
    held_.emplace(beside);
    stream_ = create_file(beside);
    if (stream_ == nullptr) {
        fail(errno);
    }
    temporary_ = beside;
}

void OutputFile::close() {
    if (stream_ == nullptr) {
        return;
    }
    errno = 0;
    const bool failed_before = std::ferror(stream_) != 0;
    const bool flushed = std::fflush(stream_) == 0;
    const int error = reason_of_failed_write(stream_, errno);
    const bool closed = is_standard_output() || std::fclose(stream_) == 0;
    stream_ = nullptr;
    if (failed_before || !flushed || !closed) {
        fail(error);
    }
}

void OutputFile::replace() {
    close();
    if (!temporary_.empty()) {
        put_in_place(temporary_);
        temporary_.clear();
        held_.reset();
    }
}

void OutputFile::replace_by(const fs::path& written) {
    close();
    if (temporary_.empty()) {
        fail("not a regular file");
    }
    put_in_place(written);
}

void OutputFile::put_in_place(const fs::path& written) const {
    std::error_code error;
    const fs::file_status former = fs::status(target_, error);
    if (fs::exists(former)) {
        fs::permissions(written, former.permissions(), error);
    }
    fs::rename(written, target_, error);
    if (error) {
        fail(error.default_error_condition().value());
    }
}

void OutputFile::fail(int error) const {
    fail(std::generic_category().message(error), error == EPIPE);
}

void OutputFile::fail(const std::string& reason) const {
    fail(reason, false);
}

void OutputFile::fail(const std::string& reason, bool is_closed_pipe) const {
    const std::string name = text_of(name_);
    throw output_error(name + ": cannot be written: " + reason,
                       {.file = name, .is_closed_pipe = is_closed_pipe});
}

OutputFile::~OutputFile() {
    if (stream_ != nullptr && !is_standard_output()) {
        std::fclose(stream_);
    }
    if (!temporary_.empty()) {
        std::error_code error;
        fs::remove(temporary_, error);
    }
}

} // namespace korvel::kit
