#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

/// A growable array of values with an explicit size, counted in `int`.
///
/// TYPE is the element, ARG_TYPE how an element is passed (`const TYPE&`, `TYPE&`, `TYPE&&`).
/// New slots are value-initialised: numbers are 0, pointers null, records default-constructed.
/// The array moves but does not copy; `Copy` and `Append` copy elements explicitly.
///
/// The storage grows by the growth step (4 elements if none was set) or by one eighth of the size,
/// from 8192 elements on by half of it, whichever is more: appending one element costs amortised
/// constant time, and small arrays have little storage that they do not use. An array without
/// storage gets exactly what is asked for, or one growth step if that is more. An empty array that
/// was never filled, or that was emptied by `RemoveAll` or `SetSize(0)`, has no storage.
///
/// Pointers and references to elements are valid until the array gets new storage. Up to 12 bytes
/// of plain data, such as three ints, are stored in the array itself; pointers to these are valid
/// until the array is moved. A value passed to `SetAtGrow`, `Add` or `InsertAt` may be an element
/// of the same array. A call that runs out of memory throws std::bad_alloc and leaves the array
/// valid, with the elements it had.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
public:
    CArray() noexcept = default;
    CArray(const CArray&) = delete;
    CArray& operator=(const CArray&) = delete;

    /// Takes over elements, storage and growth step; `other` stays behind empty.
    CArray(CArray&& other) noexcept { take(other); }

    CArray& operator=(CArray&& other) noexcept {
        if (this != &other) {
            RemoveAll();
            take(other);
        }
        return *this;
    }

    ~CArray() { RemoveAll(); }

    int GetSize() const noexcept { return size_; }
    int GetCount() const noexcept { return size_; }

    /// Index of the last element, -1 when there is none.
    int GetUpperBound() const noexcept { return size_ - 1; }
    bool IsEmpty() const noexcept { return size_ == 0; }

    /// Makes the array `new_size` elements long (a negative size counts as 0) and keeps those that
    /// still fit. A `grow_by` of 0 or more becomes the growth step. Size 0 frees the storage.
    void SetSize(int new_size, int grow_by = -1) {
        if (grow_by >= 0) {
            grow_by_ = grow_by;
        }
        if (new_size <= 0) {
            RemoveAll();
        } else if (new_size <= size_) {
            truncate(new_size);
        } else {
            make_room_for(new_size);
            TYPE* const data = elements();
            std::uninitialized_value_construct(data + size_, data + new_size);
            size_ = new_size;
        }
    }

    /// Gives back the storage beyond the last element.
    void FreeExtra() { set_capacity(size_); }

    /// Destroys all elements and frees the storage. The growth step stays.
    void RemoveAll() noexcept {
        truncate(0);
        release();
    }

    // Access is unchecked outside of debug builds.
    const TYPE& GetAt(int index) const { return elements()[checked(index)]; }
    TYPE& GetAt(int index) { return elements()[checked(index)]; }
    const TYPE& ElementAt(int index) const { return elements()[checked(index)]; }
    TYPE& ElementAt(int index) { return elements()[checked(index)]; }
    const TYPE& operator[](int index) const { return elements()[checked(index)]; }
    TYPE& operator[](int index) { return elements()[checked(index)]; }
    void SetAt(int index, ARG_TYPE value) {
        elements()[checked(index)] = std::forward<ARG_TYPE>(value);
    }

    /// The first of `GetSize()` adjoining elements; null when the array holds no storage.
    const TYPE* GetData() const noexcept { return elements(); }
    TYPE* GetData() noexcept { return elements(); }

    const TYPE* begin() const noexcept { return elements(); }
    TYPE* begin() noexcept { return elements(); }
    const TYPE* end() const noexcept { return elements() + size_; }
    TYPE* end() noexcept { return elements() + size_; }

    /// Sets element `index` and first lengthens the array to hold it. A negative index does
    /// nothing.
    void SetAtGrow(int index, ARG_TYPE value) {
        if (index < 0) {
            return;
        }
        if (index < size_) {
            elements()[index] = std::forward<ARG_TYPE>(value);
            return;
        }
        TYPE held(std::forward<ARG_TYPE>(value));
        SetSize(sum(index, 1));
        elements()[index] = std::move(held);
    }

    /// Appends one element and returns its index.
    int Add(ARG_TYPE value) {
        if (size_ < capacity_) {
            std::construct_at(elements() + size_, std::forward<ARG_TYPE>(value));
        } else {
            // The value may live in the storage that is about to go.
            TYPE held(std::forward<ARG_TYPE>(value));
            make_room_for(sum(size_, 1));
            std::construct_at(elements() + size_, std::move(held));
        }
        return size_++;
    }

    /// Appends copies of all elements of `source`, which may be this array, and returns the index
    /// of the first of them, the size before.
    int Append(const CArray& source) {
        const int old_size = size_;
        const int count = source.size_;
        if (count > 0) {
            make_room_for(sum(old_size, count));
            std::uninitialized_copy_n(source.elements(), count, elements() + old_size);
            size_ += count;
        }
        return old_size;
    }

    /// Replaces all elements by copies of those of `source`.
    void Copy(const CArray& source) {
        if (this == &source) {
            return;
        }
        if (source.size_ == 0) {
            RemoveAll();
            return;
        }
        if (source.size_ > capacity_) {
            make_room_for(source.size_);
        }
        truncate(std::min(size_, source.size_));
        const TYPE* const from = source.elements();
        TYPE* const data = elements();
        std::copy_n(from, size_, data);
        std::uninitialized_copy(from + size_, from + source.size_, data + size_);
        size_ = source.size_;
    }

    /// Inserts `count` copies of `value` before element `index`. A negative index counts as 0; one
    /// past the end first lengthens the array up to it. A count below 1 does nothing.
    void InsertAt(int index, ARG_TYPE value, int count = 1) {
        if (count < 1) {
            return;
        }
        TYPE held(std::forward<ARG_TYPE>(value));
        const int first = std::max(index, 0);
        const int old_size = size_;
        SetSize(sum(std::max(first, old_size), count));
        TYPE* const data = elements();
        if (first < old_size) {
            std::move_backward(data + first, data + old_size, data + size_);
        }
        std::fill_n(data + first, count - 1, std::as_const(held));
        data[first + count - 1] = std::move(held);
    }

    /// Removes the elements `index` to `index + count - 1`, as far as they exist. Storage stays.
    void RemoveAt(int index, int count = 1) {
        const long long stop = std::min<long long>(static_cast<long long>(index) + count, size_);
        const int first = std::max(index, 0);
        if (first >= stop) {
            return;
        }
        TYPE* const data = elements();
        std::move(data + stop, data + size_, data + first);
        truncate(size_ - static_cast<int>(stop - first));
    }

