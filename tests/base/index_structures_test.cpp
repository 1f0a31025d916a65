// Index structures against the scans that they replace.

#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/base/equal_pairs.h"
#include "korvel/base/index_set.h"
#include "korvel/geometry/box_tree.h"
#include "tests/support/dice.h"

namespace {

using korvel::IndexPair;
using korvel::test::Dice;

TEST(EqualSides, AreTheFirstOfTheirKind) {
    constexpr int most = 2147483647;
    struct Case {
        int lowest;
        int step; ///< between neighbouring points; with a wide one there is no array of marks
    };
    for (const Case& c : {Case{0, 1}, {-9, 1}, {most - 12, 1}, {-most - 1, 1 << 27}}) {
        Dice dice;
        for (const int points : {1, 2, 5, 12}) {
            std::vector<IndexPair> sides;
            const auto point = [&] { return c.lowest + c.step * dice(0, points - 1); };
            for (int i = 0; i < 60; ++i) {
                const int a = point();
                sides.push_back({a, point()});
            }
            const std::vector<int> first = korvel::first_equal_pairs(sides);
            for (std::size_t i = 0; i < sides.size(); ++i) {
                std::size_t j = 0;
                while (!(sides[j].a == sides[i].a && sides[j].b == sides[i].b) &&
                       !(sides[j].a == sides[i].b && sides[j].b == sides[i].a)) {
                    ++j;
                }
                EXPECT_EQ(first[i], static_cast<int>(j));
            }
        }
    }
    EXPECT_TRUE(korvel::first_equal_pairs({}).empty());
}

TEST(IndexSet, ReturnsTheSmallest) {
    for (const int size : {1, 63, 64, 65, 4096, 5000, 300000}) {
        Dice dice;
        korvel::IndexSet set(size);
        std::set<int> plain;
        for (int step = 0; step < 3000; ++step) {
            if (dice(0, 4) < 3) {
                const int index = dice(0, size - 1);
                set.insert(step % 7 == 0 ? size - 1 : index);
                plain.insert(step % 7 == 0 ? size - 1 : index);
            } else if (!plain.empty()) {
                ASSERT_EQ(set.take_first(), *plain.begin());
                plain.erase(plain.begin());
            }
            ASSERT_EQ(set.is_empty(), plain.empty());
        }
    }
}

TEST(BoxTree, FindsWhatABoxMeets) {
    Dice dice;
    const auto random_box = [&](int largest) {
        korvel::Box3 box;
        for (int k = 0; k < 3; ++k) {
            box.low[k] = dice(0, 8);
            box.high[k] = box.low[k] + dice(0, largest - 1);
        }
        return box;
    };
    for (int size = 0; size < 60; ++size) {
        std::vector<korvel::Box3> boxes;
        for (int i = 0; i < size; ++i) {
            boxes.push_back(random_box(3));
        }
        const korvel::BoxTree tree(boxes);
        for (int round = 0; round < 20; ++round) {
            const korvel::Box3 box = random_box(4);
            std::multiset<int> found;
            std::multiset<int> expected;
            tree.for_each_meeting(box, [&](int i) { found.insert(i); });
            for (int i = 0; i < size; ++i) {
                bool meets = true;
                for (int k = 0; k < 3; ++k) {
                    const korvel::Box3& other = boxes[static_cast<std::size_t>(i)];
                    meets = meets && std::max(box.low[k], other.low[k]) <=
                                         std::min(box.high[k], other.high[k]);
                }
                if (meets) {
                    expected.insert(i);
                }
            }
            ASSERT_EQ(found, expected);
        }
    }
}

} // namespace
