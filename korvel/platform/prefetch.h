#pragma once

namespace korvel {

/// Tells the processor that memory is going to be read soon; a hint that changes nothing else and
/// that not every compiler has.
inline void prefetch([[maybe_unused]] const void* address) {
#ifdef __GNUC__
    __builtin_prefetch(address);
#endif
}

} // namespace korvel
