#pragma once

// What the library needs of every application framework's arrays besides their members. Include
// `korvel/platform/framework.h`, which defines the arrays first.

namespace korvel {

/// The number of elements as an `int`; some frameworks count in longer integers.
template <class TYPE, class ARG_TYPE>
int size_of(const CArray<TYPE, ARG_TYPE>& list) {
    return static_cast<int>(list.GetSize());
}

/// An array, constant or not. Functions that take one this way give way to a framework's own, which
/// are more specialised.
template <class List>
concept Array = requires(const List& list) {
    size_of(list);
};

} // namespace korvel

// Loops over an array find `begin` and `end` here, in the namespace of the array.

template <korvel::Array List>
auto* begin(List& list) {
    return list.GetData();
}

template <korvel::Array List>
auto* end(List& list) {
    return list.GetData() + list.GetSize();
}
