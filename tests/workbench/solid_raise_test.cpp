#include <array>
#include <cstdio>
#include <set>

#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableView>
#include <QTemporaryDir>

#include "apps/workbench/solid/bodies_dock.h"
#include "apps/workbench/solid/bodies_model.h"
#include "apps/workbench/solid/move_dialog.h"
#include "apps/workbench/solid/number_edit.h"
#include "apps/workbench/solid/raise_dialog.h"
#include "apps/workbench/solid/starter_dialog.h"
#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

class SolidDialogs : public testing::Test {
protected:
    workbench::SolidModel& model() { return window_.document().solids(); }
    const kit::Solids& solids() { return model().solids(); }

    template <class Dialog>
    Dialog& open(const char* action) {
        window_->findChild<QAction*>(QString::fromLatin1(action))->trigger();
        auto* const dialog = window_->findChild<Dialog*>();
        EXPECT_NE(dialog, nullptr);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(dialog));
        return *dialog;
    }

    static void type(QDialog& dialog, const char* name, const char* text) {
        for (auto* const edit : dialog.findChildren<workbench::NumberEdit*>()) {
            if (edit->accessibleName() == QLatin1String(name)) {
                edit->selectAll();
                QTest::keyClicks(edit, QString::fromLatin1(text));
                return;
            }
        }
        ADD_FAILURE() << name;
    }

    void accept(QDialog& dialog) {
        QPushButton* const ok = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
        EXPECT_TRUE(ok->isEnabled());
        QTest::mouseClick(ok, Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        window_.wait();
    }

    void make_ball(const char* radius, int rounds) {
        auto& dialog = open<workbench::StarterDialog>("new_ball");
        type(dialog, "Radius", radius);
        dialog.findChild<QSpinBox*>()->setValue(rounds);
        accept(dialog);
    }

    ShownWindow window_;
};

TEST_F(SolidDialogs, ClickedRegionsAreRaisedAsTheKitDoesAlongEachAxis) {
    window_.open("us-states.curves");
    const workbench::MapModel& map = window_.document().map();
    const kit::Map regions = map.found()->map;
    std::vector<int> clicked;
    for (const kit::Region region : regions) {
        if (region.area() > 1e6 && clicked.size() < 2) {
            clicked.push_back(region.index());
        }
    }
    ASSERT_EQ(clicked.size(), 2U);
    for (const int region : clicked) {
        ShownWindow::click(window_.map(),
                           window_.map().viewport().to_screen(*regions[region].inner_point()),
                           Qt::ControlModifier);
    }
    ASSERT_EQ(map.selected(), std::set<int>(clicked.begin(), clicked.end()));
    for (const kit::LevelAxis axis : {kit::LevelAxis::z, kit::LevelAxis::y, kit::LevelAxis::x}) {
        auto& dialog = open<workbench::RaiseDialog>("raise");
        auto* const axes = dialog.findChild<QComboBox*>();
        axes->setCurrentIndex(axes->findData(static_cast<int>(axis)));
        type(dialog, "Low level", "-5");
        type(dialog, "High level", "20");
        accept(dialog);
        kit::RaiseOptions options;
        options.axis = axis;
        options.only_listed = true;
        options.levels_of_region.resize(static_cast<std::size_t>(regions.size()));
        for (const int region : clicked) {
            options.levels_of_region[static_cast<std::size_t>(region)] = kit::Levels{-5, 20};
        }
        const kit::Raised expected = kit::raise(regions, options);
        ASSERT_EQ(solids().size(), 2);
        for (const kit::Body body : expected.solids) {
            EXPECT_EQ(solids()[body.index()].volume(), body.volume());
            EXPECT_EQ(solids()[body.index()].name(), body.name());
            EXPECT_NEAR(body.volume(), 25 * regions[clicked[body.index()]].area(),
                        1e-9 * body.volume());
        }
        EXPECT_EQ(solids().vertex_count(), expected.solids.vertex_count());
    }
    window_.document().history().undo();
    EXPECT_EQ(solids().size(), 2);
}

