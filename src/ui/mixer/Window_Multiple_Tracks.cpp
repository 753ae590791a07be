#include "Window_Multiple_Tracks.h"

#include "MixerStripView.h"
#include "document/ImportPlans.h"
#include "plans/PlanRunner.h"
#include "session/Session.h"
#include "session/WorkFolder.h"
#include "transport/SoundPlayer.h"
#include "widgets/Alerts.h"

#include <QAbstractTableModel>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

// The rows as the table shows them; the columns are known by the identifiers
// "key1", "key2" and "key3" (the header's user role).
class TracksModel : public QAbstractTableModel {
public:
    explicit TracksModel(const AudioTracks& tracks, QObject* parent)
        : QAbstractTableModel(parent), m_tracks(tracks) {}
    void reload() {
        beginResetModel();
        endResetModel();
    }
    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : int(m_tracks.size());
    }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : 3; }
    QVariant data(const QModelIndex& index, int role) const override {
        if ((role != Qt::DisplayRole && role != Qt::ToolTipRole) || !index.isValid() ||
            index.row() >= m_tracks.size())
            return {};
        const Object_Audio_Track& track = m_tracks[index.row()];
        if (role == Qt::ToolTipRole) // every cell of a row: its files
            return mixerTrackTip(track);
        const QString key = headerData(index.column(), Qt::Horizontal, Qt::UserRole).toString();
        if (key == QLatin1String("key1"))
            return QStringLiteral("%1").arg(track.s_Name);
        if (key == QLatin1String("key2"))
            return Get_Time_String_From_Seconds(float(track.f_Duration));
        if (key == QLatin1String("key3"))
            return Get_Time_String_From_Seconds(float(track.f_Position_To_Start));
        return {};
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        static const QStringList keys = {"key1", "key2", "key3"};
        static const QStringList titles = {tr("Track"), tr("Length"), tr("Start")};
        if (orientation != Qt::Horizontal || section < 0 || section >= 3)
            return {};
        if (role == Qt::UserRole)
            return keys[section];
        if (role == Qt::DisplayRole)
            return titles[section];
        return {};
    }

private:
    const AudioTracks& m_tracks;
};

Window_Multiple_Tracks::Window_Multiple_Tracks(Session& session, std::function<QList<OpenTrack>()> openTracks,
                                               QWidget* parent)
    : QDialog(parent), m_session(session), m_openTracks(std::move(openTracks)),
      m_model(new TracksModel(arrayTracks, this)), m_countdown(new QTimer(this)) {
    setWindowTitle(tr("Join Open Tracks"));
    setMinimumSize(600, 300);
    resize(720, 420);

    tableAudioTracks = new QTableView;
    tableAudioTracks->setModel(m_model);
    tableAudioTracks->setSelectionBehavior(QAbstractItemView::SelectRows);
    tableAudioTracks->setSelectionMode(QAbstractItemView::SingleSelection);
    tableAudioTracks->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tableAudioTracks->verticalHeader()->hide();
    tableAudioTracks->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    connect(tableAudioTracks->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &Window_Multiple_Tracks::tableViewSelectionDidChange);
    strip = new MixerStripView;

    auto button = [this](const QString& text, void (Window_Multiple_Tracks::*slot)(), const QString& tip) {
        auto* b = new QPushButton(text);
        b->setToolTip(tip);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, slot);
        return b;
    };
    auto* refresh =
        button(tr("Refresh"), &Window_Multiple_Tracks::OnRefresh, tr("List the open tracks again"));
    auto* up =
        button(tr("Move Up"), &Window_Multiple_Tracks::OnMoveUp, tr("Play the selected track earlier"));
    auto* down =
        button(tr("Move Down"), &Window_Multiple_Tracks::OnMoveDown, tr("Play the selected track later"));
    auto* remove =
        button(tr("Remove"), &Window_Multiple_Tracks::OnRemove, tr("Leave the selected track out"));
    btnPlay = button(tr("Play"), &Window_Multiple_Tracks::OnPlay, tr("Listen to the selected track"));
    btnPause = button(tr("Pause"), &Window_Multiple_Tracks::OnPause, tr("Pause the preview"));
    btnStop = button(tr("Stop"), &Window_Multiple_Tracks::OnStop, tr("Stop the preview"));
    textPosition = new QLineEdit;
    textPosition->setPlaceholderText(tr("seconds"));
    textPosition->setMaximumWidth(90);
    auto* update = button(tr("Set Start"), &Window_Multiple_Tracks::OnUpdatePosition,
                          tr("Start the selected track at this second of the joined track"));
    btnMix = button(tr("Join"), &Window_Multiple_Tracks::OnMix, tr("Join the tracks into a new track"));
    // Return in the start field sets the start; it never joins.
    connect(textPosition, &QLineEdit::returnPressed, this, &Window_Multiple_Tracks::OnUpdatePosition);
    labelClosing = new QLabel;

    auto* rows = new QHBoxLayout;
    for (QPushButton* w : {refresh, up, down, remove})
        rows->addWidget(w);
    rows->addStretch();
    rows->addWidget(new QLabel(tr("Start:")));
    rows->addWidget(textPosition);
    rows->addWidget(update);
    auto* bottom = new QHBoxLayout;
    for (QPushButton* w : {btnPlay, btnPause, btnStop})
        bottom->addWidget(w);
    bottom->addStretch();
    bottom->addWidget(labelClosing);
    bottom->addWidget(btnMix);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tableAudioTracks, 1);
    layout->addLayout(rows);
    layout->addWidget(strip);
    layout->addLayout(bottom);

    m_countdown->setInterval(250);
    connect(m_countdown, &QTimer::timeout, this, &Window_Multiple_Tracks::showCountdown);

    setPreviewButtons(false, false, false);
    Status_Play = 0;
    Refresh_List();
}

