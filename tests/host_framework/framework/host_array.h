#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

/// The array of the stand-in framework. It has the members that korvel may use and no others, does
/// not copy or move, counts in long integers, and ends the program at every use that a framework
/// may refuse: an index or a count out of range, and an argument in the storage that a call
/// replaces.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
public:
    using Size = std::ptrdiff_t;

    CArray() = default;
    CArray(const CArray&) = delete;
    CArray& operator=(const CArray&) = delete;
    virtual ~CArray() { RemoveAll(); }

    Size GetSize() const { return size_; }
    Size GetCount() const { return size_; }
    Size GetUpperBound() const { return size_ - 1; }
    bool IsEmpty() const { return size_ == 0; }

    void SetSize(Size new_size, Size grow_by = -1) {
        require(new_size >= 0, "SetSize");
        grow_by_ = grow_by >= 0 ? grow_by : grow_by_;
        for (; size_ > new_size; --size_) {
            data_[size_ - 1].~TYPE();
        }
        if (new_size == 0) {
            set_capacity(0);
        } else if (new_size > capacity_) {
            const Size grown = capacity_ + (grow_by_ > 0 ? grow_by_ : 4);
            set_capacity(new_size > grown ? new_size : grown);
        }
        for (; size_ < new_size; ++size_) {
            std::memset(static_cast<void*>(data_ + size_), 0, sizeof(TYPE));
            ::new (static_cast<void*>(data_ + size_)) TYPE; // an int keeps the zero
        }
    }
    void FreeExtra() { set_capacity(size_); }
    void RemoveAll() { SetSize(0); }

    const TYPE& GetAt(Size index) const { return data_[checked(index)]; }
    TYPE& GetAt(Size index) { return data_[checked(index)]; }
    const TYPE& ElementAt(Size index) const { return data_[checked(index)]; }
    TYPE& ElementAt(Size index) { return data_[checked(index)]; }
    const TYPE& operator[](Size index) const { return data_[checked(index)]; }
    TYPE& operator[](Size index) { return data_[checked(index)]; }
    void SetAt(Size index, ARG_TYPE value) { data_[checked(index)] = value; }
    const TYPE* GetData() const { return data_; }
    TYPE* GetData() { return data_; }

    void SetAtGrow(Size index, ARG_TYPE value) {
        require(index >= 0, "SetAtGrow");
        if (index >= size_) {
            require_outside(value, "SetAtGrow");
            SetSize(index + 1);
        }
        data_[index] = value;
    }
    Size Add(ARG_TYPE value) {
        SetAtGrow(size_, value);
        return size_ - 1;
    }
    Size Append(const CArray& source) {
        require(this != &source, "Append");
        const Size first = size_;
        SetSize(first + source.size_);
        copy_elements(source, first);
        return first;
    }
    void Copy(const CArray& source) {
        if (this != &source) {
            SetSize(source.size_);
            copy_elements(source, 0);
        }
    }
    void InsertAt(Size index, ARG_TYPE value, Size count = 1) {
        require(index >= 0 && count > 0, "InsertAt");
        require_outside(value, "InsertAt");
        const Size old_size = size_;
        SetSize((index > old_size ? index : old_size) + count);
        for (Size i = old_size; i-- > index;) {
            data_[i + count] = data_[i];
        }
        for (Size i = 0; i < count; ++i) {
            data_[index + i] = value;
        }
    }
    void RemoveAt(Size index, Size count = 1) {
        require(index >= 0 && count >= 0 && index + count <= size_, "RemoveAt");
        for (Size i = index + count; i < size_; ++i) {
            data_[i - count] = data_[i];
        }
        const Size left = size_ - count;
        for (; size_ > left; --size_) { // the storage stays
            data_[size_ - 1].~TYPE();
        }
    }

private:
    static void require(bool holds, const char* member) {
        if (!holds) {
            std::fprintf(stderr, "CArray::%s: the framework refuses the arguments\n", member);
            std::abort();
        }
    }
    void require_outside(const TYPE& value, const char* member) const {
        require(&value < data_ || &value >= data_ + size_, member);
    }
    Size checked(Size index) const {
        require(index >= 0 && index < size_, "operator[]");
        return index;
    }
    void copy_elements(const CArray& source, Size first) {
        for (Size i = 0; i < source.size_; ++i) {
            data_[first + i] = source.data_[i];
        }
    }

    /// Elements move to new storage as bytes, as in most frameworks.
    void set_capacity(Size capacity) {
        if (capacity == capacity_) {
            return;
        }
        TYPE* fresh = nullptr;
        if (capacity > 0) {
            fresh = static_cast<TYPE*>(
                ::operator new(sizeof(TYPE) * static_cast<std::size_t>(capacity)));
            if (size_ > 0) {
                std::memcpy(static_cast<void*>(fresh), static_cast<const void*>(data_),
                            sizeof(TYPE) * static_cast<std::size_t>(size_));
            }
        }
        ::operator delete(static_cast<void*>(data_));
        data_ = fresh;
        capacity_ = capacity;
    }

    TYPE* data_ = nullptr;
    Size size_ = 0;
    Size capacity_ = 0;
    Size grow_by_ = 0;
};
