#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

/// A growable array of values with an explicit size, counted in `int`.
///
/// TYPE is the element, ARG_TYPE how an element is handed in (`const TYPE&`, `TYPE&`, `TYPE&&`).
/// New slots are value-initialised: numbers are 0, pointers null, records default-constructed.
/// The array moves but does not copy; `Copy` and `Append` copy elements explicitly.
///
/// Room for more elements is made in steps: by the growth step if one was set, else by one eighth
/// of the present size, but at least 4 and at most 1024 elements. An array without storage gets
/// exactly what is asked for, or one growth step if that is more. An empty array that was never
/// filled, or that was emptied by `RemoveAll` or `SetSize(0)`, holds no storage.
///
/// Pointers and references to elements hold until the array gets new storage. A value handed to
/// `SetAtGrow`, `Add` or `InsertAt` may be an element of the same array. A call that runs out of
/// memory throws std::bad_alloc and leaves an array that can be used on.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
public:
    CArray() noexcept = default;
    CArray(const CArray&) = delete;
    CArray& operator=(const CArray&) = delete;

    /// Takes over elements, storage and growth step; `other` stays behind empty.
    CArray(CArray&& other) noexcept { swap_with(other); }

    CArray& operator=(CArray&& other) noexcept {
        CArray taken(std::move(other));
        swap_with(taken);
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
            std::uninitialized_value_construct(data_ + size_, data_ + new_size);
            size_ = new_size;
        }
    }

    /// Gives back the storage beyond the last element.
    void FreeExtra() { set_capacity(size_); }

    /// Destroys all elements and frees the storage. The growth step stays.
    void RemoveAll() noexcept {
        truncate(0);
        release(data_, capacity_);
        data_ = nullptr;
        capacity_ = 0;
    }

    // Access is unchecked outside of debug builds.
    const TYPE& GetAt(int index) const { return data_[checked(index)]; }
    TYPE& GetAt(int index) { return data_[checked(index)]; }
    const TYPE& ElementAt(int index) const { return data_[checked(index)]; }
    TYPE& ElementAt(int index) { return data_[checked(index)]; }
    const TYPE& operator[](int index) const { return data_[checked(index)]; }
    TYPE& operator[](int index) { return data_[checked(index)]; }
    void SetAt(int index, ARG_TYPE value) { data_[checked(index)] = std::forward<ARG_TYPE>(value); }

    /// The first of `GetSize()` adjoining elements; null when the array holds no storage.
    const TYPE* GetData() const noexcept { return data_; }
    TYPE* GetData() noexcept { return data_; }

    const TYPE* begin() const noexcept { return data_; }
    TYPE* begin() noexcept { return data_; }
    const TYPE* end() const noexcept { return data_ + size_; }
    TYPE* end() noexcept { return data_ + size_; }

    /// Sets element `index` and first lengthens the array to hold it. A negative index does
    /// nothing.
    void SetAtGrow(int index, ARG_TYPE value) {
        if (index < 0) {
            return;
        }
        if (index < size_) {
            data_[index] = std::forward<ARG_TYPE>(value);
            return;
        }
        TYPE held(std::forward<ARG_TYPE>(value));
        SetSize(sum(index, 1));
        data_[index] = std::move(held);
    }

    /// Appends one element and returns its index.
    int Add(ARG_TYPE value) {
        if (size_ < capacity_) {
            std::construct_at(data_ + size_, std::forward<ARG_TYPE>(value));
        } else {
            // The value may live in the storage that is about to go.
            TYPE held(std::forward<ARG_TYPE>(value));
            make_room_for(sum(size_, 1));
            std::construct_at(data_ + size_, std::move(held));
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
            std::uninitialized_copy_n(source.data_, count, data_ + old_size);
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
        std::copy_n(source.data_, size_, data_);
        std::uninitialized_copy(source.data_ + size_, source.data_ + source.size_, data_ + size_);
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
        if (first < old_size) {
            std::move_backward(data_ + first, data_ + old_size, data_ + size_);
        }
        std::fill_n(data_ + first, count - 1, std::as_const(held));
        data_[first + count - 1] = std::move(held);
    }

    /// Removes the elements `index` to `index + count - 1`, as far as they exist. Storage stays.
    void RemoveAt(int index, int count = 1) {
        const long long stop = std::min<long long>(static_cast<long long>(index) + count, size_);
        const int first = std::max(index, 0);
        if (first >= stop) {
            return;
        }
        std::move(data_ + stop, data_ + size_, data_ + first);
        truncate(size_ - static_cast<int>(stop - first));
    }

private:
    // Plain data may be moved as bytes: the C heap can then often enlarge a large block without
    // copying it, which keeps appending one by one cheap in spite of the small fixed steps.
    static constexpr bool is_plain() {
        return std::is_trivially_copyable_v<TYPE> && alignof(TYPE) <= alignof(std::max_align_t);
    }

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
        std::destroy(data_ + new_size, data_ + size_);
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
        const int step = grow_by_ > 0 ? grow_by_ : std::clamp(size_ / 8, 4, 1024);
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
        if constexpr (is_plain()) {
            data_ = reallocate(data_, count);
        } else {
            data_ = relocate(count);
        }
        capacity_ = capacity;
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
        try {
            std::uninitialized_move(data_, data_ + size_, fresh);
        } catch (...) {
            std::allocator<TYPE>().deallocate(fresh, count);
            throw;
        }
        std::destroy(data_, data_ + size_);
        release(data_, capacity_);
        return fresh;
    }

    static void release(TYPE* storage, int capacity) noexcept {
        if constexpr (is_plain()) {
            std::free(static_cast<void*>(storage));
        } else if (storage != nullptr) {
            std::allocator<TYPE>().deallocate(storage, static_cast<std::size_t>(capacity));
        }
    }

    void swap_with(CArray& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
        std::swap(grow_by_, other.grow_by_);
    }

    TYPE* data_ = nullptr;
    int size_ = 0;
    int capacity_ = 0;
    int grow_by_ = 0;
};
