#include "kit/base/system_files.h"

#include <cerrno>
#include <random>
#include <system_error>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include "kit/base/win32.h"
#else
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace korvel::kit {
namespace fs = std::filesystem;

std::string text_of(const fs::path& file) {
    const std::u8string text = file.u8string();
    return {text.begin(), text.end()};
}

fs::path path_of(std::string_view text) {
    return std::u8string(text.begin(), text.end());
}

std::string temporary_name() {
    std::random_device random;
    return ".korvel-" + std::to_string(random()) + std::to_string(random()) + ".tmp";
}

#if defined(_WIN32)

namespace {

// As other systems report it.
int reason_of_failed_open(const fs::path& file, int error) {
    std::error_code unknown;
    if (error == EACCES && fs::is_directory(file, unknown)) {
        return EISDIR;
    }
    if (error == ENOENT && fs::is_regular_file(file.parent_path(), unknown)) {
        return ENOTDIR;
    }
    return error;
}

// The C library's own ways to open a file keep it from being removed before it is closed.
FILE* create(const fs::path& file, DWORD flags, const wchar_t* mode) {
    const HANDLE handle =
        CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                    FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW, flags, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        const std::error_code error(static_cast<int>(GetLastError()), std::system_category());
        errno = reason_of_failed_open(file, error.default_error_condition().value());
        return nullptr;
    }
    const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY);
    return _wfdopen(descriptor, mode);
}

} // namespace

FILE* open_file(const fs::path& file, const char* mode) {
    const std::string narrow = mode;
    FILE* const stream = _wfopen(file.c_str(), std::wstring(narrow.begin(), narrow.end()).c_str());
    if (stream == nullptr) {
        errno = reason_of_failed_open(file, errno);
    }
    return stream;
}

FILE* create_file(const fs::path& file) {
    return create(file, FILE_ATTRIBUTE_NORMAL, L"wb");
}

FILE* create_temporary_file() {
    std::error_code error;
    const fs::path directory = fs::temp_directory_path(error);
    if (error) {
        errno = error.default_error_condition().value();
        return nullptr;
    }
    return create(directory / temporary_name(),
                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, L"w+b");
}

long long bytes_left(FILE* stream) {
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    const long long position = GetFileType(handle) == FILE_TYPE_DISK ? _ftelli64(stream) : -1;
    if (position < 0 || _fseeki64(stream, 0, SEEK_END) != 0) {
        return -1;
    }
    const long long end = _ftelli64(stream);
    _fseeki64(stream, position, SEEK_SET);
    return end > position ? end - position : -1;
}

void remove_quickly(const wchar_t* name) {
    if (DeleteFileW(name) == 0) {
        RemoveDirectoryW(name);
    }
}

// "NUL" and the like are names of devices in every directory; their full names start with \\.\.
bool is_device(const fs::path& file) {
    std::error_code error;
    const fs::path full = fs::absolute(file, error);
    return full.native().starts_with(L"\\\\.\\");
}

// The system reports the end of a pipe in several ways.
int reason_of_failed_write(FILE* stream, int error) {
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    if (error != ENOSPC && GetFileType(handle) == FILE_TYPE_PIPE) {
        return EPIPE;
    }
    return error != 0 ? error : EIO;
}

#else

FILE* open_file(const fs::path& file, const char* mode) {
    return std::fopen(file.c_str(), mode);
}

FILE* create_file(const fs::path& file) {
    return std::fopen(file.c_str(), "wbx");
}

FILE* create_temporary_file() {
    return std::tmpfile();
}

// A stream over memory has no descriptor.
long long bytes_left(FILE* stream) {
    struct stat status = {};
    const int descriptor = fileno(stream);
    const off_t position = ftello(stream);
    if (position < 0 ||
        (descriptor >= 0 && (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) ||
        fseeko(stream, 0, SEEK_END) != 0) {
        return -1;
    }
    const off_t end = ftello(stream);
    fseeko(stream, position, SEEK_SET);
    return end > position ? end - position : -1;
}

void remove_quickly(const char* name) {
    if (unlink(name) != 0) {
        rmdir(name);
    }
}

// A name in /dev may lead to a regular file, which is then somebody's open standard output.
bool is_device(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    return file.native().starts_with("/dev/") ||
           (fs::exists(status) && !fs::is_regular_file(status));
}

// The stream keeps no reason, but a pipe that nobody reads stays in error.
int reason_of_failed_write(FILE* stream, int error) {
    if (error != 0) {
        return error;
    }
    pollfd descriptor = {.fd = fileno(stream), .events = POLLOUT, .revents = 0};
    if (std::ferror(stream) != 0 && poll(&descriptor, 1, 0) == 1 &&
        (descriptor.revents & POLLERR) != 0) {
        return EPIPE;
    }
    return EIO;
}

#endif

} // namespace korvel::kit
