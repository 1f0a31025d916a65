// Project files: nothing is lost, and nothing damaged is taken.

#include <fstream>
#include <random>

#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "apps/workbench/document/document.h"
#include "apps/workbench/project/project_store.h"
#include "apps/workbench/project/zip_archive.h"

namespace korvel::test {
namespace {

using workbench::Curve;
using workbench::Document;
using workbench::Project;
using workbench::ProjectStore;

/// A document with a folder for its files, and what its worker reports.
struct Saved {
    Saved() {
        QObject::connect(&document.worker(), &workbench::Worker::failed,
                         [this](const QString& /*title*/, const QString& message) {
                             problem = message.toStdString();
                         });
    }
    std::filesystem::path file(const char* name) const {
        return kit::path_of(folder.filePath(QString::fromLatin1(name)).toStdString());
    }
    void save(const char* name) {
        problem.clear();
        store.save(file(name));
        document.worker().wait();
    }
    void open(const std::filesystem::path& project) {
        problem.clear();
        store.open(project);
        document.worker().wait();
    }

    QTemporaryDir folder;
    Document document;
    ProjectStore store{document};
    std::string problem;
};

workbench::Curves five_curves() {
    kit::Network network;
    network.set_placement(
        {kit::Grid(1, 3600, {-90, 45.5, 0}).turn_y_down(), "EPSG:4326 \"with quotes\""});
    for (int i = 0; i < 4; ++i) {
        network.add_curve(std::vector<kit::GridPoint>{
            {i * 1000, 0}, {i * 1000 + 900, 7}, {i * 1000 + 450, 2147483647}, {i * 1000, 0}});
    }
    network.add_curve({});
    return workbench::Curves(network);
}

void fill(Document& document) {
    document.map().replace("Draw", five_curves(),
                           {{.place = {-89.9, 0.1}, .name = "Höhe", .levels = kit::Levels{0.1, 3}},
                            {.place = {1.0 / 3, -1e-300}}});
    document.map().set_tolerance(0.1);
    document.map().set_background("Put", {"/no/scan.png", {0.1, 1.0 / 3, -5, 7e-9, -0.1, 4e6}});
    kit::Solids solids = kit::make_ball({1.0 / 3, -7e-9, 1e6}, 10, 2);
    solids.add(kit::make_cuboid({50, 0, 0}, {0.1, 0.2, 0.3}));
    solids.set_name(1, "Kiste & Co <3>");
    solids.set_colour(0, {.hue = 123.456789, .saturation = 0.1, .lightness = 0.9, .alpha = 0.3});
    document.solids().replacing("Put", std::move(solids))();
    document.solids().set_view({12.5, -33.25});
    document.solids().set_hidden({1});
    document.section().set_plane(kit::Plane{1, 1.0 / 3, -0.1, 7e-9});
    document.worker().wait();
}

void expect_same(Document& a, Document& b) {
    ASSERT_EQ(a.map().curves().size(), b.map().curves().size());
    EXPECT_EQ(a.map().curves().placement(), b.map().curves().placement());
    for (int i = 0; i < a.map().curves().size(); ++i) {
        const auto same = [](const kit::GridPoint& p, const kit::GridPoint& q) {
            return p.x == q.x && p.y == q.y;
        };
        EXPECT_TRUE(std::ranges::equal(a.map().curves()[i], b.map().curves()[i], same)) << i;
    }
    EXPECT_EQ(a.map().tolerance(), b.map().tolerance());
    EXPECT_EQ(a.map().background(), b.map().background());
    ASSERT_EQ(a.map().notes().size(), b.map().notes().size());
    for (std::size_t i = 0; i < a.map().notes().size(); ++i) {
        const workbench::RegionNote& one = a.map().notes()[i];
        const workbench::RegionNote& other = b.map().notes()[i];
        EXPECT_EQ(one.place, other.place);
        EXPECT_EQ(one.name, other.name);
        ASSERT_EQ(one.levels.has_value(), other.levels.has_value());
        EXPECT_TRUE(!one.levels || (one.levels->low == other.levels->low &&
                                    one.levels->high == other.levels->high));
    }
    const kit::Solids& solids = a.solids().solids();
    const kit::Solids& others = b.solids().solids();
    ASSERT_EQ(solids.vertex_count(), others.vertex_count());
    ASSERT_EQ(solids.face_count(), others.face_count());
    for (int v = 0; v < solids.vertex_count(); ++v) {
        ASSERT_EQ(solids.vertex(v), others.vertex(v)) << v;
    }
    for (const kit::Body body : solids) {
        EXPECT_EQ(body.name(), others[body.index()].name());
        EXPECT_EQ(body.colour(), others[body.index()].colour());
        EXPECT_NEAR(body.volume() / others[body.index()].volume(), 1, 1e-9); // derived anew
    }
    EXPECT_EQ(solids.view(), others.view());
    EXPECT_EQ(a.solids().hidden(), b.solids().hidden());
    EXPECT_EQ(a.section().plane(), b.section().plane());
}

TEST(Project, ComesBackToTheLastDigitWithAnEmptyHistory) {
    Saved one;
    fill(one.document);
    EXPECT_FALSE(one.document.history().is_saved());
    one.save("one.korvel");
    EXPECT_EQ(one.problem, "");
    EXPECT_TRUE(one.document.history().is_saved());
    Saved other;
    other.document.map().replace("Draw", five_curves(), {});
    other.open(one.file("one.korvel"));
    EXPECT_EQ(other.problem, "");
    expect_same(one.document, other.document);
    EXPECT_FALSE(other.document.history().can_undo());
    EXPECT_TRUE(other.document.history().is_saved());
    other.store.clear();
    Saved empty;
    expect_same(other.document, empty.document);
    empty.save("empty.korvel");
    other.open(empty.file("empty.korvel"));
    EXPECT_EQ(other.problem, "");
    expect_same(other.document, empty.document);
}

TEST(Project, KeepsTheReferenceSystemThatWasChosenOnImport) {
    if (!kit::has_projections()) {
        GTEST_SKIP() << "without PROJ";
    }
    const std::filesystem::path states =
        std::filesystem::path(KORVEL_DATA_DIR) / "us-states.geojson";
    for (const char* system : {"EPSG:3857", "+proj=laea +lat_0=37 +lon_0=-96 +datum=WGS84"}) {
        Saved one;
        one.document.open(states, {.grid = {.step = kit::Grid::parse("0.25")}, .project = system});
        one.document.worker().wait();
        one.save("one.korvel");
        Saved other;
        other.open(one.file("one.korvel"));
        EXPECT_EQ(one.problem + other.problem, "");
        EXPECT_EQ(other.document.map().curves().placement().reference, system);
        expect_same(one.document, other.document);
    }
}

TEST(Project, WhatIsChangedWhileItIsWrittenIsNotSaved) {
    Saved one;
    fill(one.document);
    one.store.save(one.file("one.korvel"));
    one.document.map().change_curves("Delete", 0, 1, {});
    one.document.worker().wait();
    EXPECT_FALSE(one.document.history().is_saved());
    one.document.history().undo();
    EXPECT_TRUE(one.document.history().is_saved());
}

TEST(Project, AFailedSaveLeavesTheFormerFileAndTheDocumentUnsaved) {
    Saved one;
    fill(one.document);
    one.save("one.korvel");
    const auto size = std::filesystem::file_size(one.file("one.korvel"));
    one.document.map().change_curves("Delete", 0, 1, {});
    const rlimit unlimited = [] {
        rlimit limit = {};
        getrlimit(RLIMIT_FSIZE, &limit);
        return limit;
    }();
    for (const char* target : {"one.korvel", "no/where.korvel"}) {
        const rlimit full = {2000, unlimited.rlim_max};
        const auto former = std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &full);
        one.save(target);
        setrlimit(RLIMIT_FSIZE, &unlimited);
        std::signal(SIGXFSZ, former);
        EXPECT_NE(one.problem, "") << target;
        EXPECT_FALSE(one.document.history().is_saved());
        EXPECT_EQ(std::filesystem::file_size(one.file("one.korvel")), size);
    }
    const std::filesystem::path full = one.file("full.korvel");
    std::filesystem::create_symlink("/dev/full", full);
    one.save("full.korvel");
    EXPECT_NE(one.problem.find("full.korvel"), std::string::npos) << one.problem;
    Saved other;
    fill(other.document);
    const int points = other.document.map().curves().point_count();
    other.open(one.file("vanished.korvel"));
    EXPECT_NE(other.problem.find("vanished.korvel"), std::string::npos) << other.problem;
    EXPECT_EQ(other.document.map().curves().point_count(), points);
}

TEST(Project, WhatIsDamagedIsNamed) {
    Saved saved;
    const std::string map = R"("map": {"coordinates": "user",
        "placement": {"step": "1", "origin": [0, 0, 0]}})";
    const std::string begin = R"({"format": "korvel project", "version": 1, )";
    const auto json = [&](const std::string& rest) {
        return std::vector<workbench::ZipEntry>{{"project.json", begin + rest},
                                                {"map.curves", "0\n"}};
    };
    const auto solids = [&](const std::string& bodies) {
        return json(map + R"(, "solids": {"placement": {"step": "1", "origin": [0, 0, 0]},
            "view": [1, 2], "bodies": )" +
                    bodies + "}}");
    };
    struct Row {
        std::vector<workbench::ZipEntry> entries;
        const char* message;
    };
    const Row table[] = {
        {{{"readme", "hello"}}, "project.json is missing"},
        {{{"project.json", begin + map + "}"}}, "map.curves is missing"},
        {{{"project.json", "{"}}, "at byte"},
        {{{"project.json", "[]"}}, "not an object"},
        {{{"project.json", R"({"format": "x"})"}}, "the format is 'x'"},
        {{{"project.json", R"({"format": "korvel project", "version": 2})"}}, "version 2"},
        {json(R"("map": 3})"), "map is not an object"},
        {json(R"("map": {"coordinates": "user", "placement": {"step": "-1",
            "origin": [0, 0, 0]}}})"),
         "the step '-1'"},
        {json(R"("map": {"coordinates": "user", "placement": {"step": "1",
            "origin": [0, 0]}}})"),
         "has 2 numbers instead of 3"},
        {json(R"("plane": [0, 0, 0, 1], )" + map + "}"), "no normal"},
        {json(R"("plane": [0, 0, "a", 1], )" + map + "}"), "plane is not"},
        {{{"project.json", begin + map + "}"}, {"map.curves", "1\n2\n0 0\n"}}, "map.curves"},
        {solids(R"([{"colour": [1, 0, 0, 1], "faces": 4}])"), "solids.ply is missing"},
        {solids(R"([{"colour": [1, 0, 0, 1], "faces": 4.5}])"), "solids.bodies[0].faces"},
        {{{"project.json", begin + map + "}"}, {"map.curves", std::string(1U << 20U, ' ')}},
         "map.curves"},
    };
    for (const Row& row : table) {
        workbench::write_zip(row.entries, saved.file("bad.korvel"));
        saved.open(saved.file("bad.korvel"));
        EXPECT_NE(saved.problem.find("bad.korvel"), std::string::npos) << saved.problem;
        EXPECT_NE(saved.problem.find(row.message), std::string::npos)
            << row.message << ": " << saved.problem;
    }
}

