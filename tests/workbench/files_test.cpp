// Saving, closing, exporting and recovering in the window.

#include <fstream>
#include <future>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

#include "apps/workbench/window/export_actions.h"
#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

std::filesystem::path path_in(const QTemporaryDir& folder, const char* name) {
    return kit::path_of(folder.filePath(QString::fromLatin1(name)).toStdString());
}

std::string contents_of(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void trigger(ShownWindow& window, const char* text) {
    for (auto* action : window->findChildren<QAction*>()) {
        if (action->text() == QString::fromUtf8(text)) {
            action->trigger();
            return;
        }
    }
    ADD_FAILURE() << text << " is not there";
}

/// Answers the next dialog.
template <class Dialog, class Answer>
void answer_next(Answer answer) {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, answer] {
        if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget())) {
            poll->deleteLater();
            answer(*dialog);
        }
    });
    poll->start(20);
}

void answer_with(QMessageBox::StandardButton button) {
    answer_next<QMessageBox>(
        [button](QMessageBox& box) { QTest::mouseClick(box.button(button), Qt::LeftButton); });
}

void answer_with_file(const std::filesystem::path& file) {
    answer_next<QFileDialog>([file](QFileDialog& dialog) {
        auto* name = dialog.findChild<QLineEdit*>();
        name->setText(QString::fromStdString(kit::text_of(file)));
        QTest::keyClick(name, Qt::Key_Return);
    });
}

TEST(Files, SaveAsCloseAndOpenAgain) {
    const QTemporaryDir folder;
    const std::filesystem::path file = path_in(folder, "states.korvel");
    {
        ShownWindow window;
        window.open("us-states.curves");
        EXPECT_TRUE(window->isWindowModified());
        answer_with(QMessageBox::Cancel);
        EXPECT_FALSE(window->close());
        answer_with_file(folder.filePath("states").toStdString());
        trigger(window, "Save &As…");
        window.wait();
        EXPECT_TRUE(std::filesystem::exists(file));
        EXPECT_FALSE(window->isWindowModified());
        EXPECT_TRUE(window->windowTitle().startsWith("states.korvel"));
        window.document().map().change_curves("Delete", 0, 1, {});
        answer_with(QMessageBox::Save);
        EXPECT_TRUE(window->close());
    }
    ShownWindow window;
    window->open(file);
    window.wait();
    const auto all =
        kit::Network::read(std::filesystem::path(KORVEL_DATA_DIR) / "us-states.curves");
    EXPECT_EQ(window.document().map().curves().size(), all.curve_count() - 1);
    EXPECT_EQ(QSettings().value("recent").toStringList().value(0).toStdString(),
              kit::text_of(file));
    window.document().map().change_curves("Delete", 0, 1, {});
    answer_with(QMessageBox::Discard);
    trigger(window, "&New");
    window.wait();
    EXPECT_TRUE(window.document().map().curves().empty());
    EXPECT_TRUE(window->close());
}

TEST(Files, AFailedSaveIsReportedAndTheWindowStaysOpen) {
    const QTemporaryDir folder;
    ShownWindow window;
    QString problem;
    window->set_problem_handler(
        [&](const QString& /*title*/, const QString& message) { problem = message; });
    window.open("us-states.curves");
    window->file_actions().store().set_file(path_in(folder, "none/states.korvel"));
    answer_with(QMessageBox::Save);
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(problem.contains("none/states.korvel")) << problem.toStdString();
    EXPECT_TRUE(window->isVisible());
}

