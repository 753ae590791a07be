#include "Window_AF_WAV.h"

#include "document/Waveform.h"
#include "session/Session.h"
#include "tools/Duration.h"
#include "widgets/Alerts.h"
#include "widgets/DialogRows.h"
#include "widgets/ExportLists.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QStandardPaths>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

Window_AF_WAV::Window_AF_WAV(Session& session, const QStringList& protectedFiles, QWidget* parent)
    : QDialog(parent), m_session(session), m_protectedFiles(protectedFiles) {
    setWindowTitle(QStringLiteral("Export Audio"));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    layout->addLayout(form);
    const ExportLists lists = addExportLists(this, form);
    comboFormat = lists.format;
    comboSampleRate = lists.sampleRate;
    comboChannels = lists.channels;
    comboBitrate = lists.bitRate;

    layout->addWidget(
        hintLabel(this, tr("The file name's extension chooses the encoder: .wav, .m4a, .mp3, or another\n"
                           "that ffmpeg writes, such as .flac or .ogg. WAV and FLAC ignore the bit rate.")));

    labelProgress = new QLabel(this);
    labelProgress->setObjectName(QStringLiteral("labelProgress"));
    layout->addWidget(labelProgress);

    auto* buttons = new QDialogButtonBox(this);
    btnExport = buttons->addButton(tr("Export…"), QDialogButtonBox::AcceptRole);
    btnClose = buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole);
    btnExport->setObjectName(QStringLiteral("btnExport"));
    btnClose->setObjectName(QStringLiteral("btnClose"));
    btnExport->setDefault(true); // Return exports
    layout->addWidget(buttons);
    connect(btnExport, &QPushButton::clicked, this, &Window_AF_WAV::OnUserOK);
    connect(btnClose, &QPushButton::clicked, this, &Window_AF_WAV::OnUserCancel);

    comboFormat->setFocus();
}

exporting::Choice Window_AF_WAV::choice() const {
    return {comboFormat->currentIndex(), comboSampleRate->currentIndex(), comboChannels->currentIndex(),
            comboBitrate->currentIndex()};
}

QString Window_AF_WAV::askDestination(int format) {
    // The save dialog starts where the user last opened a file from, else in
    // the Music folder, else at home.
    QString folder = m_session.lastOpenFolder;
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        folder = QDir::homePath();
    QFileDialog dialog(this, QStringLiteral("Export Audio As"), folder);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // Any extension may be typed: ffmpeg picks the encoder by it.
    dialog.setNameFilters({tr("WAV audio (*.wav)"), tr("M4A audio (*.m4a)"), tr("MP3 audio (*.mp3)"),
                           tr("Any audio file ffmpeg can write (*)")});
    dialog.selectNameFilter(dialog.nameFilters().at(format));
    dialog.setDefaultSuffix(exporting::defaultSuffix(format));
    dialog.selectFile(exporting::proposedName(format));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().first();
}

void Window_AF_WAV::OnUserOK() {
    if (m_exporting)
        return;
    const exporting::Choice chosen = choice();
    if (exporting::proposedName(chosen.format).isEmpty())
        return;
    const QString destination = askDestination(chosen.format);
    if (destination.isEmpty())
        return;
    // Refused before anything is deleted: replacing a file the editor works
    // with would destroy a track the user is still editing.
    if (exporting::isProtected(destination, m_protectedFiles)) {
        showErrorAlert(this, exporting::protectedDestinationMessage(destination));
        emit exportEnded(destination, false);
        return;
    }
    // The work folder is emptied at every start: a file exported there would
    // be reported as saved and be gone the next time.
    if (exporting::isInsideFolder(destination, m_session.s_Output_Folder)) {
        showErrorAlert(this, exporting::workFolderDestinationMessage(destination, m_session.s_Output_Folder));
        emit exportEnded(destination, false);
        return;
    }
    // The arguments are settled before the old file goes, so that a bit rate
    // that passes nothing leaves the destination as it was.
    const std::optional<QStringList> arguments =
        exporting::exportArguments(s_WAV_File_Path, chosen, destination);
    if (!arguments)
        return;
    // A folder typed into the file dialog that is not there yet is made,
    // and taken away again when the export fails.
    m_madeFolders = exporting::missingFolders(destination);
    if (!m_madeFolders.isEmpty() && !QDir().mkpath(m_madeFolders.last())) {
        showErrorAlert(this, exporting::folderNotMadeMessage(m_madeFolders.last()));
        removeMadeFolders();
        emit exportEnded(destination, false);
        return;
    }
    startExport(destination, exporting::buildExportPlan(
                                 destination, *arguments,
                                 exporting::expectedBytes(destination, chosen, audioSeconds(s_WAV_File_Path)),
                                 i_Track_Seconds));
}

