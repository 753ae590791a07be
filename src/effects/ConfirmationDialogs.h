#pragma once

#include "effects/EffectDialogs.h"

class QLabel;

// A dialog that only asks: the effect takes no parameters, so OK or Cancel is
// the whole choice. The question stands in labelMessage.
class ConfirmationDialog : public EffectDialog {
    Q_OBJECT
public:
    ConfirmationDialog(const QString& title, const QString& question, QWidget* parent);

    QLabel* labelMessage = nullptr;

    EffectValues effectValues() const override { return {}; }

protected:
    QString validate() override { return {}; }
};

// Undoes the treble boost of pre-emphasized recordings.
class Window_Deemphasis : public ConfirmationDialog {
    Q_OBJECT
public:
    explicit Window_Deemphasis(QWidget* parent = nullptr);
};

// Moves the stereo image for listening on headphones.
class Window_Earwax : public ConfirmationDialog {
    Q_OBJECT
public:
    explicit Window_Earwax(QWidget* parent = nullptr);
};

// Mixes the channels out of phase.
class Window_OOPS : public ConfirmationDialog {
    Q_OBJECT
public:
    explicit Window_OOPS(QWidget* parent = nullptr);
};

// Applies the vinyl playback curve.
class Window_RIAA : public ConfirmationDialog {
    Q_OBJECT
public:
    explicit Window_RIAA(QWidget* parent = nullptr);
};

// Noise reduction takes the selection as its sample of the noise: this asks
// the user to confirm that the selection holds noise only.
class Window_Ask_Noise_Selected : public ConfirmationDialog {
    Q_OBJECT
public:
    explicit Window_Ask_Noise_Selected(QWidget* parent = nullptr);
};
