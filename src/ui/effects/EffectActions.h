#pragma once

#include "effects/EffectCatalogue.h"
#include "history/VersionHistory.h"

#include <QObject>

class QMenu;
class TrackWindow;

// The effects: each runs one sox effect over the whole track or over the
// selection only, and the result becomes a new version.
class EffectActions : public QObject {
    Q_OBJECT
public:
    EffectActions(TrackWindow& window, QObject* parent = nullptr);

    // Over the whole track, the version records `replay`: how to make it again from another file.
    // `title` names the effect in the status bar when sox says it clipped.
    void applyEffect(const EffectArguments& arguments, bool selectionOnly, const QString& label = {},
                     const Replay& replay = {}, const QString& title = {});
    // Runs a catalogue row: its dialog (if any), then the effect.
    void runEffect(const EffectEntry& entry, bool selectionOnly);
    void fillEffectsMenu(); // done when the effects menu is first shown
    void OnPopupReverseEntireTrack();
    void OnPopupReverseSelection();
    void OnPopupEqualizerEntireTrack();
    // Learns the noise from the selection and removes it from the whole track.
    void OnPopupNoiseReduction();
    QMenu* popupMenuEffects;

private:
    TrackWindow& m_window;
};