TEST_F(SolidDialogs, TheListOfBodiesShowsSelectsNamesAndHides) {
    make_ball("3", 2);
    auto& cuboid = open<workbench::StarterDialog>("new_cuboid");
    type(cuboid, "Middle x", "9");
    type(cuboid, "Length along x", "4");
    type(cuboid, "Length along y", "2.5");
    accept(cuboid);
    ASSERT_EQ(solids().size(), 2);
    auto* const dock = window_->findChild<workbench::BodiesDock*>();
    QTableView& table = dock->table();
    const auto cell = [&](int row, int column) {
        return table.model()->index(row, column).data().toString();
    };
    EXPECT_EQ(cell(1, workbench::BodiesModel::volume), "100"); // 4 × 2.5 × 10
    EXPECT_EQ(cell(1, workbench::BodiesModel::state), "closed");
    window_.solids().look_from({0, -90});
    const QPointF on_cuboid = [&] {
        const kit::Point3 at = solids().to_view({9, -1.25, 0.5});
        return window_.solids().camera().to_pixel(at[0], at[1]);
    }();
    const QRgb page = ShownWindow::picture(window_.solids()).pixel(3, 3);
    const QRgb body = ShownWindow::picture(window_.solids()).pixel(on_cuboid.toPoint());
    EXPECT_NE(body, page);
    ShownWindow::click(window_.solids(), on_cuboid); // selects in the table
    EXPECT_EQ(model().selected(), (std::set{1}));
    ASSERT_EQ(table.selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(table.selectionModel()->selectedRows().front().row(), 1);
    table.selectRow(0); // and in the view
    EXPECT_EQ(model().selected(), (std::set{0}));
    table.model()->setData(table.model()->index(1, workbench::BodiesModel::name), "box",
                           Qt::EditRole);
    EXPECT_EQ(solids()[1].name(), "box");
    window_.document().history().undo();
    EXPECT_EQ(cell(1, workbench::BodiesModel::name), "");
    table.model()->setData(table.model()->index(1, 0), Qt::Unchecked, Qt::CheckStateRole);
    EXPECT_EQ(model().hidden(), (std::set{1}));
    EXPECT_EQ(ShownWindow::picture(window_.solids()).pixel(on_cuboid.toPoint()), page);
    ShownWindow::click(window_.solids(), on_cuboid); // nothing there
    EXPECT_TRUE(model().selected().empty());
    model().select({1});
    window_->findChild<QAction*>("delete_bodies")->trigger();
    window_.wait();
    EXPECT_EQ(solids().size(), 1);
    EXPECT_EQ(table.model()->rowCount(), 1);
    window_.document().history().undo();
    EXPECT_EQ(solids().size(), 2);
}

TEST_F(SolidDialogs, WeldingAndCleaningAreTheKitsAndCanBeUndone) {
    std::vector<kit::Solids> parts;
    parts.push_back(kit::make_cuboid({0, 0, 0}, {2, 2, 2}));
    parts.push_back(kit::make_cuboid({2.001, 0, 0}, {2, 2, 2}));
    TMOD3D model_with_more(kit::merge(std::move(parts)).model());
    const int count = model_with_more.verts.GetSize();
    model_with_more.verts.SetSize(count + 1); // of no face
    const QTemporaryDir folder;
    const std::filesystem::path file = kit::path_of(folder.filePath("two.model").toStdString());
    FILE* const stream = std::fopen(file.c_str(), "w");
    model_with_more.write_mode(stream);
    std::fclose(stream);
    window_.open(file);
    ASSERT_EQ(solids().vertex_count(), count + 1);
    auto& dialog = open<QInputDialog>("weld");
    dialog.setDoubleValue(0.01);
    accept(dialog);
    kit::Solids expected = kit::Solids::read(file);
    const kit::WeldReport report = kit::weld(expected, {.tolerance = 0.01});
    EXPECT_GT(report.vertices_joined, 3);
    EXPECT_EQ(solids().face_count(), expected.face_count());
    EXPECT_EQ(solids().vertex_count(), expected.vertex_count());
    window_->findChild<QAction*>("clean")->trigger();
    window_.wait();
    expected.clean();
    EXPECT_EQ(solids().vertex_count(), expected.vertex_count());
    EXPECT_EQ(solids().vertex_count(), count - report.vertices_joined);
    window_.document().history().undo();
    window_.document().history().undo();
    EXPECT_EQ(solids().vertex_count(), count + 1);
}

TEST_F(SolidDialogs, AMoveIsTypedAndRefusedWhereItIsNotLegal) {
    make_ball("3", 1);
    const kit::Solids before = solids();
    auto& dialog = open<workbench::MoveDialog>("move_by_or_to");
    dialog.findChildren<QSpinBox*>().front()->setValue(5);
    type(dialog, "x", "0.25");
    type(dialog, "y", "-0.5");
    type(dialog, "z", "0.125");
    accept(dialog);
    const kit::Point3 moved = solids().vertex(5);
    const kit::Point3 from = before.vertex(5);
    const double by[] = {0.25, -0.5, 0.125};
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_NEAR(moved[k], from[k] + by[k], 1e-12);
    }
    EXPECT_EQ(solids().view(), before.view());
    QString refused;
    QObject::disconnect(&model(), &workbench::SolidModel::refused, nullptr, nullptr);
    QObject::connect(&model(), &workbench::SolidModel::refused,
                     [&](const QString&, const QString& reason) { refused = reason; });
    auto& again = open<workbench::MoveDialog>("move_by_or_to");
    again.findChildren<QSpinBox*>().front()->setValue(5);
    for (auto* const choice : again.findChildren<QRadioButton*>()) {
        choice->setChecked(choice->text() == "&To");
    }
    constexpr std::array names = {"x", "y", "z"};
    for (std::size_t k = 0; k < 3; ++k) { // through the faces on the other side
        type(again, names[k], QByteArray::number(-3 * moved[k]).constData());
    }
    accept(again);
    EXPECT_TRUE(refused.contains("would")) << refused.toStdString();
    EXPECT_EQ(solids().vertex(5), moved);
}

} // namespace
} // namespace korvel::test
