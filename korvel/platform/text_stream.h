#pragma once

// What of reading text by characters depends on the C library.

#include <cstdio>
#include <cwchar>

#if defined(__MINGW32__)
#include <io.h>
#endif

namespace korvel {

/// Whether numbers are read from the stream by characters: it is not wide-oriented. Of malformed
/// numbers ("1e+", "0x", "-") the GNU C library's `fscanf` takes the same characters. That of
/// mingw-w64 takes others, but text is to give the same numbers on every system. With other
/// libraries everything is left to `fscanf`.
inline bool is_read_by_characters([[maybe_unused]] FILE* stream) {
#if defined(__GLIBC__)
    return std::fwide(stream, -1) < 0;
#elif defined(__MINGW32__)
    return true;
#else
    return false;
#endif
}

/// Locks a stream against other threads, so that each character can be read without locking.
inline void lock_stream([[maybe_unused]] FILE* stream) {
#if defined(__GLIBC__)
    flockfile(stream);
#elif defined(__MINGW32__)
    _lock_file(stream);
#endif
}

inline void unlock_stream([[maybe_unused]] FILE* stream) {
#if defined(__GLIBC__)
    funlockfile(stream);
#elif defined(__MINGW32__)
    _unlock_file(stream);
#endif
}

/// From the present position to the end of the stream; 0 where the stream cannot be positioned.
inline long long bytes_from_here(FILE* stream) {
#if defined(__MINGW32__)
    // Positions of `ftell` have 32 bits, and in text mode they are not where the stream is.
    const long long here = _ftelli64(stream);
    const long long end = _filelengthi64(_fileno(stream));
    return here < 0 || end < here ? 0 : end - here;
#else
    const long here = std::ftell(stream);
    if (here < 0 || std::fseek(stream, 0, SEEK_END) != 0) {
        return 0;
    }
    const long end = std::ftell(stream);
    std::fseek(stream, here, SEEK_SET);
    return end - here;
#endif
}

/// The next character of a locked stream, or EOF.
inline int next_character(FILE* stream) {
#if defined(__GLIBC__)
    return getc_unlocked(stream);
#elif defined(__MINGW32__)
    return _getc_nolock(stream);
#else
    return std::getc(stream);
#endif
}

} // namespace korvel
