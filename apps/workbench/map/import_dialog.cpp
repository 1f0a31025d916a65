#include "apps/workbench/map/import_dialog.h"

#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {
namespace {

// Reads the file with each change of a field, in the worker.
class ImportDialog : public QDialog {
public:
    ImportDialog(MapView& view, std::filesystem::path file);

private:
    QLineEdit* add_field(QFormLayout& form, const char* name, const char* usual);
    std::optional<ImportOptions> options() const;
    void follow();
    void take();

    MapView& view_;
    std::filesystem::path file_;
    QLineEdit* step_ = nullptr;
    std::array<QLineEdit*, 2> origin_ = {};
    QLineEdit* layer_ = nullptr;
    QLineEdit* where_ = nullptr;
    QLabel* preview_ = nullptr;
    QPushButton* ok_ = nullptr;
};

QString in_import_dialog(const char* source);
QString description(const Imported& imported);

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
    constexpr int least_width = 420;
    setObjectName(QStringLiteral("import"));
    setWindowTitle(in_import_dialog("Import Map"));
    setMinimumWidth(least_width);
    auto* form = new QFormLayout(this);
    form->addRow(new QLabel(QString::fromStdString(kit::text_of(file_.filename()))));
    step_ = add_field(*form, "Grid &step:", "as fine as the coordinates");
    origin_ = {add_field(*form, "Origin &x:", "chosen by the coordinates"),
               add_field(*form, "Origin &y:", "chosen by the coordinates")};
    layer_ = add_field(*form, "&Layer:", "the first one");
    where_ = add_field(*form, "&Condition:", "all features");
    preview_->setObjectName(QStringLiteral("preview"));
    preview_->setWordWrap(true);
    form->addRow(preview_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    ok_ = buttons->button(QDialogButtonBox::Ok);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(this, &QDialog::accepted, this, &ImportDialog::take);
    follow();
}

QLineEdit* ImportDialog::add_field(QFormLayout& form, const char* name, const char* usual) {
    auto* field = new QLineEdit;
    field->setObjectName(QString::fromUtf8(name).remove(QLatin1Char('&')));
    field->setPlaceholderText(in_import_dialog(usual));
    form.addRow(in_import_dialog(name), field);
    connect(field, &QLineEdit::textChanged, this, &ImportDialog::follow);
    return field;
}

// Nothing for a step that is none, or an origin of which one coordinate is no number.
std::optional<ImportOptions> ImportDialog::options() const {
    ImportOptions options;
    options.features.layer = layer_->text().toStdString();
    options.features.where = where_->text().toStdString();
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

void ImportDialog::follow() {
    ok_->setEnabled(false);
    const auto options = this->options();
    if (!options) {
        preview_->setText(in_import_dialog("The step has to be a number above 0, such as 0.01 or "
                                           "1/3600, and the origin two numbers."));
        return;
    }
    preview_->setText(in_import_dialog("Reading…"));
    const auto show = [dialog = QPointer<ImportDialog>(this)](const QString& text, bool can_take) {
        if (dialog != nullptr) {
            dialog->preview_->setText(text);
            dialog->ok_->setEnabled(can_take);
        }
    };
    view_.document().worker().follow(
        "import", [show, file = file_, options = *options](const kit::Context& context) {
            QString text;
            bool can_take = false;
            try {
                const Imported imported = import_file(file, options, context);
                text = description(imported);
                can_take = imported.curves.has_value();
            } catch (const kit::Error& error) {
                text = QString::fromUtf8(error.what());
            }
            return [show, text, can_take] { show(text, can_take); };
        });
}

void ImportDialog::take() {
    if (const auto options = this->options()) {
        view_.document().open(file_, *options);
    }
}

QString in_import_dialog(const char* source) {
    return QCoreApplication::translate("ImportDialog", source);
}

QString description(const Imported& imported) {
    if (!imported.curves) {
        return in_import_dialog("The file contains no map: %1").arg(imported.report);
    }
    const auto number = [](double value) {
        return QString::fromStdString(kit::number_text(value));
    };
    const kit::Placement& placement = imported.curves->placement();
    const kit::Rectangle box = imported.curves->bounds();
    QStringList lines = {imported.report,
                         in_import_dialog("Grid: step %1 from %2, %3")
                             .arg(QString::fromStdString(placement.grid.step_text()),
                                  number(placement.grid.origin()[0]),
                                  number(placement.grid.origin()[1]))};
    if (!box.is_empty()) {
        lines.append(
            in_import_dialog("x from %1 to %2, y from %3 to %4")
                .arg(number(box.left), number(box.right), number(box.top), number(box.bottom)));
    }
    if (!placement.reference.empty()) {
        constexpr qsizetype most = 60;
        lines.append(in_import_dialog("Reference system: %1")
                         .arg(QString::fromStdString(placement.reference).left(most)));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace
} // namespace korvel::workbench
