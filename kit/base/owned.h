#pragma once

#include <memory>
#include <utility>

namespace korvel::kit {

/// A large value on the heap: a copy copies the value, a move only a pointer. An object that was
/// moved from can only be assigned to or destroyed.
template <class Value>
class Owned {
public:
    Owned() : value_(std::make_unique<Value>()) {}
    explicit Owned(std::unique_ptr<Value> value) : value_(std::move(value)) {}
    Owned(const Owned& other) : value_(std::make_unique<Value>(*other)) {}
    Owned& operator=(const Owned& other) {
        if (this != &other) {
            value_ = std::make_unique<Value>(*other);
        }
        return *this;
    }
    Owned(Owned&&) noexcept = default;
    Owned& operator=(Owned&&) noexcept = default;
    ~Owned() = default;

    Value& operator*() { return *value_; }
    const Value& operator*() const { return *value_; }
    /// Hands the value over; the object is then as if it had been moved from.
    std::unique_ptr<Value> release() { return std::move(value_); }

    Value* operator->() { return value_.get(); }
    const Value* operator->() const { return value_.get(); }

private:
    std::unique_ptr<Value> value_;
};

} // namespace korvel::kit
