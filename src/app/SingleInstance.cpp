#include "SingleInstance.h"

#include "WorkFolder.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QThread>
#include <unistd.h>

namespace {
const QByteArray Request = "new-window\n";
const QByteArray Reply = "ok\n";
constexpr int AnswerMs = 10000; // a busy editor answers once its current event is done
} // namespace

SingleInstance::SingleInstance(QString workFolder, QObject* parent)
    : QObject(parent), m_folder(std::move(workFolder)) {}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::serverName(const QString& workFolder) {
    const QByteArray folder =
        QFile::encodeName(QDir(workFolder).canonicalPath().isEmpty() ? QDir::cleanPath(workFolder)
                                                                     : QDir(workFolder).canonicalPath());
    const QByteArray hash = QCryptographicHash::hash(folder, QCryptographicHash::Sha256).toHex().left(16);
    return QStringLiteral("tanselo-%1-%2").arg(::getuid()).arg(QString::fromLatin1(hash));
}

SingleInstance::Role SingleInstance::start() {
    m_lock = std::make_unique<QLockFile>(QDir(m_folder).filePath(workFolderLockName()));
    // A lock is stale only when the editor that took it is gone, however old.
    m_lock->setStaleLockTime(0);
    // The holder may be between taking its lock and listening: ask again for
    // a while, and take the lock over should the holder die meanwhile.
    const QDeadlineTimer deadline(AnswerMs);
    while (!m_lock->tryLock(0)) {
        if (m_lock->error() != QLockFile::LockFailedError) {
            m_error = QStringLiteral("The lock %1 could not be made.")
                          .arg(QDir(m_folder).filePath(workFolderLockName()));
            return Role::Failed;
        }
        if (askRunningEditor())
            return Role::Forwarded;
        if (deadline.hasExpired()) {
            m_error =
                QStringLiteral("Tanselo is already running with the work folder %1, but does not answer.")
                    .arg(m_folder);
            return Role::Failed;
        }
        QThread::msleep(100);
    }
    if (!listen())
        return Role::Failed;
    return Role::First;
}

bool SingleInstance::listen() {
    const QString name = serverName(m_folder);
    // A socket left by a killed editor stays behind; holding the lock, this
    // process may remove it.
    QLocalServer::removeServer(name);
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server->listen(name)) {
        m_error = QStringLiteral("Could not listen for later starts: %1.").arg(m_server->errorString());
        return false;
    }
    connect(m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = m_server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
                if (!socket->canReadLine())
                    return;
                if (socket->readLine() == Request) {
                    emit newWindowRequested();
                    socket->write(Reply);
                    socket->flush();
                }
                socket->disconnectFromServer();
            });
        }
    });
    return true;
}

bool SingleInstance::askRunningEditor() {
    QLocalSocket socket;
    socket.connectToServer(serverName(m_folder));
    if (!socket.waitForConnected(1000))
        return false;
    socket.write(Request);
    if (!socket.waitForBytesWritten(1000))
        return false;
    QByteArray answer;
    const QDeadlineTimer deadline(AnswerMs);
    while (!answer.contains('\n') && !deadline.hasExpired() &&
           socket.waitForReadyRead(int(deadline.remainingTime())))
        answer += socket.readAll();
    return answer == Reply;
}
