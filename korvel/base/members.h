#pragma once

#include <cstddef>
#include <iterator>
#include <type_traits>

namespace korvel {

/// Copies one member of a record: a list element by element, an array of fixed size and a scalar as
/// they are. Of a list only `Copy` is used, which every form of the framework's arrays has.
template <class Member>
void copy_member(Member& to, const Member& from) {
    if constexpr (std::is_array_v<Member>) {
        for (std::size_t i = 0; i < std::size(from); ++i) {
            copy_member(to[i], from[i]);
        }
    } else if constexpr (requires { to.Copy(from); }) {
        to.Copy(from);
    } else {
        to = from;
    }
}

/// Copies the named members of a record, in this order. A record copied to itself stays as it is;
/// emptying its lists before they are copied would lose them.
template <class Record, class... Members>
void copy_members(Record& to, const Record& from, Members Record::*... members) {
    if (&to != &from) {
        (copy_member(to.*members, from.*members), ...);
    }
}

/// Empties the named lists of a record and frees their storage.
template <class Record, class... Lists>
void remove_lists(Record& record, Lists Record::*... lists) {
    ((record.*lists).RemoveAll(), ...);
}

} // namespace korvel
