#include "apps/workbench/document/document.h"

#include <memory>
#include <utility>

namespace korvel::workbench {

Document::Document(QObject* parent)
    : QObject(parent), map_(history_, worker_), solids_(history_, worker_),
      section_(history_, solids_) {}

void Document::open(const std::filesystem::path& file, const ImportOptions& options) {
    const QString name = QString::fromStdString(kit::text_of(file.filename()));
    worker_.run(tr("Open %1").arg(name), [this, file, options](const kit::Context& context) {
        auto imported = std::make_shared<Imported>(import_file(file, options, context));
        if (imported->solids && !options.adds) {
            return Worker::Deliver(
                [this, file, report = imported->report,
                 replace = solids_.replacing(tr("Open model"), std::move(*imported->solids))] {
                    replace();
                    emit opened(QString::fromStdString(kit::text_of(file)), report);
                });
        }
        return Worker::Deliver([this, file, imported] { take(file, *imported); });
    });
}

void Document::take(const std::filesystem::path& file, Imported& imported) {
    if (imported.curves) {
        map_.replace(tr("Open map"), std::move(*imported.curves), std::move(imported.notes));
    }
    if (imported.solids) {
        auto added = std::make_shared<kit::Solids>(std::move(*imported.solids));
        solids_.start(tr("Add model"), [added](kit::Solids solids, const kit::Context& context) {
            solids.add(*added, context);
            return solids;
        });
    }
    emit opened(QString::fromStdString(kit::text_of(file)), imported.report);
}

} // namespace korvel::workbench
