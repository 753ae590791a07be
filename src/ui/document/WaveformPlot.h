#pragma once

#include "PlotSamples.h"

#include <QColor>
#include <QWidget>
#include <memory>
#include <vector>

class QPainter;

// Draws a track's first channel as one filled shape, mirrored about the
// centre line. It lies over the overlay view with the overlay's geometry and a
// partial opacity, so the selection band shows through; mouse events pass
// through to the overlay.
//
// With the track's summary of peaks it paints only the part of its (when
// zoomed, millions of pixels wide) frame that is exposed, one column per
// device pixel, each the peak of the frames under it: so zooming in shows
// more detail down to single samples, where merely stretching the 1,024
// overview points would show none. Where a column holds fewer frames than
// the finer summary level, the samples of the visible stretch are read on a
// worker thread (the coarser level stands in until they arrive); at a frame
// per pixel or less they are drawn as a line. Without a summary it stretches
// the overview points over its width.
class WaveformPlot : public QWidget {
    Q_OBJECT
public:
    explicit WaveformPlot(QWidget* parent = nullptr);

    void setPoints(std::vector<float> points);
    // The peaks of the track in `path`, for zoomed drawing.
    void setSummary(std::shared_ptr<const PeakSummary> summary, const QString& path);
    void clear();
    const PeakSummary* summary() const { return m_summary.get(); }
    bool readingSamples() const { return m_samples.reading(); }
    // The live input while recording: one buffer of samples (-1 to 1), drawn
    // as a trace across the plot until points are set or the plot is cleared.
    void updateBuffer(const float* buffer, int size);
    bool showsLiveInput() const { return m_live; }
    const std::vector<float>& liveBuffer() const { return m_buffer; }
    const std::vector<float>& points() const { return m_points; }

    void setBackgroundColor(const QColor& color);
    void setColor(const QColor& color);
    void setPlotOpacity(qreal opacity);
    QColor backgroundColor() const { return m_background; }
    QColor color() const { return m_color; }
    qreal plotOpacity() const { return m_opacity; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintLiveInput(QPainter& painter);
    void paintPoints(QPainter& painter);
    void paintColumns(QPainter& painter, const QRect& exposed);
    void paintSampleLine(QPainter& painter, const SampleStretch& samples, qint64 contentWidth,
                         qint64 firstColumn, qint64 endColumn);

    std::vector<float> m_points;
    std::shared_ptr<const PeakSummary> m_summary;
    PlotSamples m_samples;
    std::vector<float> m_buffer;
    bool m_live = false;
    QColor m_background = Qt::black;
    QColor m_color = Qt::green;
    qreal m_opacity = 1.0;
};
