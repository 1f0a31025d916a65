#include "kit/files/output_file.h"

#include <cerrno>
#include <random>
#include <string>
#include <system_error>

#if !defined(_WIN32)
#include <poll.h>
#endif

#include "kit/base/error.h"

namespace korvel::kit {
namespace fs = std::filesystem;
namespace {

// Devices and pipes cannot be replaced. A name in /dev may lead to a regular file, which is
// then somebody's open standard output.
bool is_written_directly(const fs::path& target) {
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    return target.native().starts_with(fs::path("/dev/").native()) ||
           (fs::exists(status) && !fs::is_regular_file(status));
}

int reason_of_failure(FILE* stream);

} // namespace

std::string temporary_name() {
    std::random_device random;
    return ".korvel-" + std::to_string(random()) + std::to_string(random()) + ".tmp";
}

OutputFile::OutputFile(const fs::path& target) : name_(target), target_(target) {
    if (is_written_directly(target_)) {
        stream_ = std::fopen(target_.string().c_str(), "wb");
        if (stream_ == nullptr) {
            fail(errno);
        }
        return;
    }
    std::error_code error;
    if (fs::exists(target_, error)) {
        // A link stays a link: the file that it leads to is replaced.
        target_ = fs::canonical(target_, error);
        FILE* const former = std::fopen(target_.string().c_str(), "r+b");
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
    if (!is_written_directly(target)) {
        const OutputFile dropped(target);
    }
}

void OutputFile::open_beside_target() {
    const fs::path beside = target_.parent_path() / temporary_name();
    held_.emplace(beside);
    stream_ = std::fopen(beside.string().c_str(), "wbx");
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
    const int error = errno != 0 ? errno : reason_of_failure(stream_);
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
        fail(error.value());
    }
}

void OutputFile::fail(int error) const {
    fail(std::generic_category().message(error), error == EPIPE);
}

void OutputFile::fail(const std::string& reason) const {
    fail(reason, false);
}

void OutputFile::fail(const std::string& reason, bool is_closed_pipe) const {
    throw output_error(name_.string() + ": cannot be written: " + reason,
                       {.file = name_.string(), .is_closed_pipe = is_closed_pipe});
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

namespace {

// Why an earlier write failed, as far as that can still be found out: the stream keeps no reason,
// but a pipe that nobody reads stays in error.
int reason_of_failure(FILE* stream) {
#if !defined(_WIN32)
    pollfd descriptor = {.fd = fileno(stream), .events = POLLOUT, .revents = 0};
    if (std::ferror(stream) != 0 && poll(&descriptor, 1, 0) == 1 &&
        (descriptor.revents & POLLERR) != 0) {
        return EPIPE;
    }
#endif
    return EIO;
}

} // namespace

} // namespace korvel::kit
