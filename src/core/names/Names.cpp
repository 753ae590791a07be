#include "Names.h"

#include <QFileInfo>
#include <QStringList>
#include <algorithm>

ResultNames::ResultNames(const QString& workFolder, const QDateTime& when)
    : m_folder(workFolder), m_stamp(when.toString(QStringLiteral("yyyy-MM-dd-HH-mm-ss"))) {}

ResultNames::ResultNames(const QString& workFolder, const QString& stamp)
    : m_folder(workFolder), m_stamp(stamp) {}

QString ResultNames::name(const QString& suffix) const {
    return m_stamp + suffix + QStringLiteral(".wav");
}

QString ResultNames::path(const QString& suffix) const {
    return pathInFolder(m_folder, name(suffix));
}

namespace {
std::function<QDateTime()>& fixedClock() {
    static std::function<QDateTime()> fixed;
    return fixed;
}

// Every suffix an operation names its working parts with.
const QStringList& partSuffixes() {
    static const QStringList parts = {QStringLiteral("Before"), QStringLiteral("After"),
                                      QStringLiteral("Selection"), QStringLiteral("SelectionAfterAmplify"),
                                      QStringLiteral("Silence")};
    return parts;
}
} // namespace

QDateTime namingNow() {
    return fixedClock() ? fixedClock()() : QDateTime::currentDateTime();
}

void setNamingClock(std::function<QDateTime()> fixed) {
    fixedClock() = std::move(fixed);
}

ResultNames editNames(const QString& workFolder, const QString& track, const QDateTime& now) {
    return editNames(workFolder, track, NamesInUse{}, Writes::Version, now);
}

ResultNames editNames(const QString& workFolder, const QString& track, const NamesInUse& inUse, Writes writes,
                      const QDateTime& now) {
    const auto busy = [&](const QString& path) {
        return path == track || path == inUse.clipboard || inUse.others.contains(path) ||
               inUse.own.contains(path);
    };
    // A file no window lists (one of a closed window) is in the way too where
    // the plan does not delete it first: ffmpeg never overwrites, so a part
    // or a clip would be that old file.
    const auto free = [&](const ResultNames& names) {
        const QStringList& parts = partSuffixes();
        if (std::any_of(parts.begin(), parts.end(), [&](const QString& suffix) {
                return busy(names.path(suffix)) || QFileInfo::exists(names.path(suffix));
            }))
            return false;
        const QString plain = names.path();
        if (inUse.others.contains(plain))
            return false;
        switch (writes) {
        case Writes::Version: // replaces a version of this window's, never the copied audio of another
            return plain != inUse.clipboard || inUse.own.contains(plain);
        case Writes::Clip: // replaces the copied audio, never a version
            return plain != track && !inUse.own.contains(plain) &&
                   (plain == inUse.clipboard || !QFileInfo::exists(plain));
        case Writes::VersionAndClip: // a cut: its clip is its result
            return true;
        }
        return true;
    };
    QDateTime when = now;
    while (!free(ResultNames(workFolder, when)))
        when = when.addSecs(1);
    return ResultNames(workFolder, when);
}

QString pathInFolder(const QString& folder, const QString& name) {
    return folder + u'/' + name;
}

namespace {
constexpr QLatin1StringView FileScheme("file://");
}

QString fileUrlText(const QString& folder, const QString& name) {
    return fileUrlText(pathInFolder(folder, name));
}

QString fileUrlText(const QString& path) {
    return FileScheme + path;
}

QString pathOfFileUrlText(const QString& url) {
    return url.startsWith(FileScheme) ? url.mid(FileScheme.size()) : url;
}

QString paddedPath(const QString& wav) {
    const QFileInfo info(wav);
    return pathInFolder(info.path(), info.completeBaseName() + QStringLiteral("_PAD.wav"));
}
