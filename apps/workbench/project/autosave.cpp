#include "apps/workbench/project/autosave.h"

#include <algorithm>
#include <exception>
#include <utility>

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>
#include <QUuid>

#include "apps/workbench/document/document.h"
#include "apps/workbench/project/project_store.h"

namespace korvel::workbench {
namespace {

constexpr const char* suffix = ".korvel";

QString text_of(const std::filesystem::path& file);
QString base_name(const std::filesystem::path& file);
std::unique_ptr<QLockFile> lock_of(const std::filesystem::path& folder, const QString& name);

} // namespace

std::filesystem::path Autosave::usual_folder() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return kit::path_of((folder + QStringLiteral("/unsaved")).toStdString());
}

Autosave::Autosave(Document& document, ProjectStore& store, std::filesystem::path folder,
                   QObject* parent)
    : QObject(parent), document_(document), store_(store), folder_(std::move(folder)) {
    writer_.setMaxThreadCount(1);
    timer_.setSingleShot(true);
    timer_.setInterval(milliseconds);
    connect(&timer_, &QTimer::timeout, this, &Autosave::keep);
    connect(&store_, &ProjectStore::opened, this, &Autosave::adopt);
    connect(&document_.history(), &History::changed, this, &Autosave::follow_history);
}

Autosave::~Autosave() {
    disconnect(&document_.history(), nullptr, this, nullptr);
    forget();
    writer_.waitForDone();
}

// The first change after the last file starts the clock, so that no change waits longer.
void Autosave::follow_history() {
    if (document_.history().is_saved()) {
        timer_.stop();
        forget();
    } else if (!timer_.isActive()) {
        timer_.start();
    }
}

// The worker takes the solids between two cuts; packing them would keep the next cut waiting, and
// is done beside it. While an operation runs, they are taken beside it too: the solids do not
// change meanwhile, but the map may.
void Autosave::keep() {
    if (!lock_ && !lock(QUuid::createUuid().toString(QUuid::WithoutBraces))) {
        return;
    }
    Project project = store_.snapshot();
    project.saved_as = kit::text_of(store_.file());
    if (document_.worker().is_busy()) {
        write([project, worked = document_.solids().worked()]() mutable {
            project.solids = worked->with(
                [](kit::SolidsEditor& editor) { return kit::stored(editor.solids()); });
            return std::move(project);
        });
    }
    document_.solids().follow(
        "autosave",
        [this, project = std::make_shared<Project>(std::move(project)),
         generation = wanted_->load()](kit::SolidsEditor& editor, const kit::Context& /*context*/) {
            project->solids = kit::stored(editor.solids());
            return [this, project, generation] {
                if (*wanted_ == generation) {
                    write([project] { return std::move(*project); });
                }
            };
        });
}

// One file at a time.
void Autosave::write(std::function<Project()> project) {
    writer_.start([this, project = std::move(project), generation = wanted_->load(),
                   wanted = wanted_, file = own_file()]() {
        if (*wanted != generation) {
            return;
        }
        try {
            write_project(project(), file);
            has_failed_ = false;
        } catch (const std::exception& error) {
            report(QString::fromUtf8(error.what()));
        }
    });
}

// Once, not every few seconds.
void Autosave::report(const QString& message) {
    if (!has_failed_.exchange(true)) {
        QMetaObject::invokeMethod(this, [this, message] { emit failed(message); });
    }
}

// After what is being written.
void Autosave::forget() {
    ++*wanted_;
    if (lock_) {
        writer_.start([file = own_file(), lock = std::shared_ptr<QLockFile>(std::move(lock_))] {
            QFile::remove(text_of(file));
            lock->unlock();
        });
    }
}

std::vector<KeptProject> Autosave::kept() const {
    std::vector<KeptProject> kept;
    const QDir folder(text_of(folder_));
    const QFileInfoList files =
        folder.entryInfoList({QStringLiteral("*") + suffix}, QDir::Files, QDir::Time);
    for (const QFileInfo& file : files) {
        const auto lock = lock_of(folder_, file.completeBaseName());
        if (lock->tryLock()) { // released at once
            kept.push_back(
                {kit::path_of(file.absoluteFilePath().toStdString()), file.lastModified()});
        }
    }
    return kept;
}

void Autosave::recover(const KeptProject& kept) {
    auto lock = lock_of(folder_, base_name(kept.file));
    if (lock->tryLock()) {
        recovered_ = kept.file;
        recovered_lock_ = std::move(lock);
        store_.recover(kept.file);
    }
}

// The file is the own one from now on; what could not be opened stays where it is.
void Autosave::adopt(const QString& opened) {
    if (recovered_lock_ && opened == text_of(recovered_)) {
        forget();
        name_ = base_name(recovered_);
        lock_ = std::move(recovered_lock_);
    }
}

void Autosave::discard(const KeptProject& kept) {
    QFile::remove(text_of(kept.file));
}

std::filesystem::path Autosave::own_file() const {
    return folder_ / kit::path_of((name_ + suffix).toStdString());
}

bool Autosave::lock(const QString& name) {
    if (!QDir().mkpath(text_of(folder_))) {
        report(tr("The folder %1 for unsaved projects cannot be made.").arg(text_of(folder_)));
        return false;
    }
    auto lock = lock_of(folder_, name);
    if (!lock->tryLock()) {
        report(tr("The folder %1 for unsaved projects cannot be written.").arg(text_of(folder_)));
        return false;
    }
    name_ = name;
    lock_ = std::move(lock);
    return true;
}

namespace {

QString text_of(const std::filesystem::path& file) {
    return QString::fromStdString(kit::text_of(file));
}

QString base_name(const std::filesystem::path& file) {
    return QFileInfo(text_of(file)).completeBaseName();
}

// It is stale only if its program has ended.
std::unique_ptr<QLockFile> lock_of(const std::filesystem::path& folder, const QString& name) {
    auto lock =
        std::make_unique<QLockFile>(QDir(text_of(folder)).filePath(name + QStringLiteral(".lock")));
    lock->setStaleLockTime(0);
    return lock;
}

} // namespace
} // namespace korvel::workbench
