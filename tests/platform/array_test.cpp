#include <limits>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/platform/framework.h"
#include "tests/support/dice.h"

namespace {

CArray<int> counting_up_to(int size) {
    CArray<int> list;
    list.SetSize(size);
    std::iota(list.begin(), list.end(), 0);
    return list;
}

template <class List>
auto contents(const List& list) {
    return std::vector(list.begin(), list.end());
}

// Counts its moves; relocation moves each element once.
struct Tracked {
    static inline int moves = 0;
    static inline int copies = 0;

    int value = 7;

    Tracked() = default;
    explicit Tracked(int start) : value(start) {}
    Tracked(const Tracked& src) : value(src.value) { ++copies; }
    Tracked(Tracked&& src) noexcept : value(src.value) { ++moves; }
    Tracked& operator=(const Tracked&) = default;
    Tracked& operator=(Tracked&&) = default;
    ~Tracked() = default;
};

// Sizes at which appending the next element relocated all elements before it.
std::vector<int> sizes_at_relocation(CArray<Tracked>& list, int last_size) {
    std::vector<int> sizes;
    const Tracked element;
    while (list.GetSize() < last_size) {
        const Tracked* before = list.GetData();
        list.Add(element);
        if (before != nullptr && before != list.GetData()) {
            sizes.push_back(list.GetSize() - 1);
        }
    }
    return sizes;
}

TEST(Array, GrowsByItsStepOrByAnEighthOfItsSize) {
    // An eighth of the size counts from 40 elements on; below it is 4.
    CArray<Tracked> list;
    EXPECT_EQ(sizes_at_relocation(list, 70),
              (std::vector{1, 5, 9, 13, 17, 21, 25, 29, 33, 37, 41, 46, 51, 57, 64}));

    // From 8192 elements on it is half of the size.
    CArray<Tracked> large;
    large.SetSize(8191);
    EXPECT_EQ(sizes_at_relocation(large, 20000), (std::vector{8191, 9214, 13821}));

    // The first storage holds a whole step.
    CArray<Tracked> stepped;
    stepped.SetSize(0, 10);
    EXPECT_EQ(sizes_at_relocation(stepped, 35), (std::vector{10, 20, 30}));

    // A longer jump gets what it asks for, no more.
    CArray<Tracked> jumped;
    jumped.SetSize(3);
    jumped.SetSize(50);
    EXPECT_EQ(sizes_at_relocation(jumped, 51), std::vector{50});

    // FreeExtra leaves no spare storage; the step of 0 brings back the eighths.
    CArray<Tracked> trimmed;
    trimmed.SetSize(2, 100);
    trimmed.FreeExtra();
    trimmed.SetSize(2, 0);
    EXPECT_EQ(sizes_at_relocation(trimmed, 8), (std::vector{2, 6}));
}

TEST(Array, AppendsInAmortisedConstantTime) {
    for (const int growth_step : {0, 1, 10, 5000}) {
        CArray<Tracked> list;
        list.SetSize(0, growth_step);
        constexpr int count = 300000;
        const Tracked element;
        Tracked::moves = 0;
        for (int i = 0; i < count; ++i) {
            list.Add(element);
        }
        EXPECT_LT(Tracked::moves, 4 * count) << "growth step " << growth_step;
    }
}

TEST(Array, RelocatesByMove) {
    CArray<Tracked> list;
    list.SetSize(100);
    Tracked::moves = Tracked::copies = 0;
    list.SetSize(101);
    EXPECT_EQ(Tracked::moves, 100);
    EXPECT_EQ(Tracked::copies, 0);

    CArray<std::unique_ptr<int>, std::unique_ptr<int>&&> owners;
    for (int i = 0; i < 20; ++i) {
        owners.Add(std::make_unique<int>(i));
    }
    owners.RemoveAt(0, 5);
    owners.FreeExtra();
    EXPECT_EQ(*owners[0], 5);
    EXPECT_EQ(*owners[14], 19);
}

TEST(Array, ValueInitialisesNewSlots) {
    struct Record {
        int number;
        double real;
        CArray<int> list;
    };
    CArray<int> numbers;
    numbers.Add(5);
    numbers.RemoveAt(0);
    numbers.SetSize(3);
    EXPECT_EQ(contents(numbers), (std::vector{0, 0, 0}));

    // Slots that held a value before are cleared too.
    numbers[1] = 9;
    numbers.SetSize(1);
    numbers.SetSize(2);
    numbers.SetAtGrow(4, 8);
    EXPECT_EQ(contents(numbers), (std::vector{0, 0, 0, 0, 8}));

    CArray<Record, Record&> records;
    records.SetSize(1);
    EXPECT_EQ(records[0].number, 0);
    EXPECT_EQ(records[0].real, 0.0);
    EXPECT_TRUE(records[0].list.IsEmpty());
    CArray<POINT> points;
    points.SetSize(1);
    EXPECT_EQ(points[0].x, 0);
}

TEST(Array, HoldsNoStorageWhileEmpty) {
    CArray<int> list;
    CArray<int> other;
    EXPECT_EQ(list.GetData(), nullptr);
    EXPECT_EQ(list.GetUpperBound(), -1);
    list.SetSize(0, 50);
    list.Copy(other);
    EXPECT_EQ(list.Append(other), 0);
    list.InsertAt(3, 1, 0);
    list.FreeExtra();
    EXPECT_EQ(list.GetData(), nullptr);

    list.Add(1);
    list.SetSize(0);
    EXPECT_EQ(list.GetData(), nullptr);
    list.Add(1);
    list.RemoveAt(0);
    list.FreeExtra();
    EXPECT_EQ(list.GetData(), nullptr);
    list.Add(1);
    list.Copy(other);
    EXPECT_EQ(list.GetData(), nullptr);
    list.Add(1);
    list.RemoveAll();
    EXPECT_EQ(list.GetData(), nullptr);
}

TEST(Array, InsertsAndRemovesAnywhere) {
    struct Case {
        int index;
        int count;
        std::vector<int> inserted;
        std::vector<int> removed;
    };
    const Case cases[] = {
        {0, 1, {9, 0, 1, 2, 3}, {1, 2, 3}},
        {1, 2, {0, 9, 9, 1, 2, 3}, {0, 3}},
        {2, 5, {0, 1, 9, 9, 9, 9, 9, 2, 3}, {0, 1}},
        {4, 1, {0, 1, 2, 3, 9}, {0, 1, 2, 3}},
        {6, 2, {0, 1, 2, 3, 0, 0, 9, 9}, {0, 1, 2, 3}},
        {2, 0, {0, 1, 2, 3}, {0, 1, 2, 3}},
        {2, -1, {0, 1, 2, 3}, {0, 1, 2, 3}},
        {-2, 3, {9, 9, 9, 0, 1, 2, 3}, {1, 2, 3}},
        {-2, 2, {9, 9, 0, 1, 2, 3}, {0, 1, 2, 3}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.count << " at " << c.index);
        CArray<int> inserted = counting_up_to(4);
        inserted.InsertAt(c.index, 9, c.count);
        EXPECT_EQ(contents(inserted), c.inserted);
        CArray<int> removed = counting_up_to(4);
        removed.RemoveAt(c.index, c.count);
        EXPECT_EQ(contents(removed), c.removed);
    }

    constexpr int largest = std::numeric_limits<int>::max();
    CArray<int> list = counting_up_to(4);
    list.RemoveAt(1, largest);
    EXPECT_EQ(contents(list), std::vector{0});
    list.RemoveAt(largest, largest);
    list.SetAtGrow(-1, 5);
    EXPECT_EQ(contents(list), std::vector{0});
    list.SetSize(-3);
    EXPECT_TRUE(list.IsEmpty());
}

TEST(Array, AcceptsItsOwnElementsAsValues) {
    CArray<std::string> list;
    list.Add(std::string(40, 'a'));
    for (int i = 0; i < 30; ++i) {
        list.Add(list[0]);
        list.InsertAt(0, list[list.GetUpperBound()], 2);
        list.SetAtGrow(list.GetSize(), list[1]);
    }
    EXPECT_EQ(list.Append(list), 121);
    list.Copy(list);
    EXPECT_EQ(contents(list), std::vector(242, std::string(40, 'a')));
}

TEST(Array, CopiesElementsWhateverTheTargetHeld) {
    for (const int target_size : {0, 2, 5, 90}) {
        CArray<std::string> source;
        for (const char* text : {"one", "two", "three", "four", "five"}) {
            source.Add(text);
        }
        CArray<std::string> target;
        target.SetSize(target_size);
        target.Copy(source);
        EXPECT_EQ(contents(target), contents(source));
        EXPECT_EQ(target.Append(source), 5);
        target[0] = "other";
        EXPECT_EQ(target[9], "five");
        EXPECT_EQ(source[0], "one");
    }
}

TEST(Array, MovesItsStorage) {
    static_assert(!std::is_copy_constructible_v<CArray<int>>);
    static_assert(std::is_nothrow_move_constructible_v<CArray<int>>);
    static_assert(std::is_nothrow_move_assignable_v<CArray<int>>);

    CArray<int> source = counting_up_to(4);
    const int* storage = source.GetData();
    CArray<int> target = counting_up_to(8);
    target = std::move(source);
    EXPECT_EQ(target.GetData(), storage);
    EXPECT_EQ(contents(target), (std::vector{0, 1, 2, 3}));
    source.Add(4); // an array that was moved from stays usable
    EXPECT_EQ(contents(source), std::vector{4});
}

// Few small elements need no storage of their own; arrays change between both forms.
TEST(Array, KeepsItsElementsThroughEverySizeAndMove) {
    static_assert(sizeof(CArray<int>) == 24 || sizeof(void*) != 8);
    korvel::test::Dice dice;
    CArray<int> lists[2];
    std::vector<int> plain[2];
    for (int step = 0; step < 20000; ++step) {
        const int i = dice(0, 1);
        const int size = dice(0, 6);
        CArray<int>& list = lists[i];
        CArray<int>& other = lists[1 - i];
        std::vector<int>& expected = plain[i];
        switch (dice(0, 8)) {
        case 0:
            list.SetSize(size, step % 5 == 0 ? dice(0, 4) : -1);
            expected.resize(static_cast<std::size_t>(size));
            break;
        case 1:
            list = std::move(other);
            expected = std::exchange(plain[1 - i], {});
            break;
        case 2:
            list.Copy(other);
            expected = plain[1 - i];
            break;
        case 3:
            list.FreeExtra();
            break;
        case 4:
            list.RemoveAt(size, 2);
            for (int k = 0; k < 2 && static_cast<std::size_t>(size) < expected.size(); ++k) {
                expected.erase(expected.begin() + size);
            }
            break;
        case 5: {
            CArray<int> moved(std::move(list));
            list = std::move(moved);
            break;
        }
        default:
            list.Add(step);
            expected.push_back(step);
            break;
        }
        for (std::size_t k = 0; k < 2; ++k) {
            ASSERT_EQ(contents(lists[k]), plain[k]);
            ASSERT_TRUE(lists[k].GetData() != nullptr || plain[k].empty());
        }
    }
}

TEST(Array, ReportsImpossibleSizes) {
    CArray<int> list = counting_up_to(4);
    EXPECT_THROW(list.InsertAt(0, 1, std::numeric_limits<int>::max()), std::bad_alloc);
    EXPECT_THROW(list.SetAtGrow(std::numeric_limits<int>::max(), 1), std::bad_alloc);
    EXPECT_EQ(contents(list), (std::vector{0, 1, 2, 3}));
}

} // namespace
