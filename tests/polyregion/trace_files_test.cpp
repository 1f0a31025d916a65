// The trace files of the triangulation.

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "korvel/polyregion/trace_files.h"
#include "tests/polyregion/triangulation.h"

using namespace korvel::test;

namespace {

// False where the system has no links, such as Windows for most users.
bool has_link(const char* target, const char* name) {
    std::error_code error;
    std::filesystem::create_symlink(target, name, error);
    return !error;
}

TEST_F(Triangulation, WritesItsSummary) {
    PLYDT set;
    rectangle_and_triangle.add_to(set);
    set.region_tranglate();
    EXPECT_EQ(lines_of("wwwtrg.dat"),
              "points=7\n0.000000 0.000000\n4.000000 0.000000\n4.000000 3.000000\n"
              "0.000000 3.000000\n6.000000 0.000000\n8.000000 0.000000\n7.000000 0.500000\n"
              "side=0 p=0 1\nside=1 p=1 2\nside=2 p=2 3\nside=3 p=3 0\n"
              "side=4 p=4 5\nside=5 p=5 6\nside=6 p=6 4\n"
              "ring = 0 pts = 4\n0 1 2 3 \nring = 1 pts = 3\n4 5 6 \n"
              "reg = 0 rings = 1 \n1 \nreg = 1 rings = 1 \n0 \n"
              "trgs = 3\n4 5 6\n0 1 2\n2 3 0\n");
    EXPECT_EQ(set.trg_list[0].radius, 0);
    EXPECT_EQ(set.trg_list[1].radius, 2.5);
}

/// What is traced for the rectangle. The region before it, a lone triangle, has an empty trace.
std::string rectangle_trace() {
    // Sides that share a point are not compared; the two diagonals are, and meet in their middles.
    const std::string boundary = "side = 0\nside = 1\nside = 2\nside = 3\n";
    const std::string diagonal = "4.000000 3.000000\n0.000000 0.000000\n5.000000 2.500000\n";
    const std::string falling = "2 0 3 1\nc= 0.960000\n-0.800000 -0.600000 5.000000\n"
                                "0.800000 -0.600000 5.000000\n0.960000\n" +
                                diagonal +
                                "0.000000 3.000000\n4.000000 0.000000\n5.000000 2.500000\n";
    const std::string rising = "2 0 1 3\nc= -0.960000\n-0.800000 -0.600000 5.000000\n"
                               "-0.800000 0.600000 5.000000\n-0.960000\n" +
                               diagonal +
                               "4.000000 0.000000\n0.000000 3.000000\n5.000000 2.500000\n";
    return "side=0 p=0 1\nside=1 p=1 2\nside=2 p=2 3\nside=3 p=3 0\n"
           // Of two equal radii the first wins.
           "0 1\nselpt 2\nselpt 3\n"
           "begen 0 1 3\nbegen 0 1 2\n"
           "not reguaur 0 1 3\ntexside1 1 3\n" +
           boundary +
           "tinside 3 0\n"
           "not reguaur 0 1 2\ntexside1 1 2\ntinside 2 0\n" +
           boundary +
           "pru  0 1 3\npru  0 1 2\n"
           "cross side 0 1 2\ncross side 0 1 3\nmin r 0 1 2\ninside = 2 0 mus = 1\n"
           // Nothing survives: nothing more is written.
           "1 2\nselpt 0\nselpt 3\n"
           "begen 1 2 3\n"
           "not reguaur 1 2 3\ntexside1 2 3\nside = 0\ntinside 3 1\n" +
           boundary + falling +
           "test 2 inside\n"
           "2 3\nselpt 0\nselpt 1\n"
           "begen 2 3 1\nbegen 2 3 0\n"
           "not reguaur 2 3 1\ntexside1 3 1\n" +
           boundary + falling +
           "test 1 inside\n"
           "not reguaur 2 3 0\ntexside1 3 0\nside = 0\ntinside 0 2\n" +
           boundary +
           "pru  2 3 0\ncross side 2 3 0\nmin r 2 3 0\ninside = 2 0 mus = 0\n"
           "3 0\nselpt 1\nselpt 2\n"
           "begen 3 0 1\n"
           "not reguaur 3 0 1\ntexside1 0 1\nside = 0\ntinside 1 3\n" +
           boundary + rising + "test 2 inside\n";
}

TEST_F(Triangulation, TracesEveryTest) {
    PLYDT set;
    rectangle_and_triangle.add_to(set);
    set.region_tranglate();
    EXPECT_EQ(lines_of("trg.dat"), rectangle_trace());
}

TEST_F(Triangulation, MakesNoFileWithTracesOff) {
    std::ofstream("trg.dat") << "kept";
    PLYDT::set_trace_files(false);
    PLYDT set;
    rectangle_and_triangle.add_to(set);
    set.region_tranglate();
    EXPECT_EQ(set.trg_list.GetSize(), 3);
    EXPECT_EQ(lines_of("trg.dat"), "kept");
    EXPECT_FALSE(std::filesystem::exists("wwwtrg.dat"));
}

TEST_F(Triangulation, ReportsALostTrace) {
    PLYDT set;
    rectangle_and_triangle.add_to(set);
    const auto lost = [&](bool traces) {
        PLYDT::set_trace_files(traces);
        set.region_tranglate();
        return PLYDT::has_lost_trace();
    };
    EXPECT_FALSE(lost(true));
    for (const char* name : {"trg.dat", "wwwtrg.dat"}) {
        for (const char* full : {"/dev/full", "/no/where"}) {
            std::filesystem::remove(name);
            if (!has_link(full, name)) {
                GTEST_SKIP() << "no symbolic links";
            }
            EXPECT_TRUE(lost(true)) << name << ' ' << full;
            EXPECT_FALSE(lost(false)) << name << ' ' << full;
        }
        std::filesystem::remove(name);
    }
    EXPECT_FALSE(lost(true));
}

TEST_F(Triangulation, FollowsTheOverrideOfItsThread) {
    PLYDT set;
    rectangle_and_triangle.add_to(set);
    const korvel::TraceFilesOverride off(false);
    set.region_tranglate();
    EXPECT_EQ(files(), 0);
    {
        if (!has_link("/no/where", "trg.dat")) {
            GTEST_SKIP() << "no symbolic links";
        }
        const korvel::TraceFilesOverride on(true);
        set.region_tranglate();
        EXPECT_TRUE(on.has_lost_trace());
        EXPECT_TRUE(std::filesystem::exists("wwwtrg.dat"));
    }
    EXPECT_FALSE(off.has_lost_trace());
    EXPECT_FALSE(PLYDT::has_lost_trace());
    std::thread([&] { set.region_tranglate(); }).join();
    EXPECT_TRUE(PLYDT::has_lost_trace()) << "another thread follows the setting of the process";
}

} // namespace