std::string bytes_of(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void write_bytes(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

// Either the project is the same as before, or there is a message.
TEST(Project, NoChangeOfAByteIsTakenForSomethingElse) {
    Saved saved;
    fill(saved.document);
    saved.save("good.korvel");
    const std::string good = bytes_of(saved.file("good.korvel"));
    std::mt19937 random(7);
    int refused = 0;
    for (int i = 0; i < 300; ++i) {
        std::string bad = good;
        if (i % 10 == 0) {
            bad.resize(random() % bad.size());
        } else {
            char& byte = bad[random() % bad.size()];
            byte = static_cast<char>(byte ^ (1 << random() % 8));
        }
        write_bytes(saved.file("bad.korvel"), bad);
        try {
            const Project read = workbench::read_project(saved.file("bad.korvel"));
            EXPECT_EQ(read.curves.point_count(), 16) << i;
            EXPECT_EQ(read.solids.mesh.points.size(),
                      static_cast<std::size_t>(saved.document.solids().solids().vertex_count()));
        } catch (const kit::Error& error) {
            EXPECT_NE(std::string(error.what()).find("bad.korvel"), std::string::npos);
            ++refused;
        }
    }
    EXPECT_GT(refused, 200);
}

// A directory that states more bytes than the compressed ones can make.
TEST(Project, AZipBombIsRefusedBeforeItGrows) {
    Saved saved;
    workbench::write_zip({{"project.json", std::string(std::size_t{1} << 20U, ' ')}},
                         saved.file("bomb.korvel"));
    std::string bytes = bytes_of(saved.file("bomb.korvel"));
    const std::string size = {'\x00', '\x00', '\x10', '\x00'};
    const std::string larger = {'\x00', '\x00', '\x00', '\x70'};
    for (auto at = bytes.find(size); at != std::string::npos; at = bytes.find(size, at + 1)) {
        bytes.replace(at, size.size(), larger);
    }
    write_bytes(saved.file("bomb.korvel"), bytes);
    saved.open(saved.file("bomb.korvel"));
    EXPECT_NE(saved.problem.find("too large"), std::string::npos) << saved.problem;
}

} // namespace
} // namespace korvel::test
