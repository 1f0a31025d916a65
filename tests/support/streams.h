#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace korvel::test {

/// An open stream, closed at the end of its scope.
using Stream = std::unique_ptr<FILE, int (*)(FILE*)>;

/// An empty temporary file. Of programs that run side by side Windows may give two the same name,
/// of which one gets no file; it gets another name with the next attempt.
inline Stream temporary_stream() {
    constexpr int attempts = 100;
    FILE* stream = nullptr;
    for (int attempt = 0; attempt < attempts && stream == nullptr; ++attempt) {
        stream = std::tmpfile();
    }
    if (stream == nullptr) {
        std::perror("no temporary file");
        std::abort();
    }
    return {stream, std::fclose};
}

/// A temporary file with this text, open at its start.
inline Stream stream_of(const std::string& text = {}) {
    Stream stream = temporary_stream();
    std::fwrite(text.data(), 1, text.size(), stream.get());
    std::rewind(stream.get());
    return stream;
}

/// What `write(stream)` writes.
template <class Write>
std::string written(Write write) {
    const Stream stream = stream_of();
    write(stream.get());
    std::string text(static_cast<std::size_t>(std::ftell(stream.get())), ' ');
    std::rewind(stream.get());
    text.resize(std::fread(text.data(), 1, text.size(), stream.get()));
    return text;
}

/// Calls `read(stream)` on a stream with this text and returns the text behind what it consumes.
template <class Read>
std::string rest_after(const std::string& text, Read read) {
    const Stream stream = stream_of(text);
    read(stream.get());
    return text.substr(static_cast<std::size_t>(std::ftell(stream.get())));
}

} // namespace korvel::test