TEST(Export, WritesWhatTheKitWrites) {
    const QTemporaryDir folder;
    ShownWindow window;
    window.open("us-states.curves");
    kit::Solids solids = kit::make_ball({0, 0, 0}, 10, 3);
    window.document().solids().replacing("Put", kit::Solids(solids))();
    window.document().section().set_plane(kit::Plane::at_x(1));
    window.wait();
    workbench::ExportActions& actions = window->export_actions();
    const auto found = window.document().map().found();
    const kit::Section section = solids.cut(kit::Plane::at_x(1));
    const kit::SectionPictureOptions picture = {.names = {""}, .scale_bar = true, .legend = true};
    using File = std::filesystem::path;
    struct Row {
        const char* name;
        void (workbench::ExportActions::*write)(const File& file);
        std::function<void(const File& file)> write_by_kit;
    };
    const auto section_picture = [&](const File& file) {
        kit::write_picture(section, file, picture);
    };
    const auto by_kit_solids = [&](const File& file) { kit::write_solids(solids, file); };
    const Row table[] = {
        {"a.png", &workbench::ExportActions::write_section, section_picture},
        {"a.section", &workbench::ExportActions::write_section,
         [&](const File& file) { section.write(file); }},
        {"a.geojson", &workbench::ExportActions::write_section,
         [&](const File& file) { kit::write_features(kit::features_of(section), file); }},
        {"b.geojson", &workbench::ExportActions::write_regions,
         [&](const File& file) { kit::write_features(kit::features_of(found->map), file); }},
        {"b.png", &workbench::ExportActions::write_regions,
         [&](const File& file) { kit::write_picture(found->map, file); }},
        {"b.regions", &workbench::ExportActions::write_regions,
         [&](const File& file) { found->map.write(file); }},
        {"c.curves", &workbench::ExportActions::write_curves,
         [&](const File& file) { window.document().map().curves().network().write(file); }},
        {"d.model", &workbench::ExportActions::write_solids, by_kit_solids},
        {"d.ply", &workbench::ExportActions::write_solids, by_kit_solids},
        {"d.glb", &workbench::ExportActions::write_solids, by_kit_solids},
    };
    std::filesystem::create_directory(path_in(folder, "kit"));
    for (const Row& row : table) {
        const File file = path_in(folder, row.name);
        (actions.*row.write)(file);
        window.wait();
        const File expected = path_in(folder, "kit") / row.name;
        row.write_by_kit(expected);
        EXPECT_FALSE(contents_of(expected).empty()) << row.name;
        EXPECT_TRUE(contents_of(file) == contents_of(expected)) << row.name;
    }
    actions.write_section(path_in(folder, "a.pdf"));
    actions.write_section(path_in(folder, "a.svg"));
    actions.write_view(path_in(folder, "view.png"));
    window.wait();
    EXPECT_EQ(contents_of(path_in(folder, "a.pdf")).substr(0, 5), "%PDF-");
    EXPECT_NE(contents_of(path_in(folder, "a.svg")).find("<svg"), std::string::npos);
    const QImage view(folder.filePath("view.png"));
    const QImage shown = window.solids().grabFramebuffer();
    EXPECT_EQ(view.convertToFormat(shown.format()), shown);
    QString problem;
    window->set_problem_handler(
        [&](const QString& /*title*/, const QString& message) { problem = message; });
    actions.write_solids(path_in(folder, "no/where.ply"));
    window.wait();
    EXPECT_TRUE(problem.contains("where.ply")) << problem.toStdString();
}

TEST(Recovery, WhatIsChangedDuringALongOperationIsKeptBeforeItEnds) {
    const QTemporaryDir folder;
    workbench::Document document;
    workbench::ProjectStore store(document);
    workbench::Autosave autosave(document, store, path_in(folder, "kept"));
    autosave.set_delay(10);
    document.solids().replacing("Make", kit::make_cuboid({0, 0, 0}, {1, 1, 1}))();
    std::promise<void> end;
    document.solids().start("Long", [&](kit::Solids solids, const kit::Context&) {
        end.get_future().wait();
        return solids;
    });
    const std::vector<workbench::Curve> drawn = {{{0, 0}, {5, 5}}};
    document.map().change_curves("Draw", 0, 0, drawn);
    const auto files = [&] { return QDir(folder.filePath("kept")).entryInfoList({"*.korvel"}); };
    const bool is_kept = QTest::qWaitFor([&] { return !files().isEmpty(); });
    const workbench::Project kept =
        is_kept ? workbench::read_project(path_in(folder, "kept") /
                                          files().front().fileName().toStdString())
                : workbench::Project();
    end.set_value();
    document.worker().wait();
    EXPECT_EQ(kept.curves.size(), 1);
    EXPECT_EQ(kept.solids.bodies.size(), 1U);
}

TEST(Recovery, AKilledProgramLosesAtMostTheLastTenSeconds) {
    const QTemporaryDir folder;
    const std::filesystem::path sample =
        std::filesystem::path(KORVEL_DATA_DIR) / "us-states.curves";
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", folder.filePath("config"));
    environment.insert("XDG_DATA_HOME", folder.filePath("data"));
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(KORVEL_WORKBENCH, {"--autosave-dir", folder.filePath("kept"),
                                     QString::fromStdString(kit::text_of(sample))});
    ASSERT_TRUE(program.waitForStarted());
    workbench::Document document;
    workbench::ProjectStore store(document);
    workbench::Autosave autosave(document, store, path_in(folder, "kept"));
    const auto has_file = [&] {
        return !QDir(folder.filePath("kept")).entryList({"*.korvel"}).isEmpty();
    };
    QElapsedTimer timer;
    timer.start();
    constexpr int longest = 10'000 + 20'000; // with the start of a program on a busy computer
    while (!has_file() && timer.elapsed() < longest) {
        QTest::qWait(50);
    }
    ASSERT_TRUE(has_file());
    EXPECT_TRUE(autosave.kept().empty()); // its program runs
    program.kill();
    ASSERT_TRUE(program.waitForFinished());
    ASSERT_EQ(autosave.kept().size(), 1U);
    autosave.recover(autosave.kept().front());
    document.worker().wait();
    const kit::Network network = kit::Network::read(sample);
    ASSERT_EQ(document.map().curves().point_count(), network.point_count());
    EXPECT_EQ(document.map().curves().bounds().left, network.bounds().left);
    EXPECT_FALSE(document.history().is_saved());
    EXPECT_TRUE(store.file().empty());
    EXPECT_TRUE(has_file()); // until it is saved
    store.save(path_in(folder, "saved.korvel"));
    document.worker().wait();
    QTRY_VERIFY(!has_file());
}

} // namespace
} // namespace korvel::test
