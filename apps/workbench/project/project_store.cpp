#include "apps/workbench/project/project_store.h"

#include <utility>

#include "apps/workbench/document/document.h"

namespace korvel::workbench {

/// A project that was read, and what puts its solids in place.
struct ProjectStore::Opened {
    std::filesystem::path file;
    bool is_recovered = false;
    Project project;
    Worker::Deliver replace_solids;
};

ProjectStore::ProjectStore(Document& document, QObject* parent)
    : QObject(parent), document_(document) {}

void ProjectStore::set_file(const std::filesystem::path& file) {
    file_ = file;
    emit file_changed();
}

void ProjectStore::save(const std::filesystem::path& file) {
    document_.history().mark();
    auto project = std::make_shared<Project>(snapshot());
    const QString name = QString::fromStdString(kit::text_of(file.filename()));
    document_.worker().run(
        tr("Save %1").arg(name),
        document_.solids().asking(
            [this, project, file](kit::SolidsEditor& editor, const kit::Context& context) {
                project->solids = kit::stored(editor.solids());
                context.stop_if_requested("saving");
                write_project(*project, file);
                return [this, file] {
                    document_.history().set_marked_saved();
                    set_file(file);
                    emit saved(QString::fromStdString(kit::text_of(file)));
                };
            }));
}

void ProjectStore::open(const std::filesystem::path& file) {
    load(file, false);
}

void ProjectStore::recover(const std::filesystem::path& kept) {
    load(kept, true);
}

void ProjectStore::load(const std::filesystem::path& file, bool is_recovered) {
    const QString name = QString::fromStdString(kit::text_of(file.filename()));
    document_.worker().run(
        tr("Open %1").arg(name), [this, file, is_recovered](const kit::Context& context) {
            auto opened = std::make_shared<Opened>();
            opened->file = file;
            opened->is_recovered = is_recovered;
            opened->project = read_project(file, context);
            kit::Solids solids = kit::restored(opened->project.solids, context);
            solids.set_view(opened->project.view);
            opened->replace_solids =
                document_.solids().replacing(tr("Open project"), std::move(solids));
            opened->project.solids = {};
            return [this, opened] { take(*opened); };
        });
}

// In the history of the former document its steps would be undone in this one.
void ProjectStore::take(Opened& opened) {
    Project& project = opened.project;
    document_.map().replace(tr("Open project"), std::move(project.curves),
                            std::move(project.notes));
    document_.map().set_tolerance(project.tolerance);
    document_.map().set_background(tr("Open project"), std::move(project.background));
    opened.replace_solids();
    document_.solids().set_view(project.view);
    document_.solids().set_hidden(std::move(project.hidden));
    document_.section().set_plane(project.plane);
    document_.history().clear(!opened.is_recovered);
    set_file(opened.is_recovered ? kit::path_of(project.saved_as) : opened.file);
    emit this->opened(QString::fromStdString(kit::text_of(opened.file)));
}

void ProjectStore::clear() {
    document_.worker().cancel();
    document_.map().replace(tr("New"), Curves(), {});
    document_.map().set_tolerance(std::nullopt);
    document_.map().set_background(tr("New"), {});
    document_.solids().replacing(tr("New"), kit::Solids())();
    document_.solids().set_view({});
    document_.section().set_plane(std::nullopt);
    document_.history().clear();
    set_file({});
}

Project ProjectStore::snapshot() const {
    Project project;
    project.curves = document_.map().curves();
    project.notes = document_.map().notes();
    project.tolerance = document_.map().tolerance();
    project.background = document_.map().background();
    project.view = document_.solids().solids().view();
    project.hidden = document_.solids().hidden();
    project.plane = document_.section().plane();
    return project;
}

} // namespace korvel::workbench
