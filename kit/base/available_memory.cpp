#include "kit/base/available_memory.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <string>

#if defined(_WIN32)
#include "kit/base/win32.h"
#else
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace korvel::kit {
namespace {

constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();

std::uint64_t memory_of_system();
std::uint64_t rest_of_address_space();

} // namespace

std::uint64_t available_memory() {
    return std::min(memory_of_system(), rest_of_address_space());
}

namespace {

#if defined(_WIN32)

MEMORYSTATUSEX memory_status() {
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    if (GlobalMemoryStatusEx(&status) == 0) {
        status.ullAvailPhys = status.ullAvailPageFile = status.ullAvailVirtual = unlimited;
    }
    return status;
}

std::uint64_t memory_of_system() {
    return memory_status().ullAvailPhys;
}

// The system promises no more to all processes than main memory and paging files hold.
std::uint64_t rest_of_address_space() {
    const MEMORYSTATUSEX status = memory_status();
    return std::min<std::uint64_t>(status.ullAvailVirtual, status.ullAvailPageFile);
}

#else

std::uint64_t page_size() {
    return static_cast<std::uint64_t>(std::max(1L, sysconf(_SC_PAGESIZE)));
}

std::uint64_t memory_of_system() {
    std::ifstream figures("/proc/meminfo");
    std::string name;
    std::uint64_t kilobytes = 0;
    for (std::string unit; figures >> name >> kilobytes && std::getline(figures, unit);) {
        if (name == "MemAvailable:") {
            return kilobytes * 1024;
        }
    }
#if defined(_SC_AVPHYS_PAGES)
    const long free_pages = sysconf(_SC_AVPHYS_PAGES);
    if (free_pages > 0) {
        return static_cast<std::uint64_t>(free_pages) * page_size();
    }
#endif
    return unlimited;
}

std::uint64_t rest_of_address_space() {
    rlimit limit = {};
    if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
        return unlimited;
    }
    std::uint64_t pages = 0; // that the process has mapped
    std::ifstream("/proc/self/statm") >> pages;
    const std::uint64_t mapped = pages * page_size();
    return limit.rlim_cur > mapped ? limit.rlim_cur - mapped : 0;
}

#endif

} // namespace
} // namespace korvel::kit
