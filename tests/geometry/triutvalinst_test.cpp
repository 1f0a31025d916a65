#include <gtest/gtest.h>

#include "korvel/geometry/triutvalinst.h"

namespace {

TEST(TriUtvalinst, CopiesBothLists) {
    TriUtvalinst three;
    three.triples_1.SetSize(3);
    three.triples_1[2].v[1] = 7;
    const TriUtvalinst copy(three);
    three.triples_1[2].v[1] = 8;
    EXPECT_EQ(copy.triples_1.GetSize(), 3);
    EXPECT_EQ(copy.triples_1[2].v[1], 7);
    EXPECT_TRUE(copy.triples_2.IsEmpty());

    TriUtvalinst five;
    five.triples_2.SetSize(5);
    five.Copy(copy);
    EXPECT_EQ(five.triples_1[2].v[1], 7);
    EXPECT_TRUE(five.triples_2.IsEmpty());
    five.RemoveAll();
    three = five;
    EXPECT_TRUE(three.triples_1.IsEmpty());
}

} // namespace
