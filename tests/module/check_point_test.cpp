// Check points in the long calls of the exact classes: they change no result, their progress never
// runs backwards, and an exception from one leaves objects that can be used.

#include <cmath>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/module/korvel.h"
#include "tests/support/model_state.h"
#include "tests/support/models.h"
#include "tests/support/shape.h"

namespace korvel::test {
namespace {

struct Report {
    std::string stage;
    long long done;
    long long all;
};

struct Stopped {};

/// Records the check points, and throws at one of them.
class Recorder {
public:
    explicit Recorder(int throw_at = -1)
        : scope_([this, throw_at](const char* stage, long long done, long long all) {
              reports.push_back({stage, done, all});
              if (static_cast<int>(reports.size()) - 1 == throw_at) {
                  throw Stopped();
              }
          }) {}

    std::vector<Report> reports;

private:
    CheckPointScope scope_;
};

// A grid of lines with many points, as regions, as a set to be triangulated and as models.

struct Analysis {
    CArray<tagPOINT> pts;
    CArray<int> counts;
    CREGION region;

    Analysis() {
        constexpr int lines = 40;
        constexpr int points = 60;
        for (int line = 0; line < 2 * lines; ++line) {
            for (int k = 0; k < points; ++k) {
                const int at = (line / 2) * 10 + 5;
                pts.Add(line % 2 == 0 ? POINT{7 * k, at} : POINT{at, 7 * k});
            }
            counts.Add(points);
        }
    }

    void run() { region.SetPtsInfo(pts, counts); }
    void RemoveAll() { region.RemoveAll(); }