private:
    // Plain data may be moved as bytes: the C heap can then often enlarge a large block without
    // copying it.
    static constexpr bool is_plain() {
        return std::is_trivially_copyable_v<TYPE> && alignof(TYPE) <= alignof(std::max_align_t);
    }

    // The address of the elements, or so few of them that they need no block of their own. Most
    // index lists of a model name no more than three records.
    static constexpr std::size_t room = 12;

    // How many elements the room must hold before the heap is used; 0 for types that never fit.
    static constexpr int most_in_room() {
        constexpr std::size_t fit = room / sizeof(TYPE);
        return is_plain() && fit >= 3 && alignof(TYPE) <= alignof(TYPE*) ? static_cast<int>(fit)
                                                                         : 0;
    }

    static constexpr bool fits_in_room(int capacity) {
        // One comparison, since most calls ask.
        return static_cast<unsigned>(capacity) - 1U < static_cast<unsigned>(most_in_room());
    }

    TYPE* elements() noexcept {
        return fits_in_room(capacity_) ? reinterpret_cast<TYPE*>(room_) : block();
    }
    const TYPE* elements() const noexcept {
        return fits_in_room(capacity_) ? reinterpret_cast<const TYPE*>(room_) : block();
    }

    TYPE* block() const noexcept {
        TYPE* at = nullptr;
        std::memcpy(&at, room_, sizeof(void*));
        return at;
    }
    void set_block(TYPE* at) noexcept { std::memcpy(room_, &at, sizeof(void*)); }

    // The length of an array that became longer than any array can be stands for "out of memory".
    static int sum(int size, int more) {
        if (more > std::numeric_limits<int>::max() - size) {
            throw std::bad_array_new_length();
        }
        return size + more;
    }

    int checked(int index) const noexcept {
        assert(index >= 0 && index < size_);
        return index;
    }

    void truncate(int new_size) noexcept {
        std::destroy(elements() + new_size, elements() + size_);
        size_ = new_size;
    }

    void make_room_for(int new_size) {
        if (new_size <= capacity_) {
            return;
        }
        if (capacity_ == 0) {
            set_capacity(std::max(new_size, grow_by_));
            return;
        }
        constexpr int large = 8192;
        const int step =
            std::max(grow_by_ > 0 ? grow_by_ : 4, size_ < large ? size_ / 8 : size_ / 2);
        const int stepped = step > std::numeric_limits<int>::max() - capacity_
                                ? std::numeric_limits<int>::max()
                                : capacity_ + step;
        set_capacity(std::max(new_size, stepped));
    }

    // Moves the elements to storage for exactly `capacity` of them, which is not below the size.
    void set_capacity(int capacity) {
        if (capacity == capacity_) {
            return;
        }
        if (capacity == 0) {
            RemoveAll();
            return;
        }
        const auto count = static_cast<std::size_t>(capacity);
        if constexpr (!is_plain()) {
            set_block(relocate(count));
        } else if (fits_in_room(capacity)) {
            move_into_room();
        } else if (fits_in_room(capacity_)) {
            TYPE* const fresh = reallocate(nullptr, count);
            std::memcpy(static_cast<void*>(fresh), room_, room);
            set_block(fresh);
        } else {
            set_block(reallocate(block(), count));
        }
        capacity_ = capacity;
    }

    void move_into_room() noexcept {
        if (capacity_ > most_in_room()) {
            TYPE* const old = block();
            std::copy_n(old, size_, reinterpret_cast<TYPE*>(room_));
            std::free(static_cast<void*>(old));
        }
    }

    static TYPE* reallocate(TYPE* old, std::size_t count) {
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(TYPE)) {
            throw std::bad_array_new_length();
        }
        void* fresh = std::realloc(static_cast<void*>(old), count * sizeof(TYPE));
        if (fresh == nullptr) {
            throw std::bad_alloc();
        }
        return static_cast<TYPE*>(fresh);
    }

    TYPE* relocate(std::size_t count) {
        TYPE* fresh = std::allocator<TYPE>().allocate(count);
        TYPE* const old = block();
        try {
            std::uninitialized_move(old, old + size_, fresh);
        } catch (...) {
            std::allocator<TYPE>().deallocate(fresh, count);
            throw;
        }
        std::destroy(old, old + size_);
        free_block();
        return fresh;
    }

    void free_block() noexcept {
        if constexpr (is_plain()) {
            if (!fits_in_room(capacity_)) {
                std::free(static_cast<void*>(block()));
            }
        } else if (capacity_ > 0) {
            std::allocator<TYPE>().deallocate(block(), static_cast<std::size_t>(capacity_));
        }
    }

    void release() noexcept {
        free_block();
        set_block(nullptr);
        capacity_ = 0;
    }

    // Gives this array, which holds no storage, what `other` has.
    void take(CArray& other) noexcept {
        std::memcpy(room_, other.room_, room);
        size_ = std::exchange(other.size_, 0);
        capacity_ = std::exchange(other.capacity_, 0);
        grow_by_ = std::exchange(other.grow_by_, 0);
        other.set_block(nullptr);
    }

    alignas(TYPE*) unsigned char room_[room] = {};
    int size_ = 0;
    int capacity_ = 0;
    int grow_by_ = 0;
};
