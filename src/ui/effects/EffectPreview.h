#pragma once

#include "effects/PreviewPlans.h"
#include "operations/EffectValues.h"

#include <QObject>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>

class EffectDialog;
class PlanRunner;
class SoundPlayer;
class TrackWindow;

// Preview: an effect's dialog plays its current values on a stretch of the
// track, so that a user tunes a slider by ear instead of applying, listening,
// undoing and trying again (a version for every attempt). The preview is
// made by the session's runner like every tool run, into hidden files of the
// window outside the history: it never makes a version, never touches the
// clipboard or the history, and its files are gone when the dialog ends.
//
// Pressing Preview while it plays stops it. Changing a value while it plays
// (or while it is being made) makes it again with the new values 150 ms after
// the last change, and the new one plays on from where the old one was; a
// newer preview takes the place of one not yet made.
class EffectPreview : public QObject {
    Q_OBJECT
public:
    // The plan that previews these values into these files.
    using PlanMaker = std::function<Plan(const EditState&, const PreviewFiles&, const EffectValues&)>;

    // Shows the dialog's Preview button and serves it; `title` names the
    // effect when sox says it clipped. Ends with the dialog.
    EffectPreview(EffectDialog& dialog, TrackWindow& window, PlanMaker make, QString title);
    ~EffectPreview() override;

    // The Preview button.
    void press();
    // Stops the sound, takes back a preview being made and deletes the files.
    void stop();

    bool isPlaying() const;
    bool isMaking() const { return m_making; }
    // The player of the preview heard now; null when none.
    SoundPlayer* player() const { return m_player.get(); }
    // The file it plays; empty when none.
    QString playingFile() const { return m_player ? m_slots[std::size_t(m_slot)].preview : QString(); }

    // How long after the last change of a value the preview is made again.
    static constexpr int RetuneMs = 150;

signals:
    // A preview began to play, from `seconds` into its file.
    void started(double seconds);

private:
    void make(const EffectValues& values);
    void made(const PlanOutcome& outcome, int slot, quint64 generation);
    void retune();
    void showState(); // the button says what it does now
    static void deleteFiles(const QStringList& files);

    EffectDialog& m_dialog;
    TrackWindow& m_window;
    PlanRunner& m_runner;
    PlanMaker m_make;
    QString m_title;
    std::array<PreviewFiles, 2> m_slots; // two, so that one is made while the other plays
    std::unique_ptr<SoundPlayer> m_player;
    int m_slot = 0;           // the slot of the preview heard now
    bool m_making = false;    // a preview is queued or being made
    quint64 m_generation = 0; // only the newest preview asked for is played
    QTimer m_retune;
};
