#pragma once

// What of reading text by characters depends on the C library.

#include <cstdio>
#include <cwchar>

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
