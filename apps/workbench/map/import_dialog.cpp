#include "apps/workbench/map/import_dialog.h"

#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>

#include "apps/workbench/document/document.h"
#include "apps/workbench/document/reference_systems.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {
namespace {

// What comes of the fields.
struct ImportPreview {
    QString text;
    bool can_take = false;
    MapSource source = {};
    std::vector<SystemChoice> systems = {}; // to transform to
};

// Reads the file with each change of a field, in the worker.
class ImportDialog : public QDialog {
public:
    ImportDialog(MapView& view, std::filesystem::path file);

private:
    QWidget* fields();
    QLineEdit* add_field(QFormLayout& form, const char* name, const char* usual);
    QComboBox* add_list(QFormLayout& form, const char* name, const char* usual);
    QWidget* scrolled(QWidget* fields);
    std::optional<ImportOptions> options() const;
    std::string chosen_system() const;
    void follow();
    void show_preview(const ImportPreview& preview);
    void show_layers(const std::vector<std::string>& layers);
    void show_systems(const std::vector<SystemChoice>& systems);
    void take();

    MapView& view_;
    std::filesystem::path file_;
    QComboBox* layer_ = nullptr;
    QLineEdit* where_ = nullptr;
    QLineEdit* reference_ = nullptr;
    QComboBox* project_ = nullptr;
    QLineEdit* step_ = nullptr;
    std::array<QLineEdit*, 2> origin_ = {};
    QLabel* preview_ = nullptr;
    QPushButton* ok_ = nullptr;
    std::vector<SystemChoice> systems_; // in the list of `project_`
    int asked_ = 0;                     // previews, of which the last is shown
};

QString in_import_dialog(const char* source);
ImportPreview preview_of(const std::filesystem::path& file, const ImportOptions& options,
                         const kit::Context& context);
QString description(const Imported& imported);
QString shift_text(double shift);

} // namespace

void import_map(MapView& view) {
    const QString file = QFileDialog::getOpenFileName(&view, in_import_dialog("Import Map"));
    if (!file.isEmpty()) {
        open_import_dialog(view, kit::path_of(file.toStdString()));
    }
}

