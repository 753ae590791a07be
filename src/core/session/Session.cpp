#include "Session.h"

#include <algorithm>

Session::Session() = default;
Session::~Session() = default;

void Session::startRunner(const ToolPaths& tools) {
    sSoxPath = tools.sox;
    sFFmpegPath = tools.ffmpeg;
    m_runner = std::make_unique<PlanRunner>(tools);
}

void Session::addTrack(const TrackFiles* track) {
    if (!m_tracks.contains(track))
        m_tracks.append(track);
}

void Session::removeTrack(const TrackFiles* track) {
    m_tracks.removeAll(track);
}

QStringList Session::filesOfQueuedPlans() const {
    return m_runner ? m_runner->filesOfQueuedPlans() : QStringList{};
}

QStringList Session::namesInUse() const {
    QStringList names;
    for (const TrackFiles* track : m_tracks)
        names += track->namesInUse();
    names += filesOfQueuedPlans();
    // The copied audio's name stays taken even when its file went with a
    // cleared history: a new file under it would be pasted as the copy.
    if (!s_Copied_WAV_File.isEmpty())
        names << s_Copied_WAV_File;
    return names;
}

NamesInUse Session::namesAround(const TrackFiles* asking) const {
    NamesInUse inUse;
    for (const TrackFiles* track : m_tracks)
        (track == asking ? inUse.own : inUse.others) += track->namesInUse();
    inUse.others += filesOfQueuedPlans();
    inUse.others << sSilenceWavPath;
    inUse.clipboard = s_Copied_WAV_File;
    return inUse;
}

QStringList Session::namesKeptUnshown() const {
    QStringList names;
    for (const TrackFiles* track : m_tracks)
        for (const QString& name : track->namesInUse())
            if (name != track->shownFile())
                names << name;
    if (!s_Copied_WAV_File.isEmpty())
        names << s_Copied_WAV_File;
    return names;
}

QStringList Session::protectedFiles() const {
    QStringList files{s_Copied_WAV_File, sSilenceWavPath};
    for (const TrackFiles* track : m_tracks)
        files += track->versionFiles();
    return files;
}

bool Session::mayDeleteClipboardFile() const {
    // A plan still queued may write that very name (a cut whose result takes
    // over the copied audio's name): it is not this copy's to delete.
    return std::none_of(
               m_tracks.begin(), m_tracks.end(),
               [this](const TrackFiles* t) { return t->versionFiles().contains(s_Copied_WAV_File); }) &&
           !filesOfQueuedPlans().contains(s_Copied_WAV_File);
}