    Ints result() const {
        Ints all;
        for (const CREGION::PyToRg& one : region.regions) {
            all.push_back(one.rings.GetSize());
            for (const int ring : one.rings) {
                all.insert(all.end(), region.ring_pts[ring].pts.begin(),
                           region.ring_pts[ring].pts.end());
            }
        }
        return all;
    }
    void use() {
        CREGION copy(region);
        PLYDT out;
        copy.GetAllRegion(out);
        copy.SetSelectRegion({12, 12});
        copy.GetSelectRegion(out);
        copy.SearchAllRegion();
        CArray<int> list;
        CArray<int> list_counts;
        copy.GetRegion(pts, counts, list);
        copy.GetRegionPts(list, list_counts);
    }
};

/// A ring of many points, a square, and a square so large that only the exhaustive form serves it.
std::unique_ptr<PLYDT> plane_set() {
    Shape shape;
    const auto add_ring = [&](int points, double x, double radius, double depth) {
        Ints ring;
        for (int k = 0; k < points; ++k) {
            const double angle = 2 * std::acos(-1.0) * k / points;
            const double r = radius * (1 + depth * std::sin(40 * angle));
            ring.push_back(static_cast<int>(shape.points.size()));
            shape.points.push_back({x + r * std::cos(angle), r * std::sin(angle)});
        }
        shape.regions.push_back({static_cast<int>(shape.rings.size())});
        shape.rings.push_back(ring);
    };
    add_ring(700, 0, 100, 0.3);
    add_ring(4, 500, 10, 0);
    add_ring(4, 0, 1e70, 0);
    auto set = std::make_unique<PLYDT>();
    shape.add_to(*set);
    return set;
}

Ints triangles_of(const PLYDT& set) {
    Ints corners;
    for (const PLYDT::TRG& t : set.trg_list) {
        corners.insert(corners.end(), {t.va, t.vb, t.vc});
    }
    return corners;
}

std::set<std::string> stages_of(const std::vector<Report>& reports) {
    std::set<std::string> stages;
    for (const Report& report : reports) {
        stages.insert(report.stage);
    }
    return stages;
}

/// Within a stage the units done never decrease, unless it starts again for the next body or
/// region.
void expect_monotone(const std::vector<Report>& reports) {
    const std::set<std::string> repeated = {"advancing the front", "orienting faces",
                                            "reading a body"};
    std::map<std::string, Report> last;
    for (const Report& report : reports) {
        EXPECT_GT(report.done + (report.stage == "advancing the front"), 0) << report.stage;
        EXPECT_LE(report.done, report.all) << report.stage;
        const auto before = last.find(report.stage);
        if (before != last.end() && repeated.count(report.stage) == 0) {
            EXPECT_GE(report.done, before->second.done) << report.stage;
            EXPECT_EQ(report.all, before->second.all) << report.stage;
        }
        last[report.stage] = report;
    }
}

/// `make()` returns a pointer to an object, `run(object)` is the long call, `expect_same(actual,
/// expected)` compares results, and `use(object)` calls other operations.
template <class Make, class Run, class ExpectSame, class Use>
void expect_neutral(const std::set<std::string>& stages, Make make, Run run, ExpectSame expect_same,
                    Use use) {
    const auto plain = make();
    run(*plain);
    const auto counted = make();
    std::vector<Report> reports;
    {
        const Recorder recorder;
        run(*counted);
        reports = recorder.reports;
    }
    expect_same(*counted, *plain);
    expect_monotone(reports);
    EXPECT_EQ(stages_of(reports), stages);

    constexpr int most_throws = 6;
    const int calls = static_cast<int>(reports.size());
    for (int k = 0; k < calls; k += 1 + calls / most_throws) {
        SCOPED_TRACE("thrown at " + reports[k].stage + ' ' + std::to_string(reports[k].done));
        const auto thrown = make();
        {
            const Recorder recorder(k);
            EXPECT_THROW(run(*thrown), Stopped);
        }
        use(*thrown);
        thrown->RemoveAll();
        const auto fresh = make();
        run(*fresh);
        expect_same(*fresh, *plain);
    }
}

TEST(CheckPoint, OfTheRegionBuilder) {
    expect_neutral(
        {"splitting curves", "finding nodes", "tracing rings", "indexing rings",
         "finding envelopes", "nesting rings"},
        [] { return std::make_unique<Analysis>(); }, [](Analysis& a) { a.run(); },
        [](const Analysis& actual, const Analysis& expected) {
            EXPECT_EQ(actual.result(), expected.result());
            EXPECT_FALSE(expected.result().empty());
        },
        [](Analysis& a) {
            a.use();
            a.run(); // on what the interrupted call has left
            EXPECT_FALSE(a.result().empty());
        });
}

TEST(CheckPoint, OfTheTriangulation) {
    const TraceFilesOverride no_traces(false);
    expect_neutral(
        {"advancing the front", "triangulating"}, plane_set,
        [](PLYDT& set) { set.region_tranglate(); },
        [](const PLYDT& actual, const PLYDT& expected) {
            EXPECT_EQ(triangles_of(actual), triangles_of(expected));
            EXPECT_EQ(expected.trg_list.GetSize(), 698 + 2 + 2);
        },
        [](PLYDT& set) {
            const PLYDT copy(set);
            EXPECT_EQ(triangles_of(copy), triangles_of(set));
            set.poly_tranglate(set.region_list[0]);
        });
}

TEST(CheckPoint, ShowsTheTrianglesOfEachRegion) {
    const TraceFilesOverride no_traces(false);
    const std::unique_ptr<PLYDT> set = plane_set();
    Ints sizes;
    const CheckPointScope scope([&](const char* stage, long long done, long long all) {
        if (std::strcmp(stage, "triangulating") == 0) {
            sizes.push_back(set->trg_list.GetSize());
            EXPECT_EQ(done, static_cast<long long>(sizes.size()));
            EXPECT_EQ(all, 3);
            plane_set()->region_tranglate(); // a call from within is not reported
        }
    });
    set->region_tranglate();
    EXPECT_EQ(sizes, (Ints{698, 700, 702}));
}

void expect_same_model(const TMOD3D& actual, const TMOD3D& expected) {
    EXPECT_PRED_FORMAT2(same_state, actual, expected);
}

void use_model(TMOD3D& model) {
    const TMOD3D copy(model);
    expect_same_model(copy, model);
    TMOD2D section;
    model.get_x_section(0.1, section);
    model.change_vis_parm();
    model.set_all_body_as_relat();
    double p[3] = {0, 0, 0};
    double direction[3] = {1, 0, 0};
    model.detect_a_point_in_body(p, direction);
    model.get_point_xyz(p);
    file_of(model);
    model.found_top_rel();
    model.clear_no_use_ele();
}

const std::set<std::string> derivation = {"finding edges", "orienting faces", "relating records"};

std::set<std::string> with(std::set<std::string> stages, const std::set<std::string>& others) {
    stages.insert(others.begin(), others.end());
    return stages;
}

TEST(CheckPoint, OfModelsThatAreMade) {
    constexpr int rounds = 4; // 5,120 faces
    expect_neutral(
        with({"refining"}, {"orienting faces", "relating records"}),
        [] { return std::make_unique<TMOD3D>(); },
        [](TMOD3D& model) {
            double centre[3] = {0, 0, 0};
            double size[3] = {1, 1, 1};
            model.inti_mode(centre, size, 0, rounds);
        },
        expect_same_model, use_model);

    TMOD3D ball = starter(0, rounds + 1);
    const std::string file = file_of(ball);
    expect_neutral(
        with({"reading vertices", "reading faces", "reading a body"}, derivation),
        [] { return std::make_unique<TMOD3D>(); }, [&](TMOD3D& model) { read_file(model, file); },
        expect_same_model, use_model);
}

TEST(CheckPoint, OfModelsThatAreDerived) {
    TMOD3D ball = starter(0, 4);
    const auto copy = [&] { return std::make_unique<TMOD3D>(ball); };
    expect_neutral(
        with({"adding faces"}, derivation), copy, [&](TMOD3D& model) { model.add_model(ball); },
        expect_same_model, use_model);
    expect_neutral(
        {"setting edge equations", "orienting faces", "setting face equations"}, copy,
        [](TMOD3D& model) { model.comput_mode_aux_parm(); }, expect_same_model, use_model);
    expect_neutral(
        {"relating records"}, copy, [](TMOD3D& model) { model.found_top_rel(); }, expect_same_model,
        use_model);
    ball.set_all_body_as_relat();
    expect_neutral(
        {"testing edges"}, copy, [](TMOD3D& model) { EXPECT_TRUE(model.legal_body_rel_side()); },
        expect_same_model, use_model);
}

} // namespace
} // namespace korvel::test
