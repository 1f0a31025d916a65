#pragma once

#include <filesystem>

#include <QMainWindow>

#include "apps/workbench/actions/menus.h"
#include "apps/workbench/document/document.h"

class QLabel;
class QProgressBar;
class QSplitter;
class QToolButton;

namespace korvel::workbench {

class MapView;
class SectionView;
class SolidView;

/// The window of the program: a document, its three views, and the menus with every action.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    MainWindow();

    Document& document() { return document_; }
    MapView& map_view() { return *map_view_; }
    SolidView& solid_view() { return *solid_view_; }
    SectionView& section_view() { return *section_view_; }

    void open(const std::filesystem::path& file);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void add_views();
    void add_menus();
    void add_file_actions();
    void add_edit_actions();
    void add_view_actions();
    void add_status_bar();
    void connect_worker();
    void open_with_dialog(bool adds);
    void update_history();

    Document document_;
    Menus menus_;
    QSplitter* views_ = nullptr;
    MapView* map_view_ = nullptr;
    SolidView* solid_view_ = nullptr;
    SectionView* section_view_ = nullptr;
    QAction* undo_ = nullptr;
    QAction* redo_ = nullptr;
    QLabel* hint_ = nullptr;
    QLabel* position_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QToolButton* cancel_ = nullptr;
};

} // namespace korvel::workbench
