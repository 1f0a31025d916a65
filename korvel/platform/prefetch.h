#pragma once

namespace korvel {

/// Asks the processor to fetch memory that will be read soon. A hint without other effect, which
/// not every compiler has.
inline void prefetch([[maybe_unused]] const void* address) {
#ifdef __GNUC__
    __builtin_prefetch(address);
#endif
}

} // namespace korvel
