#pragma once

#include <cstdint>

namespace korvel::kit {

/// The number of bytes that this process can still allocate: the memory that the system has
/// available (`MemAvailable` on Linux, else the free physical memory), or less where a limit on the
/// address space of the process (`ulimit -v`; on Windows also the commit limit) leaves less. The
/// largest number where the system does not report it.
std::uint64_t available_memory();

} // namespace korvel::kit
