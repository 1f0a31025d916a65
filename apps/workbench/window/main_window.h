#pragma once

#include <filesystem>
#include <functional>
#include <utility>

#include <QMainWindow>

#include "apps/workbench/actions/menus.h"
#include "apps/workbench/document/document.h"
#include "apps/workbench/window/file_actions.h"

class QLabel;
class QProgressBar;
class QSplitter;
class QToolButton;

namespace korvel::workbench {

class ExportActions;
class MapView;
class SectionView;
class SolidView;

/// The window of the program: a document, its three views, and the menus with every action.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// What is not saved is kept in a folder for the case of a crash.
    explicit MainWindow(const std::filesystem::path& autosave = Autosave::usual_folder());
    ~MainWindow() override;

    Document& document() { return document_; }
    MapView& map_view() { return *map_view_; }
    SolidView& solid_view() { return *solid_view_; }
    SectionView& section_view() { return *section_view_; }
    FileActions& file_actions() { return file_actions_; }
    ExportActions& export_actions() { return *export_actions_; }

    void open(const std::filesystem::path& file);

    /// Receives what the user has to know of failures, instead of a message box.
    using ProblemHandler = std::function<void(const QString& title, const QString& message)>;
    void set_problem_handler(ProblemHandler handler) { on_problem_ = std::move(handler); }

protected:
    void childEvent(QChildEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void add_views();
    void add_docks();
    void add_menus();
    void add_file_actions();
    void add_edit_actions();
    void add_view_actions();
    QAction* add_view_action(const QString& text, QWidget& view, Qt::Key key);
    void show_views_in_use();
    void add_help_actions();
    void add_samples();
    void edit_preferences();
    void show_about();
    void add_status_bar();
    void connect_worker();
    void open_with_dialog(bool adds);
    void update_history();
    void report_problem(const QString& title, const QString& message);

    ProblemHandler on_problem_;
    Document document_;
    FileActions file_actions_;
    Menus menus_;
    QSplitter* views_ = nullptr;
    MapView* map_view_ = nullptr;
    SolidView* solid_view_ = nullptr;
    SectionView* section_view_ = nullptr;
    ExportActions* export_actions_ = nullptr;
    QAction* map_shown_ = nullptr;
    QAction* solids_shown_ = nullptr;
    QAction* section_shown_ = nullptr;
    bool has_shown_map_ = false;
    bool has_shown_solids_ = false;
    bool has_shown_section_ = false;
    QAction* undo_ = nullptr;
    QAction* redo_ = nullptr;
    QLabel* hint_ = nullptr;
    QLabel* position_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QToolButton* cancel_ = nullptr;
};

} // namespace korvel::workbench
