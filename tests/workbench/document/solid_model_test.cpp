#include <vector>

#include <gtest/gtest.h>

#include "apps/workbench/document/document.h"

namespace korvel::test {
namespace {

using workbench::Document;

workbench::SolidChange moving(int vertex, double by) {
    return [vertex, by](kit::SolidsEditor& editor) {
        editor.set_view({.turn = 0, .tilt = 0});
        editor.gather_vertex(vertex, 1);
        editor.move({by, 0, 0});
    };
}

std::vector<kit::Point3> vertices_of(const kit::Solids& solids) {
    std::vector<kit::Point3> vertices;
    for (int v = 0; v < solids.vertex_count(); ++v) {
        vertices.push_back(solids.vertex(v));
    }
    return vertices;
}

TEST(SolidModel, StepsBeyondTheMemoryLimitLeaveBothEditorsToo) {
    Document document;
    workbench::SolidModel& solids = document.solids();
    document.history().set_memory_limit(1);
    solids.start("Ball", [](const kit::Solids& /*before*/, const kit::Context& context) {
        return kit::make_ball({0, 0, 0}, 10, 2, context);
    });
    document.worker().wait();
    std::vector<std::vector<kit::Point3>> states;
    for (int i = 0; i < 150; ++i) {
        solids.change("Move", moving(i, 0.01));
        states.push_back(vertices_of(solids.solids()));
    }
    ASSERT_EQ(document.history().undo_count(), workbench::History::kept_steps);
    const auto kept = static_cast<int>(workbench::History::kept_steps);
    int worked_steps = 0;
    const auto ask_worker = [&](std::vector<kit::Point3>& vertices) {
        solids.follow("ask", [&](kit::SolidsEditor& editor, const kit::Context& /*context*/) {
            worked_steps = editor.undo_count();
            vertices = vertices_of(editor.solids());
            return workbench::Worker::Deliver();
        });
        document.worker().wait();
    };
    std::vector<kit::Point3> worked;
    ask_worker(worked);
    EXPECT_EQ(worked_steps, kept);
    EXPECT_EQ(worked, states.back());
    EXPECT_GT(document.history().bytes(), 0U);

    while (document.history().can_undo()) {
        document.history().undo();
    }
    EXPECT_EQ(vertices_of(solids.solids()),
              states[states.size() - 1 - workbench::History::kept_steps]);
    ask_worker(worked);
    EXPECT_EQ(worked, vertices_of(solids.solids()));
}

} // namespace
} // namespace korvel::test
