#include <algorithm>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "apps/workbench/map/import_dialog.h"
#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

const std::filesystem::path states = std::filesystem::path(KORVEL_DATA_DIR) / "us-states.geojson";

/// The dialog for a file, in a window.
class ImportDialog : public testing::Test {
protected:
    void open(const std::filesystem::path& file) {
        workbench::open_import_dialog(window_.map(), file);
        const auto dialogs = window_.map().findChildren<QDialog*>("import");
        ASSERT_FALSE(dialogs.empty());
        dialog_ = dialogs.back();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog_));
    }

    QLineEdit& field(const char* name) { return *dialog_->findChild<QLineEdit*>(name); }
    QComboBox& layers() { return *dialog_->findChild<QComboBox*>("Layer:"); }
    QComboBox& systems() { return *dialog_->findChild<QComboBox*>("Transform to:"); }
    QPushButton& ok() {
        return *dialog_->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    }

    static void type(QLineEdit& field, const char* text) {
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_Delete);
        QTest::keyClicks(&field, text);
    }

    std::string preview() {
        window_.wait();
        return dialog_->findChild<QLabel*>("preview")->text().toStdString();
    }

    bool shows(const char* text) { return preview().find(text) != std::string::npos; }

    // The map is what the file gives with options.
    void expect_imported(const std::filesystem::path& file,
                         const workbench::ImportOptions& options) {
        window_.wait();
        const workbench::Curves& curves = window_.document().map().curves();
        const workbench::Curves expected = *workbench::import_file(file, options, {}).curves;
        EXPECT_EQ(curves.placement(), expected.placement());
        ASSERT_EQ(curves.size(), expected.size());
        for (int i = 0; i < curves.size(); ++i) {
            const auto equal = [](const kit::GridPoint& a, const kit::GridPoint& b) {
                return a.x == b.x && a.y == b.y;
            };
            EXPECT_TRUE(std::ranges::equal(curves[i], expected[i], equal)) << i;
        }
    }

    ShownWindow window_;
    QDialog* dialog_ = nullptr;
};

TEST_F(ImportDialog, ShowsWhatTheGridDoesBeforeTheMapIsReplaced) {
    open(states);
    EXPECT_TRUE(shows("step 0.0001 from 0, 0; no point moves")) << preview();
    for (const auto& [step, text] : {std::pair("wide", "The step has to be"),
                                     {"0.01", "step 0.01 from 0, 0; points move to it by up to"}}) {
        type(field("Grid step:"), step);
        EXPECT_TRUE(shows(text)) << preview();
        EXPECT_EQ(ok().isEnabled(), shows("curves"));
    }
    // What was read for the former step comes too late.
    QTest::keyClicks(&field("Grid step:"), "x");
    EXPECT_TRUE(shows("The step has to be")) << preview();
    EXPECT_FALSE(ok().isEnabled());
    EXPECT_TRUE(window_.document().map().curves().empty());
    QTest::keyClick(&field("Grid step:"), Qt::Key_Backspace);
    window_.wait();
    QTest::mouseClick(&ok(), Qt::LeftButton);
    expect_imported(states, {.grid = {.step = kit::Grid(1, 100)}});
}

TEST_F(ImportDialog, TransformsToTheSystemThatIsTypedOrChosen) {
    if (!kit::has_projections()) {
        GTEST_SKIP() << "without PROJ";
    }
    open(states);
    EXPECT_TRUE(shows("Reference system: WGS 84 (EPSG:4326)")) << preview();
    EXPECT_EQ(field("Reference system:").text(), "EPSG:4326");
    ASSERT_EQ(systems().count(), 2);
    EXPECT_EQ(systems().itemText(0), "WGS 84 / Pseudo-Mercator (EPSG:3857)");
    QTest::keyClick(&systems(), Qt::Key_Down);
    EXPECT_EQ(systems().currentText(), systems().itemText(0));
    EXPECT_TRUE(shows("step 1 from 0, 0; points move to it by up to 0.5")) << preview();
    EXPECT_TRUE(shows("\nx from -13885281 to -7456391, y from 2816278 to 6340391\n")) << preview();
    EXPECT_TRUE(shows("\nReference system: WGS 84 / Pseudo-Mercator (EPSG:3857)")) << preview();
    for (const auto& [typed, text] :
         {std::pair("EPSG:0", "EPSG:0: not a reference system that PROJ knows"),
          {"+proj=gnom +lat_0=-60", "has no position in"},
          {"EPSG:3310", "NAD83 / California Albers (EPSG:3310)"}}) {
        type(*systems().lineEdit(), typed);
        EXPECT_TRUE(shows(text)) << preview();
        EXPECT_EQ(ok().isEnabled(), shows("curves"));
    }
    type(field("Reference system:"), "EPSG:4269"); // in place of what the file names
    type(field("Grid step:"), "5");
    EXPECT_TRUE(shows("step 5 from")) << preview();
    QTest::mouseClick(&ok(), Qt::LeftButton);
    expect_imported(
        states,
        {.grid = {.step = kit::Grid(5, 1)}, .reference = "EPSG:4269", .project = "EPSG:3310"});
    EXPECT_EQ(window_.document().map().curves().placement().reference, "EPSG:3310");
    window_.document().history().undo();
    EXPECT_EQ(window_.document().map().curves().placement(), kit::Placement());
}

