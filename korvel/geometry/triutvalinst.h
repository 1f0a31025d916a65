#pragma once

#include "korvel/platform/export.h"
#include "korvel/platform/framework.h"

/// Two lists of triples of 32-bit values. The library gives the values no meaning and never fills
/// one itself: it is a container that a host copies, assigns and empties like the other records.
class KORVEL_API TriUtvalinst {
public:
    struct Triple {
        int v[3] = {};
    };

    CArray<Triple> triples_1;
    CArray<Triple> triples_2;

    /// Both lists empty.
    TriUtvalinst() = default;
    TriUtvalinst(const TriUtvalinst& src);
    virtual ~TriUtvalinst();

    /// Replaces both lists by copies of the source's.
    TriUtvalinst& operator=(const TriUtvalinst& src);
    void Copy(const TriUtvalinst& src);

    /// Empties both lists and frees their storage.
    void RemoveAll();
};
