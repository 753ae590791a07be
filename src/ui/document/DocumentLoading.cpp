// The window's loading: the start-up routine and the opening it was given,
// files opened, given or dropped, the silence track, generated pieces, and the
// one ending every load shares.

#include "Document.h"

#include "WaveformPlot.h"
#include "document/ImportPlans.h"
#include "document/Waveform.h"
#include "names/Names.h"
#include "plans/AudioChecks.h"
#include "session/CommandLine.h"
#include "text/FileSize.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/View_Time_Rule.h"
#include "tools/Duration.h"
#include "widgets/Alerts.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QLabel>
#include <QMimeData>
#include <QTimer>
#include <QtConcurrent>
#include <cmath>

namespace {
QString chooseAudioFile(QWidget* parent, QString& lastFolder) {
    // The dialog starts where the last file of this session came from.
    QStringList patterns;
    for (const QString& extension : openableExtensions())
        patterns << "*." + extension; // the dialog matches names case-insensitively
    QFileDialog dialog(parent, QStringLiteral("Select an audio file."),
                       lastFolder.isEmpty() ? QDir::homePath() : lastFolder);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setNameFilter(QObject::tr("Audio files (%1)").arg(patterns.join(u' ')));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    lastFolder = QFileInfo(dialog.selectedFiles().first()).path();
    return dialog.selectedFiles().first();
}
} // namespace

void Document::TimerHandleStartupRoutine() {
    if (!recording())
        setStartupButtons();
    audioPlot->setBackgroundColor(QColor::fromRgbF(0, 0, 0, 1));
    audioPlot->setColor(QColor::fromRgbF(0, 1, 0, 1));
    audioPlot->setPlotOpacity(0.5);
    m_track.setSelection(40, 60);
    QTimer::singleShot(100, this, &Document::TimerOpenFilePanelRoutine);
}

void Document::TimerOpenFilePanelRoutine() {
    m_starting = false;
    btnOpen->setEnabled(!recording());
    // A recording started meanwhile makes the track when it stops, and a file
    // the user opened in the meantime is the track already.
    const bool busy = recording() || m_loadRequest > 0;
    if (!busy) {
        switch (m_opening.kind) {
        case Opening::Kind::GeneratedPiece:
            Open_Pre_Generated_Audio_File();
            break;
        case Opening::Kind::AskForFile:
            Open_And_Select_An_Audio_File();
            break;
        case Opening::Kind::Silence:
            Open_And_Select_Silence_File();
            break;
        case Opening::Kind::GivenFile:
            importGivenFile(m_opening.path);
            break;
        case Opening::Kind::Recovered:
            reopenRecovered();
            break;
        case Opening::Kind::Nothing:
            break;
        }
    }
    emit openingTaken(m_opening.kind);
}

int Document::beginLoad() {
    return ++m_loadRequest;
}

void Document::OnToolbarOpen() {
    if (recording())
        return;
    // Opening here starts a fresh history and deletes the old one's files: a
    // history of several versions is the user's work, so ask first.
    const qsizetype versions = m_track.history().versions().size();
    if (versions > 1 &&
        showAlert(this, tr("Open a file in this window? Its %1 versions will be deleted.").arg(versions), {},
                  {tr("Open…"), tr("Cancel")}) != 0)
        return;
    Open_And_Select_An_Audio_File();
}

bool Document::openHere() {
    if (!showsUntouchedSilence())
        return false;
    const QString path = chooseAudioFile(this, m_session.lastOpenFolder);
    // Cancelled, or R pressed while the dialog was up: the window stays as it is.
    if (!path.isEmpty() && showsUntouchedSilence())
        importFile(path);
    return true;
}

void Document::importGivenFile(const QString& path) {
    if (const QString problem = givenFileProblem(path); !problem.isEmpty()) {
        showErrorAlert(this, problem);
        if (!b_Audio_Loaded)
            Open_And_Select_Silence_File();
        return;
    }
    m_session.lastOpenFolder = QFileInfo(path).absolutePath();
    importFile(path);
}

bool Document::showsUntouchedSilence() const {
    return b_Audio_Loaded && !recording() &&
           m_track.history().array_WAV_Files() == QStringList{m_session.sSilenceWavPath};
}

void Document::dragEnterEvent(QDragEnterEvent* event) {
    if (!droppedFiles(event->mimeData()->urls()).isEmpty())
        event->acceptProposedAction();
}

void Document::dropEvent(QDropEvent* event) {
    QStringList files = droppedFiles(event->mimeData()->urls());
    if (files.isEmpty())
        return;
    event->acceptProposedAction();
    // A window still on its first, silent track takes the first file itself.
    if (showsUntouchedSilence())
        importGivenFile(files.takeFirst());
    if (!files.isEmpty())
        emit filesDropped(files);
}

void Document::Open_And_Select_An_Audio_File() {
    const QString path = chooseAudioFile(this, m_session.lastOpenFolder);
    if (recording()) // R was pressed while the dialog was up: the take wins
        return;
    if (path.isEmpty())
        Open_And_Select_Silence_File();
    else
        importFile(path);
}

