#pragma once

#include <QObject>
#include <QString>
#include <memory>

class QLocalServer;
class QLockFile;

// One editor per work folder. Starting empties the work folder, which would
// delete every version of every track of an editor already running on it: so
// the first editor holds a lock inside the folder and listens on a local
// socket named after the user and the folder, and a later start only asks it
// for a new window. A lock whose holder has died is taken over.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Role {
        First,     // this process owns the folder and listens for later starts
        Forwarded, // a running editor owns it and has opened a new window
        Failed,    // neither could be done; error() says why
    };

    explicit SingleInstance(QString workFolder, QObject* parent = nullptr);
    ~SingleInstance() override;

    Role start();
    QString error() const { return m_error; }

    // "tanselo-<uid>-<hash of the folder>": one name per user and folder.
    static QString serverName(const QString& workFolder);

signals:
    // A later start asked for a window; the reply goes once this returns.
    void newWindowRequested();

private:
    bool listen();
    bool askRunningEditor();

    QString m_folder;
    QString m_error;
    std::unique_ptr<QLockFile> m_lock;
    QLocalServer* m_server = nullptr;
};
