#include "kit/base/interruption.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <system_error>

#include "kit/base/system_files.h"

#if defined(_WIN32)
#include "kit/base/win32.h"
#endif

namespace korvel::kit {
namespace {

// A signal may come between any two instructions, also within the allocator: its handler uses a
// table of fixed size only.
enum class State { free, being_named, held };
static_assert(std::atomic<State>::is_always_lock_free, "handlers of signals take no locks");

struct Slot {
    std::atomic<State> state = State::free;
    std::array<std::filesystem::path::value_type, 4096> name = {};
};

std::array<Slot, 8> slots;

void remove_files() {
    // Directories go once they are empty.
    for (int round = 0; round < 2; ++round) {
        for (const Slot& slot : slots) {
            if (slot.state == State::held) {
                remove_quickly(slot.name.data());
            }
        }
    }
}

#if defined(_WIN32)

// Called in a thread of its own. The program is ended the default way after it.
BOOL WINAPI remove_files_at_end(DWORD /*event*/) {
    remove_files();
    return FALSE;
}

#else

void remove_files_at_signal(int signal) {
    remove_files();
    // Held back until this handler returns, then taken the default way.
    std::raise(signal);
}

bool is_ignored(int signal) {
    struct sigaction present = {};
    return sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

#endif

} // namespace

void set_up_signals() {
#if defined(_WIN32)
    SetConsoleCtrlHandler(remove_files_at_end, TRUE);
#else
    struct sigaction removal = {};
    removal.sa_handler = remove_files_at_signal;
    removal.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&removal.sa_mask);
    constexpr std::array<int, 3> endings = {SIGINT, SIGTERM, SIGHUP};
    for (const int signal : endings) {
        sigaddset(&removal.sa_mask, signal);
    }
    for (const int signal : endings) {
        if (!is_ignored(signal)) {
            sigaction(signal, &removal, nullptr);
        }
    }
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        std::signal(signal, SIG_IGN);
    }
#endif
}

RemoveOnSignal::RemoveOnSignal(const std::filesystem::path& file) {
    std::error_code error;
    // The current directory may be another one by the time of the signal.
    const auto name = std::filesystem::absolute(file, error).native();
    for (std::size_t i = 0; i < slots.size() && slot_ < 0; ++i) {
        Slot& slot = slots[i];
        State expected = State::free;
        if (name.size() < slot.name.size() &&
            slot.state.compare_exchange_strong(expected, State::being_named)) {
            slot.name[name.copy(slot.name.data(), name.size())] = 0;
            slot.state = State::held;
            slot_ = static_cast<int>(i);
        }
    }
}

RemoveOnSignal::~RemoveOnSignal() {
    if (slot_ >= 0) {
        slots[static_cast<std::size_t>(slot_)].state = State::free;
    }
}

} // namespace korvel::kit
