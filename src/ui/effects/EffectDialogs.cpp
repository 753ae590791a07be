#include "EffectDialogs.h"

#include "widgets/Alerts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>

namespace {
QString spoken(QString caption) {
    return caption.endsWith(u':') ? caption.chopped(1) : caption;
}

// Wide enough for the longest text the label can show, so nothing moves as the slider does.
int labelWidth(const QLabel* label, const Parameter& p) {
    const QFontMetrics metrics = label->fontMetrics();
    int width = metrics.horizontalAdvance(QStringLiteral("00.00"));
    for (int position : {p.minimum, p.maximum})
        width = std::max(width, metrics.horizontalAdvance(p.labelText(position)));
    return width;
}
} // namespace

EffectDialog::EffectDialog(const DialogDeclaration& declaration, QWidget* parent)
    : ParameterDialog(parent), m_declaration(declaration), m_values(startValues(m_declaration)) {
    setObjectName(m_declaration.name);
    setWindowTitle(m_declaration.title);
    if (!m_declaration.question.isEmpty()) {
        auto* question = new QLabel(m_declaration.question, this);
        question->setObjectName(QStringLiteral("labelMessage"));
        question->setWordWrap(true);
        question->setMinimumWidth(question->fontMetrics().averageCharWidth() * 48);
        form()->addRow(question);
    }
    QGridLayout* bands = nullptr;
    for (const Parameter& p : m_declaration.parameters)
        addRow(p, bands);
    linkPresets();
    labelPreview = new QLabel(this);
    labelPreview->setObjectName(QStringLiteral("labelPreview"));
    labelPreview->setWordWrap(true);
    labelPreview->hide();
    form()->addRow(labelPreview);
    buttonPreview = buttonBox()->addButton(tr("&Preview"), QDialogButtonBox::ActionRole);
    buttonPreview->setObjectName(QStringLiteral("buttonPreview"));
    buttonPreview->setAutoDefault(false);
    buttonPreview->setToolTip(
        tr("Hear the effect on the selection, or on ten seconds from the play position"));
    buttonPreview->hide();
}

void EffectDialog::showPreviewButton() {
    buttonPreview->show();
}

void EffectDialog::showPreviewLine(const QString& text) {
    labelPreview->setText(text);
    labelPreview->setVisible(!text.isEmpty());
}

void EffectDialog::addRow(const Parameter& p, QGridLayout*& bands) {
    Row row{&p};
    if (p.kind == ControlKind::Slider || p.kind == ControlKind::Band) {
        const bool band = p.kind == ControlKind::Band;
        row.slider = new QSlider(band ? Qt::Vertical : Qt::Horizontal, this);
        row.slider->setObjectName(p.widgetName());
        row.slider->setRange(p.minimum, p.maximum);
        row.slider->setValue(p.start);
        if (p.step > 0)
            row.slider->setSingleStep(p.step);
        if (p.page > 0)
            row.slider->setPageStep(p.page);
        row.slider->setAccessibleName(spoken(p.caption) + (band ? u' ' + p.text : QString()));
        row.label = new QLabel(this);
        row.label->setObjectName(p.labelName());
        row.label->setMinimumWidth(labelWidth(row.label, p));
        const auto index = m_rows.size();
        connect(row.slider, &QSlider::valueChanged, this, [this, index] {
            showValue(m_rows[index]);
            emit valuesEdited();
        });
        if (band) {
            // A row of bands side by side, each named underneath.
            if (!bands) {
                bands = new QGridLayout;
                bands->setHorizontalSpacing(4);
                form()->addRow(p.caption, bands);
            }
            row.slider->setMinimumHeight(140);
            row.slider->setTickPosition(QSlider::TicksBothSides);
            row.slider->setTickInterval(std::max(1, (p.maximum - p.minimum) / 4));
            row.label->setAlignment(Qt::AlignCenter);
            auto* name = new QLabel(p.text, this);
            name->setAlignment(Qt::AlignCenter);
            const int column = bands->count() / 3; // a value, a slider and a name per band
            bands->addWidget(row.label, 0, column, Qt::AlignHCenter);
            bands->addWidget(row.slider, 1, column, Qt::AlignHCenter);
            bands->addWidget(name, 2, column, Qt::AlignHCenter);
        } else {
            row.slider->setMinimumWidth(240);
            auto* line = new QHBoxLayout;
            line->addWidget(row.slider);
            line->addWidget(row.label);
            form()->addRow(p.caption, line);
        }
        showValue(row);
    } else if (p.kind == ControlKind::Text) {
        row.field = new QLineEdit(p.text, this);
        row.field->setObjectName(p.widgetName());
        connect(row.field, &QLineEdit::textEdited, this, &EffectDialog::valuesEdited);
        form()->addRow(p.caption, row.field);
    } else if (p.kind == ControlKind::List) {
        row.list = new QComboBox(this);
        row.list->setObjectName(p.widgetName());
        row.list->addItems(p.items);
        row.list->setCurrentIndex(p.start);
        connect(row.list, &QComboBox::activated, this, &EffectDialog::valuesEdited);
        form()->addRow(p.caption, row.list);
    } else {
        row.check = new QCheckBox(spoken(p.caption), this);
        row.check->setObjectName(p.widgetName());
        row.check->setChecked(p.start != 0);
        connect(row.check, &QCheckBox::toggled, this, &EffectDialog::valuesEdited);
        form()->addRow(QString(), row.check);
    }
    if (p.kind != ControlKind::Band)
        bands = nullptr;
    m_rows.push_back(row);
}

