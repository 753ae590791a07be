#pragma once

#include <QObject>
#include <QString>
#include <memory>
#include <optional>

class QLocalServer;
class QLockFile;

// One editor per work folder. Starting empties the work folder, which would
// delete every version of every track of an editor already running on it: so
// the first editor holds a lock inside the folder and listens on a local
// socket named after the user and the folder, and a later start only asks it
// for a new window, or for one window for each file it was given. A lock
// whose holder has died is taken over.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Role {
        First,     // this process owns the folder and listens for later starts
        Forwarded, // a running editor owns it and has opened the windows
        Failed,    // neither could be done; error() says why
    };

    explicit SingleInstance(QString workFolder, QObject* parent = nullptr);
    ~SingleInstance() override;

    // `files` (absolute paths) go to a running editor; none asks for a window.
    Role start(const QStringList& files = {});
    QString error() const { return m_error; }

    // "tanselo-<uid>-<hash of the folder>": one name per user and folder.
    static QString serverName(const QString& workFolder);

    // What a later start sends: "open", each file percent-encoded on a line
    // of its own, then an empty line. Any path, newlines included, survives.
    static QByteArray openRequest(const QStringList& files);
    // The files of a whole request; nothing when `request` is not one yet.
    static std::optional<QStringList> filesOfRequest(const QByteArray& request);

signals:
    // A later start asked for a window for each of `files`, or for one new
    // window when there are none; the reply goes once this returns.
    void openRequested(const QStringList& files);

private:
    bool listen();
    bool askRunningEditor(const QStringList& files);

    QString m_folder;
    QString m_error;
    std::unique_ptr<QLockFile> m_lock;
    QLocalServer* m_server = nullptr;
};