TEST_F(ImportDialog, ReadsALayerAndACondition) {
    if (kit::feature_formats().size() == 1 || !kit::has_projections()) {
        GTEST_SKIP() << "without GDAL or PROJ";
    }
    const QTemporaryDir folder;
    const kit::Features features = kit::read_features(states);
    for (const char* suffix : {"gpkg", "shp"}) {
        SCOPED_TRACE(suffix);
        const auto file = kit::path_of(folder.filePath("lands.").toStdString() + suffix);
        kit::write_features(features, file);
        open(file);
        EXPECT_TRUE(shows("Reference system: WGS 84 (EPSG:4326)")) << preview();
        EXPECT_EQ(layers().count(), 0); // there is one
        type(*layers().lineEdit(), "roads");
        EXPECT_TRUE(shows("has no layer \"roads\"; it has: ")) << preview();
        EXPECT_FALSE(ok().isEnabled());
        layers().clearEditText();
        for (const auto& [condition, text] :
             {std::pair("height > 3", "the condition \"height > 3\" cannot be used"),
              {"name = 'Atlantis'", "contains neither lines nor polygons of the condition"},
              {"name = 'Colorado'", "1 curve with"}}) {
            type(field("Condition:"), condition);
            EXPECT_TRUE(shows(text)) << preview();
            EXPECT_EQ(ok().isEnabled(), shows("curve "));
        }
        ASSERT_EQ(systems().count(), 3); // with the zone of what is left
        EXPECT_EQ(systems().itemText(0), "WGS 84 / UTM zone 13N (EPSG:32613)");
        systems().setCurrentIndex(0);
        EXPECT_TRUE(shows("zone 13N")) << preview();
        QTest::mouseClick(&ok(), Qt::LeftButton);
        expect_imported(file,
                        {.features = {.where = "name = 'Colorado'"}, .project = "EPSG:32613"});
    }
}

TEST_F(ImportDialog, ListsTheLayersOfAFileAlsoIfTheFirstIsNoMap) {
    if (kit::feature_formats().size() == 1) {
        GTEST_SKIP() << "without GDAL";
    }
    const QTemporaryDir folder;
    QString folders;
    for (const auto& [layer, shape, places] : {std::tuple("peaks", "Point", "7,50"),
                                               {"rivers", "LineString", "7,50 7.5,50.25 8,50"},
                                               {"roads", "LineString", "1,2 3,4"}}) {
        folders += QString("<Folder><name>%1</name><Placemark><%2><coordinates>%3</coordinates>"
                           "</%2></Placemark></Folder>")
                       .arg(layer, shape, places);
    }
    QFile kml(folder.filePath("lands.kml"));
    ASSERT_TRUE(kml.open(QFile::WriteOnly));
    kml.write("<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>" + folders.toUtf8() +
              "</Document></kml>");
    kml.close();
    const auto file = kit::path_of(kml.fileName().toStdString());
    open(file);
    EXPECT_TRUE(shows("lands.kml: contains neither lines nor polygons")) << preview();
    ASSERT_EQ(layers().count(), 3);
    EXPECT_EQ(layers().itemText(2), "roads");
    QTest::keyClick(&layers(), Qt::Key_Down);
    QTest::keyClick(&layers(), Qt::Key_Down);
    EXPECT_TRUE(shows("1 curve with 3 points")) << preview();
    EXPECT_EQ(layers().currentText(), "rivers");
    QTest::mouseClick(&ok(), Qt::LeftButton);
    expect_imported(file, {.features = {.layer = "rivers"}});
}

TEST_F(ImportDialog, FitsTheWindowAlsoWithLettersOfTwiceTheSize) {
    const QFont usual = QApplication::font();
    for (const double size : {1.0, 2.0}) {
        QFont font = usual;
        font.setPointSizeF(size * usual.pointSizeF());
        QApplication::setFont(font);
        open(states);
        window_.wait();
        systems().setEditText("+proj=laea +lat_0=37 +lon_0=-96 +datum=WGS84 +units=m +type=crs");
        window_.wait();
        EXPECT_LE(dialog_->width(), 1024);
        EXPECT_LE(dialog_->height(), 700);
        const auto* area = dialog_->findChild<QScrollArea*>();
        EXPECT_LE(area->widget()->width(), area->viewport()->width());
        const auto* text = dialog_->findChild<QLabel*>("preview");
        EXPECT_LE(text->heightForWidth(text->width()), text->height());
        EXPECT_TRUE(dialog_->rect().contains({ok().mapTo(dialog_, QPoint()), ok().size()}));
        dialog_->reject();
        QTest::qWait(1);
    }
    QApplication::setFont(usual);
}

} // namespace
} // namespace korvel::test