void Window_AF_WAV::startExport(const QString& destination, const Plan& plan) {
    setExporting(true);
    const bool hadFile = QFileInfo::exists(destination);
    m_session.runner().submit(plan, this, [this, destination, hadFile](const PlanOutcome& outcome) {
        setExporting(false);
        if (outcome.cancelled) { // what ffmpeg had written is gone with the cancel
            removeMadeFolders();
            emit exportEnded(destination, false);
            return;
        }
        if (!outcome.ok) {
            removeMadeFolders();
            failExport(destination, outcome, hadFile);
            return;
        }
        m_madeFolders.clear();
        finishExport(destination, outcome);
    });
}

void Window_AF_WAV::failExport(const QString& destination, const PlanOutcome& outcome, bool hadFile) {
    // Rather than after every run, the success alert is only shown for a file
    // that is there and holds something; a failed run is told as such, in
    // ffmpeg's own words. Neither a cut-off file nor an empty one is left
    // behind to pass for an export: the plan has taken it back, and put back
    // the file that was there before. A run that did not end by itself never
    // reached the plan's judgement, so it is judged here.
    const ToolRun last = outcome.runs.isEmpty() ? ToolRun{} : outcome.runs.last();
    QString message = last.end == RunEnd::Exited || outcome.runs.isEmpty()
                          ? outcome.alert
                          : exporting::judge(destination, last).message;
    if (hadFile && QFileInfo::exists(destination))
        message +=
            tr("\n\n“%1”, which was there before, is kept as it was.").arg(QFileInfo(destination).fileName());
    showErrorAlert(this, message);
    emit exportEnded(destination, false);
}

void Window_AF_WAV::removeMadeFolders() {
    // Innermost first; a folder something else has been put in stays.
    for (auto folder = m_madeFolders.crbegin(); folder != m_madeFolders.crend(); ++folder)
        QDir().rmdir(*folder);
    m_madeFolders.clear();
}

void Window_AF_WAV::finishExport(const QString& destination, const PlanOutcome& outcome) {
    // ffmpeg's reading of the written file, for its length: what it says of
    // the stream is what was written. (The export's own run lists the track's
    // stream too, so only the probe's words are taken.)
    const auto probe = std::find_if(outcome.runs.crbegin(), outcome.runs.crend(), [&](const ToolRun& run) {
        return run.arguments == probeArguments(destination);
    });
    const QString probed = probe == outcome.runs.crend() ? QString() : probe->output;
    const int pressed = showAlert(this, QStringLiteral("Success"),
                                  exporting::savedMessage(destination, exporting::writtenAudio(probed)),
                                  {QStringLiteral("Play Audio File"), QStringLiteral("Close")});
    if (pressed == 0)
        QDesktopServices::openUrl(QUrl::fromLocalFile(destination));
    emit exportEnded(destination, true);
}

void Window_AF_WAV::setExporting(bool exporting) {
    m_exporting = exporting;
    for (QWidget* control : std::initializer_list<QWidget*>{comboFormat, comboSampleRate, comboChannels,
                                                            comboBitrate, btnExport, btnClose})
        control->setEnabled(!exporting);
    labelProgress->setText(exporting ? tr("Exporting…") : QString());
    if (exporting)
        connect(&m_session.runner(), &PlanRunner::progress, labelProgress, &QLabel::setText,
                Qt::UniqueConnection);
    else
        disconnect(&m_session.runner(), &PlanRunner::progress, labelProgress, &QLabel::setText);
}

void Window_AF_WAV::OnUserCancel() {
    done(0);
}

void Window_AF_WAV::reject() {
    // While ffmpeg writes, the dialog stays: Escape then cancels the export,
    // as it cancels any run in the window that started it, and the dialog
    // stays open for another try.
    if (m_exporting) {
        m_session.runner().cancel();
        return;
    }
    OnUserCancel();
}
