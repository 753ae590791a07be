#pragma once

#include "mixer/MixerTracks.h"

#include <QWidget>

// Draws the mixer's rows as bars on the joint time line (see MixerStrip.h).
class MixerStripView : public QWidget {
    Q_OBJECT
public:
    explicit MixerStripView(QWidget* parent = nullptr);
    void show(const AudioTracks& tracks, qint64 selected);

    const AudioTracks& tracks() const { return m_tracks; }
    qint64 selected() const { return m_selected; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    AudioTracks m_tracks;
    qint64 m_selected = -1;
};
