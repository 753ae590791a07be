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

ResultNames editNames(const QString& workFolder, const QString& track, const QDateTime& now) {
    // Every suffix an operation names its working parts with.
    static const QStringList parts = {QStringLiteral("Before"), QStringLiteral("After"),
                                      QStringLiteral("Selection"), QStringLiteral("SelectionAfterAmplify"),
                                      QStringLiteral("Silence")};
    QDateTime when = now;
    auto isAPart = [&](const ResultNames& names) {
        return std::any_of(parts.begin(), parts.end(),
                           [&](const QString& suffix) { return names.path(suffix) == track; });
    };
    while (isAPart(ResultNames(workFolder, when)))
        when = when.addSecs(1);
    return ResultNames(workFolder, when);
}

QString pathInFolder(const QString& folder, const QString& name) {
    return folder + u'/' + name;
}

QString fileUrlText(const QString& folder, const QString& name) {
    return QStringLiteral("file://") + pathInFolder(folder, name);
}

QString paddedPath(const QString& wav) {
    const QFileInfo info(wav);
    return pathInFolder(info.path(), info.completeBaseName() + QStringLiteral("_PAD.wav"));
}
