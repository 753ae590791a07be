#include "EffectPreview.h"

#include "EffectDialogs.h"
#include "actions/TrackWindow.h"
#include "effects/Clipping.h"
#include "plans/PlanRunner.h"
#include "transport/SoundPlayer.h"

#include <QFile>
#include <QPushButton>

EffectPreview::EffectPreview(EffectDialog& dialog, TrackWindow& window, PlanMaker make, QString title)
    : QObject(&dialog), m_dialog(dialog), m_window(window), m_runner(window.runner()),
      m_make(std::move(make)), m_title(std::move(title)) {
    // Asked once: a preview may outlive its window's last moments.
    const QString folder = window.editState().workFolder;
    m_slots = {previewFiles(folder, window.windowId(), 0), previewFiles(folder, window.windowId(), 1)};
    dialog.showPreviewButton();
    connect(dialog.buttonPreview, &QPushButton::clicked, this, &EffectPreview::press);
    // OK, Cancel, Escape and the dialog's close button all end it here.
    connect(&dialog, &QDialog::finished, this, &EffectPreview::stop);
    m_retune.setSingleShot(true);
    m_retune.setInterval(RetuneMs);
    connect(&m_retune, &QTimer::timeout, this, &EffectPreview::retune);
    connect(&dialog, &EffectDialog::valuesEdited, this, [this] {
        if (isPlaying() || m_making)
            m_retune.start();
    });
}

EffectPreview::~EffectPreview() {
    m_player.reset(); // the dialog's buttons may be gone already
    stop();
}

bool EffectPreview::isPlaying() const {
    return m_player && (m_player->isPlaying() || m_player->isStarting());
}

void EffectPreview::press() {
    if (isPlaying()) {
        stop();
        return;
    }
    const std::optional<EffectValues> values = m_dialog.checkedValues();
    if (!values)
        return;
    if (const QString problem = SoundPlayer::outputProblem(); !problem.isEmpty()) {
        m_dialog.showPreviewLine(problem);
        return;
    }
    if (!m_window.trackFileIsThere() || !m_window.readyToWrite())
        return;
    make(*values);
}

void EffectPreview::retune() {
    if (!isPlaying() && !m_making)
        return;
    // Values refused while a slider moves are said in the line, not in an
    // alert over the dialog; what plays goes on.
    if (const QString problem = m_dialog.refusalNow(); !problem.isEmpty()) {
        m_dialog.showPreviewLine(problem);
        return;
    }
    make(m_dialog.currentValues());
}

void EffectPreview::make(const EffectValues& values) {
    m_retune.stop();
    m_runner.withdraw(this); // a newer preview takes the place of one still being made
    // The file heard now is never rewritten under its player.
    const int slot = m_player ? 1 - m_slot : m_slot;
    const PreviewFiles& files = m_slots[std::size_t(slot)];
    const quint64 generation = ++m_generation;
    m_making = true;
    m_runner.submit(
        m_make(m_window.editState(), files, values), this,
        [this, slot, generation](const PlanOutcome& outcome) { made(outcome, slot, generation); });
}

void EffectPreview::made(const PlanOutcome& outcome, int slot, quint64 generation) {
    const PreviewFiles& files = m_slots[std::size_t(slot)];
    const bool heard = m_player && slot == m_slot;
    if (generation != m_generation) { // replaced by a newer one, which makes these again
        deleteFiles(heard ? files.making() : files.all());
        return;
    }
    m_making = false;
    if (!outcome.ok) {
        deleteFiles(heard ? files.making() : files.all());
        if (!outcome.cancelled)
            m_dialog.showPreviewLine(previewFailure(outcome));
        return;
    }
    const std::optional<qint64> clipped = clippedSamples(outcome);
    m_dialog.showPreviewLine(clipped ? clippingLine(m_title, *clipped) : QString());
    // A preview made again while the last one plays goes on from the same point.
    const double from = isPlaying() ? m_player->currentTime() : 0;
    if (m_player && slot != m_slot)
        deleteFiles({m_slots[std::size_t(m_slot)].preview});
    m_player = std::make_unique<SoundPlayer>(files.preview);
    m_slot = slot;
    connect(m_player.get(), &SoundPlayer::failed, this,
            [this](const QString& reason) { m_dialog.showPreviewLine(reason); });
    connect(m_player.get(), &SoundPlayer::playingChanged, this, &EffectPreview::showState);
    if (from > 0)
        m_player->setCurrentTime(from);
    m_player->play();
    showState();
    emit started(from);
}

void EffectPreview::showState() {
    // The same key stops what it started.
    m_dialog.buttonPreview->setText(isPlaying() ? tr("Stop &Preview") : tr("&Preview"));
}

void EffectPreview::stop() {
    m_retune.stop();
    ++m_generation;
    if (m_making)
        m_runner.withdraw(this); // a run cancelled takes back what it wrote
    m_making = false;
    if (m_player) {
        m_player.reset();
        showState();
    }
    for (const PreviewFiles& files : m_slots)
        deleteFiles(files.all());
}

void EffectPreview::deleteFiles(const QStringList& files) {
    for (const QString& file : files)
        QFile::remove(file);
}
