#pragma once

#include "mixer/MixerStrip.h"

#include <QWidget>

// Draws the mixer's rows as bars on the joint time line (see MixerStrip.h).
class MixerStripView : public QWidget {
    Q_OBJECT
public:
    explicit MixerStripView(QWidget* parent = nullptr);
    void show(const AudioTracks& tracks, qint64 selected);

    const AudioTracks& tracks() const { return m_tracks; }
    qint64 selected() const { return m_selected; }
    // The tooltip at `point`: the bar's there, the strip's own elsewhere.
    QString toolTipAt(const QPoint& point) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    StripLayout layout() const;

    AudioTracks m_tracks;
    qint64 m_selected = -1;
};
