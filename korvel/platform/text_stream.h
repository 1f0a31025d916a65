#pragma once

// What of reading text by characters depends on the C library.

#include <cstdio>
#include <cwchar>

namespace korvel {

/// Whether `fscanf` takes exactly the characters that the GNU C library's takes from malformed
/// numbers ("1e+", "0x", "-"), and whether the stream can be read by characters: it is not
/// wide-oriented. The C standard leaves the former open, so with other libraries everything is left
/// to `fscanf`.
inline bool is_read_by_characters([[maybe_unused]] FILE* stream) {
#ifdef __GLIBC__
    return std::fwide(stream, -1) < 0;
#else
    return false;
#endif
}

/// Locks a stream against other threads, so that each character can be read without locking.
inline void lock_stream([[maybe_unused]] FILE* stream) {
#ifdef __GLIBC__
    flockfile(stream);
#endif
}

inline void unlock_stream([[maybe_unused]] FILE* stream) {
#ifdef __GLIBC__
    funlockfile(stream);
#endif
}

/// The next character of a locked stream, or EOF.
inline int next_character(FILE* stream) {
#ifdef __GLIBC__
    return getc_unlocked(stream);
#else
    return std::getc(stream);
#endif
}

} // namespace korvel
