#include "ConfirmationDialogs.h"

#include <QFormLayout>
#include <QLabel>

ConfirmationDialog::ConfirmationDialog(const QString& title, const QString& question, QWidget* parent)
    : EffectDialog(parent) {
    setWindowTitle(title);
    labelMessage = new QLabel(question, this);
    labelMessage->setObjectName(QStringLiteral("labelMessage"));
    labelMessage->setWordWrap(true);
    labelMessage->setMinimumWidth(labelMessage->fontMetrics().averageCharWidth() * 48);
    form()->addRow(labelMessage);
}

Window_Deemphasis::Window_Deemphasis(QWidget* parent)
    : ConfirmationDialog(QStringLiteral("De-emphasis"),
                         QStringLiteral("Apply the de-emphasis filter to the audio?"), parent) {}

Window_Earwax::Window_Earwax(QWidget* parent)
    : ConfirmationDialog(
          QStringLiteral("Earwax"),
          QStringLiteral("Apply earwax to make stereo audio sound more natural on headphones?"), parent) {}

Window_OOPS::Window_OOPS(QWidget* parent)
    : ConfirmationDialog(
          QStringLiteral("OOPS"),
          QStringLiteral("Apply out-of-phase stereo (OOPS), leaving the difference between the channels?"),
          parent) {}

Window_RIAA::Window_RIAA(QWidget* parent)
    : ConfirmationDialog(
          QStringLiteral("RIAA"),
          QStringLiteral("Apply the RIAA playback equalization for vinyl records to the audio?"), parent) {}

Window_Ask_Noise_Selected::Window_Ask_Noise_Selected(QWidget* parent)
    : ConfirmationDialog(QStringLiteral("Noise Reduction"),
                         QStringLiteral("Noise reduction learns the noise from the selection and removes it "
                                        "from the whole track. Does the selection hold noise only?"),
                         parent) {}
