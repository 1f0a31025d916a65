#pragma once

#include <filesystem>
#include <functional>

#include <QObject>
#include <QPointer>

#include "apps/workbench/actions/menus.h"
#include "apps/workbench/project/autosave.h"
#include "apps/workbench/project/project_store.h"

class QMainWindow;

namespace korvel::workbench {

class Document;

/// The actions of the menu File that concern the document as a whole: new, open, save, recent
/// files, and the questions before work is lost.
class FileActions : public QObject {
    Q_OBJECT

public:
    /// What is not saved is kept in `folder` for the case of a crash.
    FileActions(Document& document, QMainWindow& window, const std::filesystem::path& folder);

    void add_actions(const Menus& menus);

    ProjectStore& store() { return store_; }
    Autosave& autosave() { return autosave_; }

    /// A project is opened in place of the document, after a question if that is not saved.
    void open_project(const std::filesystem::path& file);

    void start_anew();

    /// Saves into the file of the document, or asks for one. False if the user gave none.
    bool save();
    bool save_as();

    /// Whether the document may be left: it is saved, or the user saves it now or gives it up.
    bool may_leave();

    /// Offers what was left by a crash.
    void offer_kept();

    /// Puts a file first in the list of recent ones.
    void add_recent(const std::filesystem::path& file);

signals:
    /// A recent file was chosen that is no project.
    void import_requested(const QString& file);

private:
    void show_recent();
    void show_title();

    Document& document_;
    QMainWindow& window_;
    ProjectStore store_;
    Autosave autosave_;
    QPointer<QMenu> recent_;
};

} // namespace korvel::workbench
