#include "apps/workbench/window/main_window.h"

#include <algorithm>

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QToolButton>
#include <QUrl>

#include "apps/workbench/map/map_view.h"
#include "apps/workbench/section/section_view.h"
#include "apps/workbench/solid/solid_view.h"
#include "apps/workbench/window/export_actions.h"
#include "apps/workbench/window/hint_label.h"
#include "apps/workbench/window/preferences.h"
#include "apps/workbench/window/samples.h"

namespace korvel::workbench {

MainWindow::MainWindow(const std::filesystem::path& autosave)
    : file_actions_(document_, *this, autosave) {
    setAcceptDrops(true);
    add_views();
    add_menus();
    add_status_bar();
    connect_worker();
    document_.history().set_memory_limit(Preferences::load().undo_memory);
    update_history();
}

// With the document still there: fields that lose the focus with the window ask it.
MainWindow::~MainWindow() {
    hide();
    for (const auto& docks : {map_view_->docks(), solid_view_->docks(), section_view_->docks()}) {
        qDeleteAll(docks);
    }
    delete views_;
}

void MainWindow::open(const std::filesystem::path& file) {
    if (is_project_file(file)) {
        file_actions_.open_project(file);
    } else {
        document_.open(file);
    }
}

void MainWindow::add_views() {
    map_view_ = new MapView(document_);
    solid_view_ = new SolidView(document_);
    section_view_ = new SectionView(document_);
    auto* right = new QSplitter(Qt::Vertical);
    right->addWidget(solid_view_);
    right->addWidget(section_view_);
    views_ = new QSplitter(Qt::Horizontal);
    views_->addWidget(map_view_);
    views_->addWidget(right);
    setCentralWidget(views_);
    add_docks();
}

// In one column of tabs, so that the views have room in a small window.
void MainWindow::add_docks() {
    constexpr int least_width = 260;
    constexpr int greatest_width = 340; // a third of a small window
    constexpr int letters = 37;
    const int width =
        std::clamp(letters * fontMetrics().averageCharWidth(), least_width, greatest_width);
    setTabPosition(Qt::LeftDockWidgetArea, QTabWidget::West);
    QDockWidget* first = map_view_->docks().front();
    addDockWidget(Qt::LeftDockWidgetArea, first);
    QDockWidget* last = first;
    const auto add = [&](const auto& docks) {
        for (QDockWidget* dock : docks) {
            if (dock != first) {
                tabifyDockWidget(last, dock);
                last = dock;
            }
        }
    };
    add(map_view_->docks());
    add(solid_view_->docks());
    add(section_view_->docks());
    first->raise();
    resizeDocks({first}, {width}, Qt::Horizontal);
}

// The tabs of lists keep their whole names; those without room are reached by the arrows.
void MainWindow::childEvent(QChildEvent* event) {
    if (auto* tabs = qobject_cast<QTabBar*>(event->child()); tabs != nullptr && event->polished()) {
        tabs->setElideMode(Qt::ElideNone);
        tabs->setUsesScrollButtons(true);
    }
    QMainWindow::childEvent(event);
}

void MainWindow::add_menus() {
    menus_.file = menuBar()->addMenu(tr("&File"));
    menus_.edit = menuBar()->addMenu(tr("&Edit"));
    menus_.map = menuBar()->addMenu(tr("&Map"));
    menus_.solid = menuBar()->addMenu(tr("&Solids"));
    menus_.section = menuBar()->addMenu(tr("Se&ction"));
    menus_.view = menuBar()->addMenu(tr("&View"));
    menus_.help = menuBar()->addMenu(tr("&Help"));
    menus_.tools = addToolBar(tr("Tools"));
    menus_.tools->setObjectName(QStringLiteral("tools"));
    add_file_actions();
    add_edit_actions();
    add_view_actions();
    add_help_actions();
    map_view_->add_actions(menus_);
    solid_view_->add_actions(menus_);
    section_view_->add_actions(menus_);
}

void MainWindow::add_file_actions() {
    QAction* open = menus_.file->addAction(tr("&Open…"), QKeySequence::Open, this,
                                           [this] { open_with_dialog(false); });
    menus_.file->addAction(tr("&Add Model…"), this, [this] { open_with_dialog(true); });
    add_samples();
    file_actions_.add_actions(menus_);
    export_actions_ = new ExportActions(document_, *solid_view_, *section_view_, *this);
    export_actions_->add_actions(menus_);
    connect(&file_actions_, &FileActions::import_requested, this,
            [this](const QString& file) { this->open(kit::path_of(file.toStdString())); });
    connect(&file_actions_.autosave(), &Autosave::failed, this, [this](const QString& message) {
        report_problem(tr("Unsaved work is not kept"), message);
    });
    connect(export_actions_, &ExportActions::written, this,
            [this](const QString& file) { hint_->setText(tr("Wrote %1").arg(file)); });
    menus_.file->addSeparator();
    menus_.file->addAction(tr("&Quit"), QKeySequence::Quit, this, &MainWindow::close)
        ->setMenuRole(QAction::QuitRole);
    menus_.tools->addAction(open);
}

void MainWindow::add_edit_actions() {
    History& history = document_.history();
    undo_ = menus_.edit->addAction(tr("&Undo"), QKeySequence::Undo, &history, &History::undo);
    redo_ = menus_.edit->addAction(tr("&Redo"), QKeySequence::Redo, &history, &History::redo);
    menus_.tools->addActions({undo_, redo_});
    connect(&history, &History::changed, this, &MainWindow::update_history);
    menus_.edit->addSeparator();
    QAction* preferences =
        menus_.edit->addAction(tr("&Preferences…"), this, &MainWindow::edit_preferences);
    preferences->setMenuRole(QAction::PreferencesRole);
}

void MainWindow::add_view_actions() {
    map_shown_ = add_view_action(tr("&Map"), *map_view_, Qt::Key_F5);
    solids_shown_ = add_view_action(tr("&Solids"), *solid_view_, Qt::Key_F6);
    section_shown_ = add_view_action(tr("Se&ction"), *section_view_, Qt::Key_F7);
    solids_shown_->setChecked(false);
    section_shown_->setChecked(false);
    connect(&document_.map(), &MapModel::curves_changed, this, &MainWindow::show_views_in_use);
    connect(&document_.solids(), &SolidModel::solids_changed, this, &MainWindow::show_views_in_use);
    connect(&document_.section(), &SectionModel::plane_changed, this,
            &MainWindow::show_views_in_use);
    menus_.view->addSeparator();
    QMenu* lists = menus_.view->addMenu(tr("&Lists"));
    for (const auto& docks : {map_view_->docks(), solid_view_->docks(), section_view_->docks()}) {
        for (const QDockWidget* dock : docks) {
            lists->addAction(dock->toggleViewAction());
        }
    }
}

QAction* MainWindow::add_view_action(const QString& text, QWidget& view, Qt::Key key) {
    QAction* action = menus_.view->addAction(text, QKeySequence(key));
    action->setCheckable(true);
    action->setChecked(true);
    connect(action, &QAction::toggled, &view, [this, &view](bool is_shown) {
        view.setVisible(is_shown);
        solid_view_->parentWidget()->setVisible(solids_shown_->isChecked() ||
                                                section_shown_->isChecked());
    });
    return action;
}

// A view comes into sight with the first thing that it shows; a map without curves makes room then.
// What the user shows or hides later stays so.
void MainWindow::show_views_in_use() {
    const bool has_map = !document_.map().curves().empty();
    if (!document_.solids().empty() && !has_shown_solids_) {
        has_shown_solids_ = true;
        solids_shown_->setChecked(true);
        map_shown_->setChecked(has_map);
    }
    if (has_map && !has_shown_map_) {
        has_shown_map_ = true;
        map_shown_->setChecked(true);
    }
    if (document_.section().plane() && !has_shown_section_) {
        has_shown_section_ = true;
        section_shown_->setChecked(true);
    }
}

void MainWindow::add_help_actions() {
    menus_.help->addAction(tr("&About korvel"), this, &MainWindow::show_about)
        ->setMenuRole(QAction::AboutRole);
    menus_.help->addAction(tr("About &Qt"), qApp, &QApplication::aboutQt)
        ->setMenuRole(QAction::AboutQtRole);
}

void MainWindow::add_samples() {
    const QFileInfoList files = sample_files();
    QMenu* menu = menus_.file->addMenu(tr("Open &Sample"));
    menu->setEnabled(!files.empty());
    for (const QFileInfo& file : files) {
        menu->addAction(file.fileName(), this, [this, path = file.absoluteFilePath()] {
            open(kit::path_of(path.toStdString()));
        });
    }
}

void MainWindow::add_status_bar() {
    hint_ = new HintLabel;
    position_ = new QLabel;
    progress_ = new QProgressBar;
    cancel_ = new QToolButton;
    progress_->setRange(0, 1000);
    progress_->setMaximumWidth(200);
    progress_->setAccessibleName(tr("Progress"));
    cancel_->setText(tr("Cancel"));
    progress_->hide();
    cancel_->hide();
    statusBar()->addWidget(hint_, 1);
    for (QWidget* widget : std::initializer_list<QWidget*>{position_, progress_, cancel_}) {
        statusBar()->addPermanentWidget(widget);
    }
    connect(map_view_, &MapView::hint_changed, hint_, &QLabel::setText);
    connect(solid_view_, &SolidView::hint_changed, hint_, &QLabel::setText);
    connect(map_view_, &MapView::position_changed, position_, &QLabel::setText);
    connect(solid_view_, &SolidView::position_changed, position_, &QLabel::setText);
    connect(section_view_, &SectionView::position_changed, position_, &QLabel::setText);
}

void MainWindow::connect_worker() {
    Worker& worker = document_.worker();
    connect(cancel_, &QToolButton::clicked, &worker, &Worker::cancel);
    connect(&worker, &Worker::begun, this, [this](const QString& title) {
        progress_->setValue(0);
        progress_->setFormat(title);
        progress_->show();
        cancel_->show();
    });
    connect(&worker, &Worker::progressed, this, [this](const QString& /*stage*/, double fraction) {
        progress_->setValue(static_cast<int>(fraction * progress_->maximum()));
    });
    connect(&worker, &Worker::ended, this, [this] {
        progress_->hide();
        cancel_->hide();
    });
    connect(&worker, &Worker::failed, this, &MainWindow::report_problem);
    connect(&document_.solids(), &SolidModel::refused, this, &MainWindow::report_problem);
    connect(&worker, &Worker::warned, this,
            [this](const QString& /*title*/, const QString& message) { hint_->setText(message); });
    connect(&document_, &Document::opened, this,
            [this](const QString& file, const QString& report) {
                file_actions_.add_recent(kit::path_of(file.toStdString()));
                hint_->setText(QFileInfo(file).fileName() + QStringLiteral(": ") + report);
            });
}

void MainWindow::open_with_dialog(bool adds) {
    const QString file = QFileDialog::getOpenFileName(this, tr("Open"));
    const std::filesystem::path path = kit::path_of(file.toStdString());
    if (!file.isEmpty() && is_project_file(path)) {
        open(path);
    } else if (!file.isEmpty()) {
        document_.open(path, {.adds = adds});
    }
}

void MainWindow::edit_preferences() {
    PreferencesDialog dialog(Preferences::load(), this);
    if (dialog.exec() == QDialog::Accepted) {
        const Preferences preferences = dialog.preferences();
        preferences.save();
        preferences.apply_palette();
        document_.history().set_memory_limit(preferences.undo_memory);
    }
}

void MainWindow::show_about() {
    QMessageBox::about(this, tr("About korvel"),
                       tr("korvel %1\n\nDraws curves and finds their regions, raises these to "
                          "solids, and turns, changes and cuts them.")
                           .arg(QApplication::applicationVersion()));
}

// What follows from a change has no title: a message box after each click would be in the way.
void MainWindow::report_problem(const QString& title, const QString& message) {
    if (on_problem_) {
        on_problem_(title, message);
    } else if (title.isEmpty()) {
        hint_->setText(message);
    } else {
        QMessageBox::warning(this, title, message);
    }
}

void MainWindow::update_history() {
    const History& history = document_.history();
    undo_->setEnabled(history.can_undo());
    redo_->setEnabled(history.can_redo());
    undo_->setText(tr("&Undo %1").arg(history.undo_text()));
    redo_->setText(tr("&Redo %1").arg(history.redo_text()));
    setWindowModified(!history.is_saved());
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(file_actions_.may_leave());
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile()) {
            open(kit::path_of(url.toLocalFile().toStdString()));
        }
    }
}

} // namespace korvel::workbench
