#pragma once

#include <utility>

namespace korvel {

/// A value that takes the place of a process-wide one in the thread that constructs the override,
/// until that thread destroys it. Overrides nest: the one constructed last counts, in whatever
/// order they are destroyed.
///
/// `innermost` is the `thread_local` start of the chain of one kind of override, null at first. It
/// is a variable of one source file: threads' variables are not shared between libraries.
template <class T>
class ThreadOverride {
public:
    ThreadOverride(ThreadOverride*& innermost, T value)
        : value(std::move(value)), innermost_(innermost), outer_(std::exchange(innermost, this)) {}
    ThreadOverride(const ThreadOverride&) = delete;
    ThreadOverride& operator=(const ThreadOverride&) = delete;
    ThreadOverride(ThreadOverride&&) = delete;
    ThreadOverride& operator=(ThreadOverride&&) = delete;
    ~ThreadOverride() {
        ThreadOverride** link = &innermost_;
        while (*link != this) {
            link = &(*link)->outer_;
        }
        *link = outer_;
    }

    T value;

private:
    ThreadOverride*& innermost_;
    ThreadOverride* outer_;
};

} // namespace korvel
