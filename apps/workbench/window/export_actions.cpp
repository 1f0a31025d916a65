#include "apps/workbench/window/export_actions.h"

#include <QFileDialog>
#include <QMainWindow>

#include "apps/workbench/document/document.h"
#include "apps/workbench/export/export.h"
#include "apps/workbench/section/section_view.h"
#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {
namespace {

QString view_formats() {
    return ExportActions::tr("Picture (*.png)");
}

} // namespace

ExportActions::ExportActions(Document& document, SolidView& solids, SectionView& section,
                             QMainWindow& window)
    : QObject(&window), document_(document), solids_(solids), section_(section), window_(window) {
    connect(&document_.map(), &MapModel::curves_changed, this, &ExportActions::update);
    connect(&document_.map(), &MapModel::regions_changed, this, &ExportActions::update);
    connect(&document_.solids(), &SolidModel::solids_changed, this, &ExportActions::update);
    connect(&document_.section(), &SectionModel::section_changed, this, &ExportActions::update);
}

void ExportActions::add_actions(const Menus& menus) {
    QMenu* menu = menus.file->addMenu(tr("&Export"));
    add(*menu, tr("&Regions…"), region_formats, "geojson", &ExportActions::write_regions);
    add(*menu, tr("&Curves…"), curve_formats, "curves", &ExportActions::write_curves);
    add(*menu, tr("Se&ction…"), section_formats, "png", &ExportActions::write_section);
    add(*menu, tr("&Solids…"), solid_formats, "model", &ExportActions::write_solids);
    add(*menu, tr("&View of the Solids…"), view_formats, "png", &ExportActions::write_view);
    update();
}

void ExportActions::write_regions(const std::filesystem::path& file) {
    if (const auto found = document_.map().found()) {
        start(file, [found, file] { export_regions(*found, file); });
    }
}

void ExportActions::write_curves(const std::filesystem::path& file) {
    start(file,
          [network = document_.map().curves().network(), file] { export_curves(network, file); });
}

void ExportActions::write_section(const std::filesystem::path& file) {
    if (const auto section = document_.section().section()) {
        kit::SectionPictureOptions options = section_.options();
        options.size = kit::PictureSize();
        options.scale.reset();
        options.legend = true;
        start(file, [section, options, file] { export_section(*section, options, file); });
    }
}

void ExportActions::write_solids(const std::filesystem::path& file) {
    const QString name = QString::fromStdString(kit::text_of(file));
    document_.worker().run(
        tr("Export %1").arg(name),
        document_.solids().asking(
            [this, file, name](kit::SolidsEditor& editor, const kit::Context& /*context*/) {
                kit::write_solids(editor.solids(), file);
                return [this, name] { emit written(name); };
            }));
}

void ExportActions::write_view(const std::filesystem::path& file) {
    start(file, [image = solids_.grabFramebuffer(), file] { export_image(image, file); });
}

void ExportActions::add(QMenu& menu, const QString& text, QString (*formats)(), const char* suffix,
                        Write write) {
    QAction* action = menu.addAction(text, this, [this, text, formats, suffix, write] {
        ask(QString(text).remove('&'), formats(), suffix, write);
    });
    action->setStatusTip(tr("Writes a file for other programs"));
    actions_.push_back(action);
}

void ExportActions::ask(const QString& title, const QString& formats, const char* suffix,
                        Write write) {
    QFileDialog dialog(&window_, title, {}, formats);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QString::fromLatin1(suffix));
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& filter) {
        const qsizetype dot = filter.lastIndexOf(QLatin1String("*."));
        dialog.setDefaultSuffix(filter.mid(dot + 2).remove(QLatin1Char(')')));
    });
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        (this->*write)(kit::path_of(dialog.selectedFiles().first().toStdString()));
    }
}

void ExportActions::start(const std::filesystem::path& file, std::function<void()> write) {
    const QString name = QString::fromStdString(kit::text_of(file));
    document_.worker().run(tr("Export %1").arg(name),
                           [this, name, write = std::move(write)](const kit::Context& /*context*/) {
                               write();
                               return [this, name] { emit written(name); };
                           });
}

void ExportActions::update() {
    const auto found = document_.map().found();
    const bool has_solids = !document_.solids().empty();
    const std::array<bool, 5> can = {
        found != nullptr && !found->map.empty(), !document_.map().curves().empty(),
        document_.section().section() != nullptr, has_solids, has_solids};
    for (std::size_t i = 0; i < actions_.size(); ++i) {
        actions_[i]->setEnabled(can[i]);
    }
}

} // namespace korvel::workbench
