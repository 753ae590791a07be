#include "MixerTracks.h"

#include "names/Names.h"

#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <numeric>

AudioTracks tracksOfDocuments(const QList<OpenTrack>& documents) {
    AudioTracks tracks;
    quint32 sum = 0; // a 32-bit signed running sum, wrapping as two's complement
    for (const OpenTrack& document : documents) {
        const auto start = quint64(qint64(qint32(sum)));
        tracks.append({QFileInfo(document.wavPath).fileName(), document.wavPath, quint64(document.seconds),
                       start, document.source});
        sum += quint32(quint64(document.seconds));
    }
    return tracks;
}

QString mixerTrackTip(const Object_Audio_Track& track) {
    if (track.s_Source.isEmpty() || track.s_Source == track.s_Name)
        return track.s_Name;
    return QStringLiteral("%1, from %2").arg(track.s_Name, track.s_Source);
}

void restackTracks(AudioTracks& tracks) {
    quint64 start = 0;
    for (Object_Audio_Track& track : tracks) {
        track.f_Position_To_Start = start;
        start += track.f_Duration;
    }
}

namespace {
bool isRow(const AudioTracks& tracks, qint64 row) {
    return row >= 0 && row < tracks.size();
}
} // namespace

bool moveTrackUp(AudioTracks& tracks, qint64 row) {
    if (!isRow(tracks, row) || row == 0)
        return false;
    tracks.swapItemsAt(row - 1, row);
    restackTracks(tracks);
    return true;
}

bool moveTrackDown(AudioTracks& tracks, qint64 row) {
    if (!isRow(tracks, row) || row + 1 >= tracks.size())
        return false;
    tracks.swapItemsAt(row, row + 1);
    restackTracks(tracks);
    return true;
}

RemoveOutcome removeTrack(AudioTracks& tracks, qint64 row) {
    if (tracks.size() <= 2)
        return RemoveOutcome::TooFew;
    if (!isRow(tracks, row))
        return RemoveOutcome::NoRow;
    tracks.removeAt(row);
    restackTracks(tracks);
    return RemoveOutcome::Removed;
}

bool setTrackStart(AudioTracks& tracks, qint64 row, quint64 start) {
    if (!isRow(tracks, row))
        return false;
    tracks[row].f_Position_To_Start = start;
    const bool oneAtZero = std::any_of(tracks.cbegin(), tracks.cend(), [](const Object_Audio_Track& t) {
        return t.f_Position_To_Start == 0;
    });
    if (!oneAtZero) // the joint time line always begins with a track
        tracks[0].f_Position_To_Start = 0;
    return true;
}

QString Get_Time_String_From_Seconds(float seconds) {
    const auto whole = [](double value) {
        return std::isfinite(value) ? int(std::clamp(std::trunc(value), -2147483648.0, 2147483647.0)) : 0;
    };
    const double s = seconds;
    const int h = whole(s / 3600);
    const int m = whole(s / 60 - 60.0 * h);
    const int sec = whole(s - 60.0 * m - 3600.0 * h);
    return QString::asprintf("%02d:%02d:%02d", h, m, sec);
}

MixPlan buildMixPlan(const AudioTracks& tracks, const QString& result) {
    MixPlan mix;
    mix.tracksAfter = tracks;
    // Largest start first, then walked from the end: smallest start first.
    QList<qsizetype> order(tracks.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) {
        return tracks[a].f_Position_To_Start > tracks[b].f_Position_To_Start;
    });
    mix.plan.steps.push_back(step::DeleteFile{result});
    for (auto it = order.crbegin(); it != order.crend(); ++it) {
        Object_Audio_Track& track = mix.tracksAfter[*it];
        if (track.f_Position_To_Start != 0) {
            const QString padded = paddedPath(track.s_Path);
            mix.plan.steps.push_back(
                step::Run{Tool::Sox,
                          {track.s_Path, padded, "pad",
                           QString::asprintf("%d", qint32(quint32(track.f_Position_To_Start)))}});
            track.s_Path = padded;
        }
        mix.inputs << track.s_Path;
    }
    mix.plan.steps.push_back(step::Run{Tool::Sox, QStringList{"-m"} + mix.inputs + QStringList{result}});
    mix.plan.steps.push_back(step::RequireAudio{result, QStringLiteral("Joining the tracks")});
    return mix;
}
