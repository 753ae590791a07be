#pragma once

// An effect dialog declared as data: one row per control, from which the
// dialog builds its widgets, its labels, its reading of the values and its
// checks. Nothing here needs a display.

#include "operations/EffectValues.h"

#include <QString>
#include <QStringList>
#include <variant>
#include <vector>

enum class ControlKind {
    Slider, // a horizontal slider with its value shown in a label beside it
    Band,   // a vertical slider of a row of bands, named underneath
    Text,   // a text field holding a number
    List,   // a pop-up list whose chosen index is the value
    Check,  // a check box: 1 when ticked
};

// One control of a dialog and the property it fills. Made with the functions
// below and refined with the modifiers, as in
//   slider("f_Speed", "Speed", "Speed (Hz):", 1, 100, 5).over(10, "%.2f")
struct Parameter {
    QString key;     // the property: "f_Speed"
    QString control; // "Speed": the widgets sliderSpeed and labelSpeed, textSpeed, comboSpeed or checkSpeed
    QString caption; // the row's caption in the form: "Speed (Hz):"; a band's name under its slider
    ControlKind kind = ControlKind::Slider;
    ValueType type = ValueType::Whole;
    int minimum = 0, maximum = 0, start = 0; // positions; a list's or a check's start is its index or state
    // The label shows "%d" of the position × times, or `format` of the position / divisor.
    QString format = QStringLiteral("%d");
    int times = 1;
    double divisor = 1;
    bool fromSlider = false; // the value is the slider's own position, not the label's text
    QString text;            // a text field's default
    QStringList items;       // a list's entries
    int step = 0, page = 0;  // a slider's single and page steps; 0 keeps the toolkit's
    QString changeAction;    // when the slider's change action is not "OnChange" + control
    QString why;             // why the range is what it is, for the reference
    // A list of presets: choosing the entry i moves the slider `presetsFor` to
    // presetPositions[i]; moving that slider chooses the entry it matches, or
    // the last ("Custom") when it matches none.
    QString presetsFor;
    QList<int> presetPositions;

    QString widgetName() const; // "sliderSpeed", "textDelayMS", "comboModulation", "checkLoop"
    QString labelName() const;  // "labelSpeed"
    QString actionName() const; // "OnChangeSpeed"
    QString labelText(int position) const;
    // The value OK takes: from the label's or the field's text, or from the position.
    EffectValues::Number read(const QString& shown, int position) const;

    Parameter over(double divisor, const char* format) const;
    Parameter timesBy(int factor) const;
    Parameter as(ValueType t) const;
    Parameter readFromSlider() const;
    Parameter steps(int single, int pageStep) const;
    Parameter action(const char* name) const;
    Parameter because(const char* reason) const;
    Parameter presetting(const char* sliderKey, QList<int> positions) const;
};

// A slider whose label shows "%d" of its position and whose value is a whole number read from that label.
Parameter slider(const char* key, const char* control, const char* caption, int minimum, int maximum,
                 int start);
// One of a row of vertical band sliders, named underneath by `name`.
Parameter band(const char* key, const char* control, const char* caption, const char* name, int minimum,
               int maximum, int start);
Parameter textField(const char* key, const char* control, const char* caption, const char* text,
                    ValueType type);
Parameter list(const char* key, const char* control, const char* caption, const QStringList& items);
Parameter checkBox(const char* key, const char* control, const char* caption, bool ticked);

// A check OK runs on one value; the first that fails is told and the dialog stays open.
struct Check {
    enum Rule { Zero, Negative, NotPositive };
    QString key;
    Rule rule;
    QString message;
};

struct DialogDeclaration {
    DialogDeclaration() = default;
    DialogDeclaration(QString name, QString title, QString question, std::vector<Parameter> parameters = {},
                      std::vector<Check> checks = {})
        : name(std::move(name)), title(std::move(title)), question(std::move(question)),
          parameters(std::move(parameters)), checks(std::move(checks)) {}

    QString name;     // the dialog's own name: "Window_Echo"
    QString title;    // its window title, unless the action gives one
    QString question; // what a dialog without controls asks
    std::vector<Parameter> parameters;
    std::vector<Check> checks; // in the order they run

    bool isEmpty() const { return name.isEmpty(); }
    const Parameter* parameter(const QString& key) const;
};

// The values OK takes when nothing was changed.
EffectValues startValues(const DialogDeclaration& dialog);

// The message of the first check the values fail, or empty when they pass.
QString refusal(const DialogDeclaration& dialog, const EffectValues& values);
