#pragma once

namespace korvel {

/// Has memory fetched into the cache while other work goes on. It need not exist.
inline void prefetch(const void* address) {
#ifdef __GNUC__
    __builtin_prefetch(address);
#else
    static_cast<void>(address);
#endif
}

} // namespace korvel
