#include "Names.h"

#include <QFileInfo>

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
