#include "apps/workbench/window/file_actions.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>

#include "apps/workbench/document/document.h"

namespace korvel::workbench {
namespace {

constexpr const char* recent_key = "recent";
constexpr int most_recent = 10;

QString text_of(const std::filesystem::path& file);

} // namespace

FileActions::FileActions(Document& document, QMainWindow& window,
                         const std::filesystem::path& folder)
    : document_(document), window_(window), store_(document), autosave_(document, store_, folder) {
    connect(&store_, &ProjectStore::file_changed, this, &FileActions::show_title);
    connect(&store_, &ProjectStore::saved, this,
            [this](const QString& file) { add_recent(kit::path_of(file.toStdString())); });
    connect(&store_, &ProjectStore::opened, this, [this] {
        if (!store_.file().empty()) {
            add_recent(store_.file());
        }
    });
    show_title();
}

void FileActions::add_actions(const Menus& menus) {
    QAction* anew =
        menus.file->addAction(tr("&New"), QKeySequence::New, this, &FileActions::start_anew);
    anew->setStatusTip(tr("Starts an empty project"));
    recent_ = menus.file->addMenu(tr("Open &Recent"));
    QAction* save =
        menus.file->addAction(tr("&Save"), QKeySequence::Save, this, &FileActions::save);
    save->setStatusTip(tr("Saves the project"));
    QAction* save_as =
        menus.file->addAction(tr("Save &As…"), QKeySequence::SaveAs, this, &FileActions::save_as);
    save_as->setStatusTip(tr("Saves the project in another file"));
    connect(recent_, &QMenu::aboutToShow, this, &FileActions::show_recent);
    menus.tools->addAction(save);
}

void FileActions::open_project(const std::filesystem::path& file) {
    if (may_leave()) {
        store_.open(file);
    }
}

void FileActions::start_anew() {
    if (may_leave()) {
        store_.clear();
    }
}

bool FileActions::save() {
    if (store_.file().empty()) {
        return save_as();
    }
    store_.save(store_.file());
    return true;
}

bool FileActions::save_as() {
    QFileDialog dialog(&window_, tr("Save"), text_of(store_.file()),
                       tr("Projects of korvel (*.korvel)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("korvel"));
    if (dialog.exec() == QDialog::Rejected || dialog.selectedFiles().isEmpty()) {
        return false;
    }
    store_.save(kit::path_of(dialog.selectedFiles().first().toStdString()));
    return true;
}

bool FileActions::may_leave() {
    if (document_.history().is_saved()) {
        return true;
    }
    const auto answer = QMessageBox::question(
        &window_, tr("Save changes?"), tr("The project has changes that are not saved."),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save && save()) {
        document_.worker().wait();
        return document_.history().is_saved();
    }
    return answer == QMessageBox::Discard;
}

void FileActions::offer_kept() {
    for (const KeptProject& kept : autosave_.kept()) {
        QMessageBox box(QMessageBox::Question, tr("Recover unsaved work?"),
                        tr("A project of %1 was not saved before the program ended.")
                            .arg(QLocale().toString(kept.time, QLocale::ShortFormat)),
                        QMessageBox::NoButton, &window_);
        const auto* recover = box.addButton(tr("&Recover"), QMessageBox::AcceptRole);
        const auto* discard = box.addButton(tr("&Delete"), QMessageBox::DestructiveRole);
        box.addButton(tr("&Later"), QMessageBox::RejectRole);
        box.exec();
        if (box.clickedButton() == recover) {
            autosave_.recover(kept);
            return;
        }
        if (box.clickedButton() == discard) {
            autosave_.discard(kept);
        }
    }
}

void FileActions::add_recent(const std::filesystem::path& file) {
    const QString name = QFileInfo(text_of(file)).absoluteFilePath();
    QSettings settings;
    QStringList files = settings.value(recent_key).toStringList();
    files.removeAll(name);
    files.prepend(name);
    settings.setValue(recent_key, QStringList(files.mid(0, most_recent)));
}

// A name may contain what would be a mnemonic.
void FileActions::show_recent() {
    recent_->clear();
    const QStringList files = QSettings().value(recent_key).toStringList();
    for (const QString& name : files) {
        QString shown = name;
        recent_->addAction(shown.replace('&', QStringLiteral("&&")), this, [this, name] {
            const std::filesystem::path file = kit::path_of(name.toStdString());
            if (is_project_file(file)) {
                open_project(file);
            } else {
                emit import_requested(name);
            }
        });
    }
    if (files.isEmpty()) {
        recent_->addAction(tr("No Files"))->setEnabled(false);
    }
}

void FileActions::show_title() {
    const QString name = store_.file().empty() ? tr("Untitled") : text_of(store_.file().filename());
    window_.setWindowTitle(name + QStringLiteral("[*] — korvel"));
}

namespace {

QString text_of(const std::filesystem::path& file) {
    return QString::fromStdString(kit::text_of(file));
}

} // namespace
} // namespace korvel::workbench
