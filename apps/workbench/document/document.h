#pragma once

#include <filesystem>

#include <QObject>
#include <QString>

#include "apps/workbench/document/history.h"
#include "apps/workbench/document/import.h"
#include "apps/workbench/document/map_model.h"
#include "apps/workbench/document/section_model.h"
#include "apps/workbench/document/solid_model.h"
#include "apps/workbench/document/worker.h"

namespace korvel::workbench {

/// What a window works on: a map, solids and a plane that cuts them, with the history of their
/// changes and the worker that does what takes long. It needs no window.
class Document : public QObject {
    Q_OBJECT

public:
    explicit Document(QObject* parent = nullptr);

    MapModel& map() { return map_; }
    SolidModel& solids() { return solids_; }
    SectionModel& section() { return section_; }
    History& history() { return history_; }
    Worker& worker() { return worker_; }

    /// Reads a file in the worker. A map replaces the map, a model the solids, or is added to them;
    /// each as a step.
    void open(const std::filesystem::path& file, const ImportOptions& options = {});

signals:
    void opened(const QString& file, const QString& report); ///< with what was read, for the user

private:
    void take(const std::filesystem::path& file, Imported& imported);

    Worker worker_; // ends last: the others' work is in it
    History history_;
    MapModel map_;
    SolidModel solids_;
    SectionModel section_;
};

} // namespace korvel::workbench
