#pragma once

#include <cstdio>

#include "korvel/module/korvel.h"
#include "tests/fuzz/bytes.h"

// Calls of the library's objects, in any state. `bytes` chooses the arguments, which are rarely
// sensible.

namespace korvel::test {

/// A stream that discards its output.
FILE* nowhere();

/// A readable stream over a text.
FILE* stream_over(const char* text, std::size_t size);

/// Every call of a section model, a set of regions and a set of triangles.
void exercise(TMOD2D& section, Bytes& bytes);
void exercise(CCPloy2DRg& set, Bytes& bytes);
void exercise(PLYDT& set, Bytes& bytes);

/// Every call of a body model, in a fixed order.
void exercise(TMOD3D& model, Bytes& bytes);

/// One call of the model, chosen by the bytes.
void exercise_once(TMOD3D& model, Bytes& bytes);

/// One change of the model's public members.
void edit(TMOD3D& model, Bytes& bytes);

/// One change of an index list.
void edit(CArray<int>& list, int size, Bytes& bytes);

/// A set of points, rings, regions and triangles, any of them degenerate.
void take_set(PLYDT& set, Bytes& bytes);

} // namespace korvel::test
