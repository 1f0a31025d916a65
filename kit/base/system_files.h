#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

// What of files depends on the system. Names are UTF-8 in texts on Windows; elsewhere they are the
// bytes that the system has.

namespace korvel::kit {

/// A name as text: for messages and reports.
std::string text_of(const std::filesystem::path& file);

/// The path that a text names.
std::filesystem::path path_of(std::string_view text);

/// Opens a file like `std::fopen`, whose modes it takes without "x". Null with the reason in
/// `errno` if that fails.
FILE* open_file(const std::filesystem::path& file, const char* mode);

/// Opens a new file for writing bytes. Null with the reason in `errno` if that fails, also when the
/// file exists. The file can be removed while it is open.
FILE* create_file(const std::filesystem::path& file);

/// Opens a new file for writing and reading bytes, in the system's directory for temporary files,
/// which goes away when it is closed. Null with the reason in `errno` if that fails.
FILE* create_temporary_file();

/// The number of bytes from the stream's position to the end of its file; -1 for what is no regular
/// file, or has no size until it is read.
long long bytes_left(FILE* stream);

/// Removes a file or, if none has the name, an empty directory. Takes no memory and no locks.
void remove_quickly(const std::filesystem::path::value_type* name);

/// Whether the name is that of a device or a pipe, which cannot be replaced by a file.
bool is_device(const std::filesystem::path& file);

/// Why a write to the stream failed, from the `errno` of that write, which is 0 if it is not known:
/// `EPIPE` for a pipe that nobody reads any more, `EIO` where the reason cannot be found out.
int reason_of_failed_write(FILE* stream, int error);

/// A random name for a temporary file beside its target.
std::string temporary_name();

} // namespace korvel::kit
