#pragma once

#include "document/ExportPlans.h"

class QComboBox;
class QFormLayout;
class QWidget;

// The export dialog's four lists (format, sample rate, channels, bit rate) as
// rows of a form, filled and set to the defaults; the batch dialog shows the same.
struct ExportLists {
    QComboBox* format;
    QComboBox* sampleRate;
    QComboBox* channels;
    QComboBox* bitRate;

    exporting::Choice choice() const;
    void setChoice(const exporting::Choice& choice);
};
ExportLists addExportLists(QWidget* owner, QFormLayout* form);
