#pragma once

#include "document/ExportPlans.h"

#include <QDialog>

class Session;
class QComboBox;
class QLabel;
class QPushButton;

// The export dialog: format, sample rate, channels and bit rate. Each press of
// Export asks for a file name and exports the track there; the dialog stays
// open for another export until the user closes it.
class Window_AF_WAV : public QDialog {
    Q_OBJECT
public:
    // `protectedFiles` are the work files no export may replace.
    Window_AF_WAV(Session& session, const QStringList& protectedFiles, QWidget* parent = nullptr);

    QComboBox* comboFormat;
    QComboBox* comboSampleRate;
    QComboBox* comboChannels;
    QComboBox* comboBitrate;
    QPushButton* btnExport;
    QPushButton* btnClose;
    QLabel* labelProgress;

    // The working WAV to export, set by the document before the dialog shows.
    QString s_WAV_File_Path;
    qint64 i_Track_Seconds = -1; // the length the window shows; the export must last as long

    exporting::Choice choice() const;
    bool isExporting() const { return m_exporting; }

public slots:
    void OnUserOK();
    void OnUserCancel();
    // Escape and the window's close button both arrive here.
    void reject() override;

signals:
    // An export has ended, or been refused, and its alert has been answered.
    void exportEnded(const QString& destination, bool saved);

private:
    QString askDestination(int format);
    void startExport(const QString& destination, const Plan& plan);
    void failExport(const QString& destination, const PlanOutcome& outcome, bool hadFile);
    void finishExport(const QString& destination, const PlanOutcome& outcome);
    void removeMadeFolders();
    void setExporting(bool exporting);

    Session& m_session;
    QStringList m_protectedFiles;
    bool m_exporting = false;
    QStringList m_madeFolders; // the folders this export made, outermost first
};