void EffectDialog::linkPresets() {
    for (const Row& presets : m_rows) {
        const Parameter& p = *presets.parameter;
        if (!presets.list || p.presetsFor.isEmpty())
            continue;
        const auto target = std::find_if(m_rows.cbegin(), m_rows.cend(), [&](const Row& row) {
            return row.slider && row.parameter->key == p.presetsFor;
        });
        if (target == m_rows.cend())
            continue;
        QComboBox* list = presets.list;
        QSlider* slider = target->slider;
        connect(list, &QComboBox::activated, slider, [list, slider, positions = p.presetPositions] {
            if (list->currentIndex() < positions.size())
                slider->setValue(positions[list->currentIndex()]);
        });
        connect(slider, &QSlider::valueChanged, list, [list, slider, positions = p.presetPositions] {
            const auto index = positions.indexOf(slider->value());
            list->setCurrentIndex(index >= 0 ? int(index) : list->count() - 1);
        });
    }
}

void EffectDialog::showValue(const Row& row) {
    row.label->setText(row.parameter->labelText(row.slider->value()));
}

bool EffectDialog::runChangeAction(const QString& action) {
    for (const Row& row : m_rows)
        if (row.slider && row.parameter->actionName() == action) {
            showValue(row);
            return true;
        }
    return false;
}

EffectValues::Number EffectDialog::read(const Row& row) const {
    const Parameter& p = *row.parameter;
    if (row.slider)
        return p.read(row.label->text(), row.slider->value());
    if (row.field)
        return p.read(row.field->text(), 0);
    if (row.list)
        return p.read({}, row.list->currentIndex());
    return p.read({}, row.check->isChecked() ? 1 : 0);
}

EffectValues EffectDialog::currentValues() const {
    EffectValues values;
    for (const Row& row : m_rows)
        values.set(row.parameter->key, read(row));
    return values;
}

QString EffectDialog::validate() {
    m_values = currentValues();
    return refusal(m_declaration, m_values);
}

QString EffectDialog::refusalNow() const {
    return refusal(m_declaration, currentValues());
}

std::optional<EffectValues> EffectDialog::checkedValues() {
    const EffectValues values = currentValues();
    if (const QString problem = refusal(m_declaration, values); !problem.isEmpty()) {
        showErrorAlert(this, problem);
        return std::nullopt;
    }
    return values;
}

std::unique_ptr<EffectDialog> makeEffectDialog(const DialogDeclaration& declaration, QWidget* parent) {
    return std::make_unique<EffectDialog>(declaration, parent);
}

std::unique_ptr<EffectDialog> makeEffectDialog(const QString& name, QWidget* parent) {
    const DialogDeclaration* declaration = findDialog(name);
    return declaration ? makeEffectDialog(*declaration, parent) : nullptr;
}