void Document::importFile(const QString& path) {
    if (!readyToWrite())
        return;
    const QFileInfo source(path);
    const qint64 size = source.size();
    const ResultNames names = importNames(m_session.s_Output_Folder, m_session.namesInUse());
    const int request = beginLoad();
    m_importing = names.path();
    m_session.runner().submit(
        buildImportPlan(path, names.path()), this, [=, this](const PlanOutcome& outcome) {
            if (m_importing == names.path())
                m_importing.clear();
            if (request != m_loadRequest)
                return;
            if (failed(outcome)) {
                // A window that never held a track falls back to the silence track,
                // as when its file dialog is cancelled, rather than stay empty.
                if (!b_Audio_Loaded)
                    Open_And_Select_Silence_File();
                return;
            }
            m_track.s_File_URL = fileUrlText(path);
            m_track.s_File_Path = path;
            m_track.s_File_Extension = source.suffix();
            m_track.s_File_Name_Without_Extension = source.completeBaseName();
            m_track.s_Folder_Path = source.path();
            m_track.s_File_Size = fileSizeText(size);
            m_track.s_WAV_File_Path = names.path();
            m_track.s_WAV_File_URL = fileUrlText(m_session.s_Output_Folder, names.name());
            setWindowTitle(names.name());
            finishLoading(outcome.seconds.value_or(0), openedVersionLabel(path));
        });
}

void Document::Open_And_Select_Silence_File() {
    m_track.s_File_Path = m_track.s_WAV_File_Path = m_session.sSilenceWavPath;
    m_track.s_File_URL = m_track.s_WAV_File_URL = m_session.sSilenceWavURL;
    m_track.s_File_Extension = QFileInfo(m_track.s_File_Path).suffix();
    m_track.s_File_Size.clear();
    setWindowTitle(QStringLiteral("silence.wav"));
    const int request = beginLoad();
    m_session.runner().submit(
        buildProbePlan(m_track.s_WAV_File_Path), this, [this, request](const PlanOutcome& outcome) {
            if (request == m_loadRequest)
                finishLoading(shownSeconds(outcome, m_track.s_WAV_File_Path), silentTrackVersionLabel());
        });
}

void Document::Open_Pre_Generated_Audio_File() {
    if (m_opening.path.isEmpty()) { // only after an empty batch
        Open_And_Select_Silence_File();
        return;
    }
    m_track.s_File_Path = m_track.s_WAV_File_Path = m_opening.path;
    m_track.s_File_URL = m_track.s_WAV_File_URL = fileUrlText(m_track.s_File_Path);
    m_track.s_File_Extension = QFileInfo(m_track.s_File_Path).suffix();
    m_track.s_File_Size.clear();
    setWindowTitle(QFileInfo(m_track.s_File_Path).fileName());
    Refresh_Audio_Plot(m_opening.colour);
}

void Document::reopenRecovered() {
    // The versions as the dead editor had them, back in the work folder;
    // undo and redo go on across the crash.
    const ManifestWindow& window = m_opening.recovered;
    QList<Version> versions;
    for (const ManifestVersion& v : window.versions)
        versions.append({pathInFolder(m_session.s_Output_Folder, v.file), v.label, v.made, {}});
    m_track.history().restore(versions, window.position, window.kept);
    // In a take-over state the take, one before the position, is shown.
    const qsizetype shown = std::min(window.position, versions.size() - 1);
    m_track.s_File_Path = m_track.s_WAV_File_Path = versions[shown].path;
    m_track.s_File_URL = fileUrlText(m_track.s_File_Path);
    m_track.s_WAV_File_URL =
        versionUrlText(m_track.s_WAV_File_Path, m_session.s_Output_Folder, m_session.sSilenceWavURL);
    m_track.s_File_Size.clear();
    setWindowTitle(QFileInfo(m_track.s_WAV_File_Path).fileName());
    openFileWithFilePathURL(m_track.s_WAV_File_URL);
    if (m_opening.colour.isValid())
        changeColor(m_opening.colour);
    const int request = beginLoad();
    m_session.runner().submit(
        buildProbePlan(m_track.s_WAV_File_Path), this, [this, request](const PlanOutcome& outcome) {
            if (request == m_loadRequest)
                finishLoading(shownSeconds(outcome, m_track.s_WAV_File_Path), {}, LoadEnd::Recovered);
        });
}

void Document::Refresh_Audio_Plot(const QColor& colour) {
    // A window that records keeps recording: its take replaces the track.
    if (recording())
        return;
    openFileWithFilePathURL(m_track.s_WAV_File_URL);
    changeColor(colour);
    const int request = beginLoad();
    m_session.runner().submit(
        buildProbePlan(m_track.s_WAV_File_Path), this, [this, request](const PlanOutcome& outcome) {
            if (request == m_loadRequest)
                finishLoading(shownSeconds(outcome, m_track.s_WAV_File_Path),
                              openedVersionLabel(m_track.s_WAV_File_Path), LoadEnd::FileShown);
        });
}