Window_Multiple_Tracks::~Window_Multiple_Tracks() = default;

void Window_Multiple_Tracks::Refresh_List() {
    arrayTracks = tracksOfDocuments(m_openTracks ? m_openTracks() : QList<OpenTrack>{});
    reload();
}

void Window_Multiple_Tracks::OnRefresh() {
    Refresh_List();
}

void Window_Multiple_Tracks::reload() {
    m_model->reload(); // which clears the view's selection
    // The highlight shows the row the actions address, if any; putting it back
    // is no new selection, so the preview goes on.
    const qint64 row = selectedRow();
    if (row >= 0 && row < arrayTracks.size()) {
        const QSignalBlocker quiet(tableAudioTracks->selectionModel());
        tableAudioTracks->selectRow(int(row));
    }
    strip->show(arrayTracks, row);
}

qint64 Window_Multiple_Tracks::selectedRow() const {
    return u_Current_Index_Selected == ~quint64(0) ? -1 : qint64(u_Current_Index_Selected);
}

void Window_Multiple_Tracks::refreshTableAudioTracks() {
    restackTracks(arrayTracks);
    u_Current_Index_Selected = ~quint64(0); // select again before Set Start
    reload();
}

void Window_Multiple_Tracks::setPreviewButtons(bool play, bool pause, bool stop) {
    btnPlay->setEnabled(play);
    btnPause->setEnabled(pause);
    btnStop->setEnabled(stop);
}

void Window_Multiple_Tracks::tableViewSelectionDidChange() {
    if (Status_Play != 3 && sound)
        sound->stop();
    setPreviewButtons(true, false, false);
    Status_Play = 3;
    const QModelIndexList rows = tableAudioTracks->selectionModel()->selectedRows();
    if (rows.isEmpty() || rows.first().row() >= arrayTracks.size()) {
        u_Current_Index_Selected = ~quint64(0);
        strip->show(arrayTracks, -1);
        return;
    }
    const int row = rows.first().row();
    u_Current_Index_Selected = quint64(row);
    textPosition->setText(QString::asprintf("%d", int(arrayTracks[row].f_Position_To_Start)));
    sound = std::make_unique<SoundPlayer>(arrayTracks[row].s_Path);
    strip->show(arrayTracks, row);
}

void Window_Multiple_Tracks::OnPlay() {
    if (!sound)
        return;
    if (const QString problem = SoundPlayer::outputProblem(); !problem.isEmpty()) {
        showErrorAlert(this, problem);
        return;
    }
    if (Status_Play == 2)
        sound->resume();
    else
        sound->play();
    setPreviewButtons(false, true, true);
    Status_Play = 1;
}

void Window_Multiple_Tracks::OnPause() {
    if (!sound)
        return;
    sound->pause();
    setPreviewButtons(true, false, true);
    Status_Play = 2;
}

void Window_Multiple_Tracks::OnStop() {
    if (!sound)
        return;
    sound->stop();
    setPreviewButtons(true, false, false);
    Status_Play = 3;
}

void Window_Multiple_Tracks::OnMoveUp() {
    if (moveTrackUp(arrayTracks, selectedRow()))
        refreshTableAudioTracks();
}

void Window_Multiple_Tracks::OnMoveDown() {
    if (moveTrackDown(arrayTracks, selectedRow()))
        refreshTableAudioTracks();
}

