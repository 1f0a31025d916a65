// Work of the kit on several threads has the result of one thread. Built with the thread sanitizer
// too.

#include <string>

#include <gtest/gtest.h>

#include "kit/kit.h"

namespace korvel::test {
namespace {

template <class Thing>
std::string written(const Thing& thing) {
    const std::string file = testing::TempDir() + "korvel_kit_threads";
    thing.write(file);
    std::string text = kit::TextFile(file).text;
    std::filesystem::remove(file);
    return text;
}

TEST(KitThreads, GiveTheSameBytes) {
    const kit::Map map =
        kit::find_regions(kit::Network::read(KORVEL_DATA_DIR "/us-states.curves")).take_map();
    for (const kit::Fill fill : {kit::Fill::automatic, kit::Fill::delaunay, kit::Fill::front}) {
        EXPECT_EQ(written(kit::triangulate(map, {.fill = fill, .threads = 3})),
                  written(kit::triangulate(map, {.fill = fill, .threads = 1})));
    }
    for (const bool separate : {false, true}) {
        const auto raised = [&](int threads) {
            std::string notices;
            const kit::RaiseOptions options{
                .separate = separate,
                .threads = threads,
                .on_notice = [&](const std::string& notice) { notices += notice; }};
            return written(kit::raise(map, options).solids) + notices;
        };
        EXPECT_EQ(raised(3), raised(1));
    }
}

} // namespace
} // namespace korvel::test