void Document::finishLoading(qint64 seconds, const QString& label, LoadEnd end) {
    if (end == LoadEnd::ShowFile)
        openFileWithFilePathURL(m_track.s_WAV_File_URL);
    takeDuration(seconds);
    // A recording's stop has set the buttons already, the moment it stopped.
    if (end != LoadEnd::RecordingTaken)
        setLoadedButtons();
    b_Audio_Loaded = viewAudioPlot->b_Audio_Loaded = viewTimeRule->b_Audio_Loaded = true;
    viewTimeRule->update();
    viewAudioPlot->update();
    // The loaded file becomes version 0 of a fresh history; a take stands
    // alone in it with the position one past it; a recovered history stands
    // as it was given back.
    if (end == LoadEnd::RecordingTaken)
        m_track.history().takeOverRecording(m_track.s_WAV_File_Path, label);
    else if (end != LoadEnd::Recovered)
        m_track.history().restart(m_track.s_WAV_File_Path, label);
    // The source is named before the history is told: the manifest reads it then.
    labelSource->setText(end == LoadEnd::Recovered ? m_opening.recovered.source
                                                   : QFileInfo(m_track.s_File_Path).fileName());
    emit historyChanged();
    showMarkers();
    labelSize->setText(m_track.s_File_Size);
    labelSize->setVisible(!m_track.s_File_Size.isEmpty());
    describeForAccessibility();
    emit loaded();
}

qint64 Document::shownSeconds(const PlanOutcome& outcome, const QString& path) {
    if (outcome.seconds)
        return *outcome.seconds;
    // The probe of a load was cancelled (or could not run): the window still
    // shows what its file holds, read from the WAV's header as ffmpeg would
    // say it (hundredths, rounded, then whole seconds), never a length of 0.
    const qint64 frames = audioFrames(path);
    return frames > 0 ? qint64(std::floor(std::round(double(frames) / workingFormat::SampleRate * 100) / 100))
                      : 0;
}

void Document::takeDuration(qint64 seconds) {
    labelNotice->hide(); // it spoke of the version before
    m_track.setDuration(seconds);
    viewTimeRule->i_Audio_Duration_Seconds = seconds;
    labelDuration->setText(tr("Length %1").arg(clockText(seconds)));
    viewTimeRule->update();
    viewAudioPlot->update();
    showMarkers();
}

void Document::openFileWithFilePathURL(const QString& url) {
    const QString path = pathOfFileUrlText(url);
    audioPlot->clear();
    const int request = ++m_plotRequest;
    auto* watcher = new QFutureWatcher<Waveform>(this);
    connect(watcher, &QFutureWatcher<Waveform>::finished, this, [this, watcher, request, path] {
        watcher->deleteLater();
        if (request != m_plotRequest) // a newer file has been asked for meanwhile
            return;
        Waveform waveform = watcher->result();
        const bool ok = waveform.ok && !waveform.channels.empty();
        audioPlot->setPoints(ok ? waveform.channels.front() : std::vector<float>());
        if (ok)
            audioPlot->setSummary(std::make_shared<const PeakSummary>(std::move(waveform.peaks)), path);
        viewAudioPlot->update();
        emit plotUpdated();
    });
    watcher->setFuture(QtConcurrent::run(reduceWaveform, path, 1024));
}

void Document::refuseRecording() {
    btnOpen->setEnabled(true);
    // Nothing a reader can open was written: the track stays as it was.
    viewAudioPlot->b_Recording = false;
    viewAudioPlot->update();
    applyButtons(buttonsAfter(TransportStep::StopRecording));
    showErrorAlert(this, unusableAudioMessage(tr("The recording"), nullptr));
    // A window that never held a track shows the silence track instead, as
    // when its first file is refused.
    if (!b_Audio_Loaded)
        Open_And_Select_Silence_File();
}

void Document::takeRecording(const QString& path) {
    btnOpen->setEnabled(true);
    m_track.s_File_Path = m_track.s_WAV_File_Path = path;
    const QFileInfo take(path);
    m_track.s_File_Extension = take.suffix();
    m_track.s_File_Name_Without_Extension = take.completeBaseName();
    m_track.s_WAV_File_URL = fileUrlText(m_session.s_Output_Folder, m_track.s_File_Name_Without_Extension +
                                                                        u'.' + m_track.s_File_Extension);
    setWindowTitle(m_track.s_File_Name_Without_Extension + "." + m_track.s_File_Extension);
    m_track.s_File_Size = fileSizeText(take.size());
    openFileWithFilePathURL(m_track.s_WAV_File_URL);
    // The buttons follow the status at once, so that nothing pressed while the
    // take's length is measured meets a stale toolbar.
    viewAudioPlot->b_Recording = false;
    applyButtons(buttonsAfter(TransportStep::StopRecording));
    const int request = beginLoad();
    m_session.runner().submit(buildProbePlan(path), this, [this, request, path](const PlanOutcome& outcome) {
        if (request != m_loadRequest)
            return;
        // A fresh history holding the take alone, its position one past it.
        m_track.s_WAV_File_Path = path;
        finishLoading(shownSeconds(outcome, m_track.s_WAV_File_Path), recordedVersionLabel(),
                      LoadEnd::RecordingTaken);
    });
}
