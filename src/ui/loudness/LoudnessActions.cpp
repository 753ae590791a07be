#include "LoudnessActions.h"

#include "LoudnessWindow.h"
#include "actions/TrackWindow.h"
#include "loudness/Loudness.h"
#include "plans/PlanRunner.h"
#include "session/Session.h"
#include "track/Track.h"

#include <QAction>

LoudnessActions::LoudnessActions(Track& track, Session& session, TrackWindow& window,
                                 std::function<QString()> source, QObject* parent)
    : QObject(parent), m_track(track), m_session(session), m_window(window), m_source(std::move(source)) {
    actionMeasureLoudness = new QAction(tr("Measure &Loudness…"), this);
    actionMeasureLoudness->setObjectName(QStringLiteral("actionMeasureLoudness"));
    connect(actionMeasureLoudness, &QAction::triggered, this, &LoudnessActions::measureLoudness);
}

LoudnessWindow* LoudnessActions::loudnessWindow() const {
    return m_loudness;
}

void LoudnessActions::measureLoudness() {
    if (m_window.recording() || !m_window.trackFileIsThere())
        return;
    if (!m_loudness)
        m_loudness = new LoudnessWindow(m_window.windowWidget());
    const SegmentVariables seg = m_track.Calculate_Segment_Variables();
    // The markers always stand somewhere: the selection is measured beside
    // the track when it is a stretch of it, neither empty nor all of it.
    const bool stretch = m_track.f_Selection_End > m_track.f_Selection_Start &&
                         (m_track.f_Selection_Start > 0 || m_track.f_Selection_End < 100);
    m_loudness->showMeasuring(m_source(),
                              stretch ? QStringLiteral("%1 – %2").arg(seg.sStartSelection, seg.sEndSelection)
                                      : QString());
    m_loudness->show();
    m_loudness->raise();
    const QPointer<LoudnessWindow> shown = m_loudness;
    const auto reading = [shown](const PlanOutcome& outcome, auto show) {
        if (!shown)
            return;
        if (!outcome.ok) {
            shown->showFailure(outcome.cancelled ? tr("Cancelled.") : outcome.alert);
            return;
        }
        if (const std::optional<LoudnessReading> r = readLoudnessSummary(outcome.runs.last().output))
            (shown->*show)(*r);
    };
    const QString track = m_track.s_WAV_File_Path;
    m_session.runner().submit(buildLoudnessMeasurePlan(track), m_loudness,
                              [reading](const PlanOutcome& o) { reading(o, &LoudnessWindow::showTrack); });
    if (stretch)
        m_session.runner().submit(
            buildLoudnessMeasurePlan(track, seg.sStartSelection, seg.sDurationSelection), m_loudness,
            [reading](const PlanOutcome& o) { reading(o, &LoudnessWindow::showSelection); });
}