void open_import_dialog(MapView& view, const std::filesystem::path& file) {
    auto* dialog = new ImportDialog(view, file);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

namespace {

ImportDialog::ImportDialog(MapView& view, std::filesystem::path file)
    : QDialog(&view), view_(view), file_(std::move(file)), preview_(new QLabel) {
    constexpr int lines_of_preview = 5;
    setObjectName(QStringLiteral("import"));
    setWindowTitle(in_import_dialog("Import Map"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QString::fromStdString(kit::text_of(file_.filename()))));
    layout->addWidget(scrolled(fields()), 1);
    preview_->setObjectName(QStringLiteral("preview"));
    preview_->setAccessibleName(in_import_dialog("What is imported"));
    preview_->setWordWrap(true);
    preview_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    preview_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    preview_->setMinimumHeight(lines_of_preview * fontMetrics().lineSpacing());
    layout->addWidget(preview_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    ok_ = buttons->button(QDialogButtonBox::Ok);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(this, &QDialog::accepted, this, &ImportDialog::take);
    resize(sizeHint().boundedTo(view_.window()->size()));
    follow();
}

QWidget* ImportDialog::fields() {
    auto* widget = new QWidget;
    auto* form = new QFormLayout(widget);
    form->setContentsMargins({});
    layer_ = add_list(*form, "&Layer:", "the first one");
    where_ = add_field(*form, "&Condition:", "all features");
    reference_ = add_field(*form, "&Reference system:", "not known");
    reference_->setToolTip(in_import_dialog(
        "The system that the coordinates of the file are in, such as EPSG:4326; what is typed here "
        "counts instead of what the file names"));
    project_ = add_list(*form, "&Transform to:", "not transformed");
    project_->setToolTip(in_import_dialog("The system that coordinates are transformed to, such as "
                                          "EPSG:3857; the grid is one of this system"));
    step_ = add_field(*form, "Grid &step:", "as fine as the coordinates");
    origin_ = {add_field(*form, "Origin &x:", "chosen by the coordinates"),
               add_field(*form, "Origin &y:", "chosen by the coordinates")};
    return widget;
}

QLineEdit* ImportDialog::add_field(QFormLayout& form, const char* name, const char* usual) {
    auto* field = new QLineEdit;
    field->setObjectName(QString::fromUtf8(name).remove(QLatin1Char('&')));
    field->setPlaceholderText(in_import_dialog(usual));
    form.addRow(in_import_dialog(name), field);
    connect(field, &QLineEdit::textChanged, this, &ImportDialog::follow);
    return field;
}

// One that takes also what is not in the list.
QComboBox* ImportDialog::add_list(QFormLayout& form, const char* name, const char* usual) {
    constexpr int least_characters = 36;
    auto* list = new QComboBox;
    list->setObjectName(QString::fromUtf8(name).remove(QLatin1Char('&')));
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    list->setCompleter(nullptr);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(least_characters);
    list->lineEdit()->setPlaceholderText(in_import_dialog(usual));
    list->lineEdit()->setClearButtonEnabled(true);
    form.addRow(in_import_dialog(name), list);
    connect(list, &QComboBox::editTextChanged, this, &ImportDialog::follow);
    return list;
}

// With a bar where the window is too low for all fields, but never for their width.
QWidget* ImportDialog::scrolled(QWidget* fields) {
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(fields);
    area->setMinimumWidth(fields->minimumSizeHint().width() +
                          area->verticalScrollBar()->sizeHint().width());
    return area;
}

// Nothing for a step that is none, or an origin of which one coordinate is no number.
std::optional<ImportOptions> ImportDialog::options() const {
    ImportOptions options;
    options.features.layer = layer_->currentText().toStdString();
    options.features.where = where_->text().toStdString();
    if (reference_->isModified()) {
        options.reference = reference_->text().trimmed().toStdString();
    }
    options.project = chosen_system();
    if (const QString step = step_->text().trimmed(); !step.isEmpty()) {
        options.grid.step = kit::Grid::parse(step.toStdString());
        if (!options.grid.step) {
            return std::nullopt;
        }
    }
    if (!origin_[0]->text().isEmpty() || !origin_[1]->text().isEmpty()) {
        std::array<bool, 2> are_numbers = {};
        const kit::Point2 origin = {origin_[0]->text().toDouble(&are_numbers[0]),
                                    origin_[1]->text().toDouble(&are_numbers[1])};
        if (!are_numbers[0] || !are_numbers[1] || !std::isfinite(origin[0] + origin[1])) {
            return std::nullopt;
        }
        options.grid.origin = origin;
    }
    return options;
}

// What was chosen in the list is shown by its name.
std::string ImportDialog::chosen_system() const {
    std::string text = project_->currentText().trimmed().toStdString();
    for (const SystemChoice& choice : systems_) {
        if (choice.name == text) {
            return choice.reference;
        }
    }
    return text;
}

void ImportDialog::follow() {
    ok_->setEnabled(false);
    const int asked = ++asked_;
    const auto options = this->options();
    if (!options) {
        preview_->setText(in_import_dialog("The step has to be a number above 0, such as 0.01 or "
                                           "1/3600, and the origin two numbers."));
        return;
    }
    preview_->setText(in_import_dialog("Reading…"));
    const auto show = [asked, dialog = QPointer<ImportDialog>(this)](const ImportPreview& preview) {
        if (dialog != nullptr && dialog->asked_ == asked) {
            dialog->show_preview(preview);
        }
    };
    view_.document().worker().follow(
        "import", [show, file = file_, options = *options](const kit::Context& context) {
            return [show, preview = preview_of(file, options, context)] { show(preview); };
        });
}

void ImportDialog::show_preview(const ImportPreview& preview) {
    preview_->setText(preview.text);
    ok_->setEnabled(preview.can_take);
    if (preview.source.is_read) {
        show_layers(preview.source.layers);
        if (!reference_->isModified()) {
            const QSignalBlocker blocker(reference_);
            reference_->setText(QString::fromStdString(preview.source.reference));
            reference_->setCursorPosition(0);
        }
        show_systems(preview.systems);
    }
}

void ImportDialog::show_layers(const std::vector<std::string>& layers) {
    if (layer_->count() != static_cast<int>(layers.size())) {
        const QSignalBlocker blocker(layer_);
        const QString text = layer_->currentText();
        layer_->clear();
        for (const std::string& layer : layers) {
            layer_->addItem(QString::fromStdString(layer));
        }
        layer_->setCurrentIndex(-1);
        layer_->setEditText(text);
    }
}

void ImportDialog::show_systems(const std::vector<SystemChoice>& systems) {
    if (systems == systems_) {
        return;
    }
    const QSignalBlocker blocker(project_);
    const QString system = QString::fromStdString(chosen_system());
    QString text = project_->currentText();
    const bool was_in_list = text.trimmed() != system;
    text = was_in_list ? system : text;
    systems_ = systems;
    project_->clear();
    for (const SystemChoice& choice : systems_) {
        const QString name = QString::fromStdString(choice.name);
        project_->addItem(name);
        if (was_in_list && system == QString::fromStdString(choice.reference)) {
            text = name;
        }
    }
    project_->setCurrentIndex(-1);
    project_->setEditText(text);
}

void ImportDialog::take() {
    if (const auto options = this->options()) {
        view_.document().open(file_, *options);
    }
}

QString in_import_dialog(const char* source) {
    return QCoreApplication::translate("ImportDialog", source);
}

ImportPreview preview_of(const std::filesystem::path& file, const ImportOptions& options,
                         const kit::Context& context) {
    ImportPreview preview;
    MapSource& source = preview.source;
    try {
        const Imported imported = import_file(file, options, context, source);
        preview.can_take = imported.curves.has_value();
        preview.text = preview.can_take
                           ? description(imported)
                           : in_import_dialog("The file contains no map: %1").arg(imported.report);
    } catch (const kit::Error& error) {
        preview.text = QString::fromUtf8(error.what());
    }
    preview.systems = usual_systems(
        options.reference.empty() ? source.reference : options.reference, source.bounds);
    return preview;
}

QString description(const Imported& imported) {
    const auto number = [](double value) {
        return QString::fromStdString(kit::number_text(value));
    };
    const kit::Placement& placement = imported.curves->placement();
    const kit::Rectangle box = imported.curves->bounds();
    QStringList lines = {imported.report,
                         in_import_dialog("Grid: step %1 from %2, %3; %4")
                             .arg(QString::fromStdString(placement.grid.step_text()),
                                  number(placement.grid.origin()[0]),
                                  number(placement.grid.origin()[1]),
                                  shift_text(imported.largest_shift))};
    if (!box.is_empty()) {
        lines.append(
            in_import_dialog("x from %1 to %2, y from %3 to %4")
                .arg(number(box.left), number(box.right), number(box.top), number(box.bottom)));
    }
    if (!placement.reference.empty()) {
        lines.append(
            in_import_dialog("Reference system: %1").arg(shown_reference(placement.reference)));
    }
    return lines.join(QLatin1Char('\n'));
}

QString shift_text(double shift) {
    constexpr int digits = 2;
    return shift == 0 ? in_import_dialog("no point moves to it")
                      : in_import_dialog("points move to it by up to %1")
                            .arg(QString::number(shift, 'g', digits));
}

} // namespace
} // namespace korvel::workbench
