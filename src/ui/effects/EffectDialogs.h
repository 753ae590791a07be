#pragma once

#include "effects/EffectCatalogue.h"
#include "widgets/ParameterDialog.h"

#include <memory>
#include <optional>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;

// A parameter dialog built from its declaration: one row per declared
// control, each slider's label kept up to date, OK reading every value as
// declared and running the declared checks. The dialog is named after its
// declaration ("Window_Echo"), as are its controls ("sliderGainIn").
class EffectDialog : public ParameterDialog {
    Q_OBJECT
public:
    explicit EffectDialog(const DialogDeclaration& declaration, QWidget* parent = nullptr);

    const DialogDeclaration& declaration() const { return m_declaration; }

    // The values taken by the last OK; before it, those of the start positions.
    EffectValues effectValues() const { return m_values; }

    // Runs a slider's change action by its name ("OnChangeDelay",
    // "onChangea0"): the label shows the slider's value again. False when no
    // control has an action of that name.
    bool runChangeAction(const QString& action);

    // The values as the controls hold them now, through the checks OK runs;
    // empty when refused, after the refusal was shown as OK shows it.
    std::optional<EffectValues> checkedValues();
    // The values as the controls hold them now, unchecked, and their refusal
    // (empty when they pass).
    EffectValues currentValues() const;
    QString refusalNow() const;

    // The Preview button (Alt+P) beside OK and Cancel, and the line under the
    // controls where the preview says what became of it; both hidden until a
    // preview is attached (the noise question has nothing to hear).
    QPushButton* buttonPreview = nullptr;
    QLabel* labelPreview = nullptr;
    void showPreviewButton();
    void showPreviewLine(const QString& text);

signals:
    // Any control was changed by the user or by a slider's keys.
    void valuesEdited();

protected:
    QString validate() override;

private:
    struct Row {
        const Parameter* parameter;
        QSlider* slider = nullptr;
        QLabel* label = nullptr;
        QLineEdit* field = nullptr;
        QComboBox* list = nullptr;
        QCheckBox* check = nullptr;
    };
    void addRow(const Parameter& p, QGridLayout*& bands);
    void linkPresets(); // a list of presets moves its slider, and the slider its list
    void showValue(const Row& row);
    EffectValues::Number read(const Row& row) const;

    DialogDeclaration m_declaration;
    std::vector<Row> m_rows;
    EffectValues m_values;
};

// The dialog of that declaration, or of that name ("Window_Echo"; null when
// no dialog has it).
std::unique_ptr<EffectDialog> makeEffectDialog(const DialogDeclaration& declaration,
                                               QWidget* parent = nullptr);
std::unique_ptr<EffectDialog> makeEffectDialog(const QString& name, QWidget* parent = nullptr);
