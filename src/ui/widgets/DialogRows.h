#pragma once

class QHBoxLayout;
class QString;
class QLabel;
class QLineEdit;
class QSlider;
class QWidget;

// Rows the parameter dialogs are made of.

// A slider with its value shown in a label to its right; the caller keeps the label up to date.
QHBoxLayout* sliderRow(QWidget* owner, QSlider*& slider, QLabel*& label, const char* sliderName,
                       const char* labelName, int minimum, int maximum, int start);

// A text field holding its default text.
QLineEdit* textField(QWidget* owner, const char* name, const char* text);

// Writes "%d" of the slider's value times factor into the label.
void showWhole(QLabel* label, const QSlider* slider, int factor = 1);

// Writes the slider's value divided by divisor into the label, in the format given ("%.2f").
void showScaled(QLabel* label, const QSlider* slider, double divisor, const char* format);

// A line of secondary text under a form, drawn in the muted colour.
QLabel* hintLabel(QWidget* owner, const QString& text);
