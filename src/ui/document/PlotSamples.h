#pragma once

#include "document/PeakSummary.h"

#include <QFutureWatcher>
#include <QObject>
#include <QString>
#include <optional>

// The samples of the stretch a zoomed plot shows, read on a worker thread so
// that the interface never waits for the disk. The plot asks for what it
// needs while it paints and draws from the coarser peaks until `arrived`.
class PlotSamples : public QObject {
    Q_OBJECT
public:
    explicit PlotSamples(QObject* parent = nullptr);

    // Forgets what was read; later reads come from `path`.
    void setFile(const QString& path);
    // The samples covering frames [first, end), or null while they are read:
    // then a read of them, with `margin` frames more on either side (so that
    // a small scroll finds them there), is started or queued.
    const SampleStretch* samplesFor(qint64 first, qint64 end, qint64 margin);
    bool reading() const { return m_reading; }

signals:
    void arrived();

private:
    struct Wanted {
        qint64 first = 0; // what is read
        qint64 count = 0;
        qint64 needFirst = 0; // what the plot showed when it asked
        qint64 needEnd = 0;
    };
    void startRead(const Wanted& wanted);
    void finished();

    QString m_path;
    int m_file = 0; // counts setFile calls, so a read of an older file is dropped
    SampleStretch m_stretch;
    bool m_unreadable = false; // the file gave nothing: no more reads until the next file
    bool m_reading = false;
    Wanted m_running;
    std::optional<Wanted> m_queued; // waits for the running read to end
    QFutureWatcher<SampleStretch> m_watcher;
    int m_runningFile = 0;
};
