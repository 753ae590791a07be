#pragma once

#include "app/ParameterDialog.h"
#include "effects/EffectCatalogue.h"

#include <memory>

// A parameter dialog of the effect catalogue: after OK, its accepted values
// by property name, as the catalogue's argument builders read them.
class EffectDialog : public ParameterDialog {
    Q_OBJECT
public:
    using ParameterDialog::ParameterDialog;
    virtual EffectValues effectValues() const = 0;
};

// The effect dialog of that class name ("Window_Echo"), or null when there is none.
std::unique_ptr<EffectDialog> makeEffectDialog(const QString& dialogClass, QWidget* parent = nullptr);
