// Two threads work on objects of their own while a third one changes the settings of the process.
// Built with the thread sanitizer too, which reports what the threads share without order.

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "korvel/module/korvel.h"
#include "tests/support/model_state.h"
#include "tests/support/sample_curves.h"

namespace korvel::test {
namespace {

/// Whether the network had more crossings than the limit.
bool triangulate(int quarters, int limit, PLYDT& set) {
    CurveArrays curves = sample_curves("us-states", quarters);
    const CrossingLimitOverride crossings(limit);
    CREGION builder;
    builder.SetPtsInfo(curves.pts, curves.counts);
    builder.GetAllRegion(set);
    CCPloy2DRg map;
    builder.GetAllRegion(map);
    CCPloy2DRg read;
    read.readpolyrg(stream_of(written([&](FILE* stream) { map.writepolyrg(stream); })).get());
    EXPECT_EQ(read.region_list.GetSize(), map.region_list.GetSize());
    set.region_tranglate();
    return crossings.was_exceeded();
}

TMOD3D raised(int quarters) {
    PLYDT set;
    EXPECT_TRUE(triangulate(quarters, 0, set));
    EXPECT_FALSE(triangulate(quarters, CREGION::no_crossing_limit, set));
    set.CoordinatesTrans(3, 0, 0, 0, 0, 1, 1, 0, 100);
    TMOD3D model;
    model.create3dmode(set);
    return model;
}

/// Regions, triangles, a solid, its file and its section, as text.
std::string work(int quarters) {
    std::string notices;
    long long reports = 0;
    const MessageBoxOverride to_notices([&](const char* text, unsigned) {
        notices += text;
        return IDOK;
    });
    const TraceFilesOverride no_traces(false);
    const CheckPointScope counted([&](const char*, long long, long long) { ++reports; });
    TMOD3D model = raised(quarters);
    TMOD3D ball;
    double centre[3] = {0, 0, 50};
    double size[3] = {20, 20, 20};
    ball.inti_mode(centre, size, 0, 3);
    ball.add_model(model);
    TMOD3D copy;
    read_file(copy, file_of(ball));
    TMOD2D section;
    copy.get_x_section(20.5, section);
    copy.set_body_as_relat(0);
    const bool is_legal = copy.legal_body_rel_side();
    EXPECT_FALSE(no_traces.has_lost_trace());
    EXPECT_GT(reports, 0);
    return notices + (is_legal ? " legal " : " not legal ") +
           std::to_string(copy.bodies[0].volume) + file_of(copy) +
           written([&](FILE* stream) { section.writedate(stream); });
}

TEST(Threads, WorkOnObjectsOfTheirOwn) {
    const std::string expected[] = {work(2), work(3)};
    std::atomic<bool> is_done = false;
    std::thread settings([&] {
        int module = 0;
        while (!is_done) {
            const int limit = CREGION::set_crossing_limit(0);
            PLYDT::set_trace_files(false);
            EXPECT_FALSE(PLYDT::has_lost_trace());
            auto handler = set_message_box_handler([](const char*, unsigned) { return IDOK; });
            AfxMessageBox("");
            AFX_EXTENSION_MODULE record;
            AfxInitExtensionModule(record, reinterpret_cast<HINSTANCE>(&module));
            { const CDynLinkLibrary library(record); }
            CREGION::set_crossing_limit(limit);
            set_message_box_handler(std::move(handler));
            PLYDT::set_trace_files(true);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    std::string found[2];
    std::thread first([&] { found[0] = work(2); });
    std::thread second([&] { found[1] = work(3); });
    first.join();
    second.join();
    is_done = true;
    settings.join();
    EXPECT_TRUE(found[0] == expected[0]);
    EXPECT_TRUE(found[1] == expected[1]);
}

} // namespace
} // namespace korvel::test
