#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "apps/workbench/document/history.h"

namespace korvel::test {
namespace {

using workbench::History;
using workbench::Step;

// Adds its number to a list when it is done, and removes it when it is undone.
class Numbered : public Step {
public:
    Numbered(std::vector<int>& list, int number, int& forgotten)
        : Step(QString::number(number)), list_(list), number_(number), forgotten_(forgotten) {
        list_.push_back(number_);
    }
    void undo() override { list_.pop_back(); }
    void redo() override { list_.push_back(number_); }
    std::size_t bytes() const override { return 1000; }
    void forget() override { ++forgotten_; }

private:
    std::vector<int>& list_;
    int number_;
    int& forgotten_;
};

TEST(History, UndoesAndRedoesInOrderAndDropsWhatANewStepReplaces) {
    std::vector<int> list;
    int forgotten = 0;
    History history;
    for (const int number : {1, 2, 3}) {
        history.add(std::make_unique<Numbered>(list, number, forgotten));
    }
    history.set_saved();
    history.undo();
    history.undo();
    EXPECT_EQ(list, (std::vector{1}));
    EXPECT_EQ(history.redo_text(), "2");
    EXPECT_FALSE(history.is_saved());
    history.redo();
    history.redo();
    EXPECT_TRUE(history.is_saved());
    history.undo();
    history.add(std::make_unique<Numbered>(list, 4, forgotten));
    EXPECT_EQ(list, (std::vector{1, 2, 4}));
    EXPECT_FALSE(history.can_redo());
    history.redo();
    history.undo();
    EXPECT_FALSE(history.is_saved()); // what was saved cannot be reached any more
    EXPECT_EQ(history.undo_text(), "2");
}

TEST(History, KeepsAHundredStepsAndNoMoreThanTheMemoryLimitBeyond) {
    std::vector<int> list;
    int forgotten = 0;
    History history;
    history.set_memory_limit(150 * 1000);
    for (int number = 0; number < 300; ++number) {
        history.add(std::make_unique<Numbered>(list, number, forgotten));
    }
    EXPECT_EQ(history.undo_count(), 150);
    EXPECT_EQ(forgotten, 150);
    EXPECT_FALSE(history.is_saved());
    history.set_memory_limit(1);
    EXPECT_EQ(history.undo_count(), History::kept_steps);
    while (history.can_undo()) {
        history.undo();
    }
    EXPECT_EQ(list.size(), 200);
}

} // namespace
} // namespace korvel::test