void Window_Multiple_Tracks::OnRemove() {
    switch (removeTrack(arrayTracks, selectedRow())) {
    case RemoveOutcome::Removed:
        refreshTableAudioTracks();
        break;
    case RemoveOutcome::TooFew:
        showErrorAlert(this, QStringLiteral("There must remain at least 2 tracks to mix."));
        break;
    case RemoveOutcome::NoRow:
        break;
    }
}

void Window_Multiple_Tracks::OnUpdatePosition() {
    if (selectedRow() < 0 || selectedRow() >= arrayTracks.size())
        return;
    // Beyond reading the leading digits: a start that is not a whole number of
    // seconds, 0 or more, is refused with a word on what to type.
    bool whole = false;
    const qint64 start = textPosition->text().trimmed().toLongLong(&whole);
    if (!whole || start < 0 || start > std::numeric_limits<qint32>::max()) {
        showErrorAlert(this, tr("Type the start as a whole number of seconds, 0 or more (for example 12)."));
        return;
    }
    setTrackStart(arrayTracks, selectedRow(), quint64(start));
    reload();
}

void Window_Multiple_Tracks::OnMix() {
    // Every row's file must still be there (its window may have moved on or
    // closed since the list was made), and the work folder must take the join.
    // The join writes every track padded to its start, then the mix as long
    // as the latest end: a start far out (2147483647 s) would pad until the
    // disk is full, or past what a WAV holds, so both are measured first.
    qint64 bytes = 0, written = 0;
    double joined = 0;
    for (const Object_Audio_Track& track : std::as_const(arrayTracks)) {
        if (!QFileInfo::exists(track.s_Path)) {
            showErrorAlert(this,
                           tr("The track “%1” is no longer there. Press Refresh to list the open tracks "
                              "again.")
                               .arg(track.s_Name));
            return;
        }
        bytes += QFileInfo(track.s_Path).size();
        const double end = std::max(0.0, double(track.f_Position_To_Start)) +
                           workingWavSeconds(QFileInfo(track.s_Path).size());
        joined = std::max(joined, end);
        written += workingWavBytes(std::min(end, 1e7));
    }
    QString problem = tooLongForAWavProblem(tr("The joined track would last"), joined);
    if (problem.isEmpty())
        problem = roomToWorkProblem(m_session.s_Output_Folder, bytes);
    if (problem.isEmpty())
        problem = roomForBytesProblem(m_session.s_Output_Folder, written + workingWavBytes(joined));
    if (!problem.isEmpty()) {
        showErrorAlert(this, problem);
        return;
    }
    // Named by this second, or the next one no file holds: a source track
    // opened in this same second must not be replaced by the join.
    const QString result = importNames(m_session.s_Output_Folder, m_session.namesInUse()).path();
    const MixPlan mix = buildMixPlan(arrayTracks, result);
    btnMix->setEnabled(false);
    labelClosing->setText(tr("Joining the tracks…"));
    m_session.runner().submit(mix.plan, this, [this, mix, result](const PlanOutcome& outcome) {
        btnMix->setEnabled(true);
        labelClosing->clear();
        if (!outcome.ok) {
            if (!outcome.cancelled)
                showErrorAlert(this, outcome.alert);
            return;
        }
        arrayTracks = mix.tracksAfter; // the padded rows name their padded copies now
        reload();
        m_mixedFile = result;
        // The window waits ten seconds before it closes and the joined track
        // opens; a second join starts the wait again.
        delete timerCloseWindowOK;
        timerCloseWindowOK = new QTimer(this);
        timerCloseWindowOK->setSingleShot(true);
        timerCloseWindowOK->setTimerType(Qt::PreciseTimer); // ten seconds, not a coarse 9.5
        connect(timerCloseWindowOK, &QTimer::timeout, this,
                &Window_Multiple_Tracks::TimerCloseWindowOKRoutine);
        timerCloseWindowOK->start(10000);
        m_countdown->start();
        showCountdown();
        emit mixed();
    });
}

int Window_Multiple_Tracks::secondsUntilClose() const {
    if (!timerCloseWindowOK || !timerCloseWindowOK->isActive())
        return 0;
    return (timerCloseWindowOK->remainingTime() + 999) / 1000;
}

void Window_Multiple_Tracks::showCountdown() {
    const int seconds = secondsUntilClose();
    labelClosing->setText(seconds > 0 ? tr("The joined track opens in %n s.", nullptr, seconds) : QString());
    if (seconds == 0)
        m_countdown->stop();
}

void Window_Multiple_Tracks::TimerCloseWindowOKRoutine() {
    bOK = true;
    accept();
}

void Window_Multiple_Tracks::done(int result) {
    if (result == QDialog::Rejected) // closed by hand: nothing opens
        bOK = false;
    if (sound)
        sound->stop();
    delete timerCloseWindowOK;
    m_countdown->stop();
    QDialog::done(result);
}
