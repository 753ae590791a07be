#include "SingleInstance.h"

#include "session/WorkFolder.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QThread>
#include <QUrl>
#include <memory>
#include <unistd.h>

namespace {
const QByteArray RequestWord = "open";
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

QByteArray SingleInstance::openRequest(const QStringList& files) {
    QByteArray request = RequestWord + '\n';
    for (const QString& file : files)
        request += QUrl::toPercentEncoding(file, "/") + '\n';
    return request + '\n';
}

std::optional<QStringList> SingleInstance::filesOfRequest(const QByteArray& request) {
    if (!request.startsWith(RequestWord + '\n') || !request.endsWith("\n\n"))
        return std::nullopt;
    QStringList files;
    const QList<QByteArray> lines = request.chopped(2).split('\n');
    for (qsizetype i = 1; i < lines.size(); ++i)
        files << QUrl::fromPercentEncoding(lines.at(i));
    return files;
}

SingleInstance::Role SingleInstance::start(const QStringList& files) {
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
        if (askRunningEditor(files))
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
            // The request may come in several pieces; it ends with an empty line.
            auto received = std::make_shared<QByteArray>();
            connect(socket, &QLocalSocket::readyRead, socket, [this, socket, received] {
                *received += socket->readAll();
                const std::optional<QStringList> files = filesOfRequest(*received);
                if (!files) {
                    const QByteArray head = RequestWord + '\n';
                    if (!received->startsWith(head) && !head.startsWith(*received))
                        socket->disconnectFromServer(); // not a request of ours
                    return;
                }
                emit openRequested(*files);
                socket->write(Reply);
                socket->flush();
                socket->disconnectFromServer();
            });
        }
    });
    return true;
}

bool SingleInstance::askRunningEditor(const QStringList& files) {
    QLocalSocket socket;
    socket.connectToServer(serverName(m_folder));
    if (!socket.waitForConnected(1000))
        return false;
    socket.write(openRequest(files));
    if (!socket.waitForBytesWritten(1000))
        return false;
    QByteArray answer;
    const QDeadlineTimer deadline(AnswerMs);
    while (!answer.contains('\n') && !deadline.hasExpired() &&
           socket.waitForReadyRead(int(deadline.remainingTime())))
        answer += socket.readAll();
    return answer == Reply;
}
