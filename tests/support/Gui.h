#pragma once

#include <QApplication>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <functional>
#include <memory>

class AppDelegate;
class Document;
class QWidget;

namespace gui {

// Starts the application's delegate as main() does, with HOME at `home`.
std::unique_ptr<AppDelegate> startApplication(const QString& home);

// Waits until no plan is queued or running.
bool waitIdle(AppDelegate& app, int timeoutMs = 30000);

// The first document window, made as at launch and loaded with the silence track.
Document* firstDocument(AppDelegate& app);

// Polls until a modal widget of type T is up, then hands it to `act`.
template <typename T> void whenModal(std::function<void(T*)> act, int triesLeft = 3000) {
    QTimer::singleShot(10, [act, triesLeft] {
        if (auto* widget = qobject_cast<T*>(QApplication::activeModalWidget()))
            act(widget);
        else if (triesLeft > 0)
            whenModal<T>(act, triesLeft - 1);
    });
}

// As whenModal, for the modal widget of type T named `name`: the effect
// dialogs are one class, told apart by their names ("Window_Echo").
template <typename T> void whenModal(const QString& name, std::function<void(T*)> act, int triesLeft = 3000) {
    QTimer::singleShot(10, [name, act, triesLeft] {
        auto* widget = qobject_cast<T*>(QApplication::activeModalWidget());
        if (widget && widget->objectName() == name)
            act(widget);
        else if (triesLeft > 0)
            whenModal<T>(name, act, triesLeft - 1);
    });
}

// What a file dialog offered, captured when it was answered.
struct FileDialogSeen {
    bool shown = false;
    QString title;
    QStringList nameFilters;
    int fileMode = -1;
    QString proposed;  // the file the dialog had chosen before it was answered
    bool stop = false; // set to give up waiting for the dialog
};
// Answers the next modal file dialog: selects `path`, or cancels when empty.
std::shared_ptr<FileDialogSeen> answerFileDialog(const QString& path);

// What an alert said, captured when it was closed with its only button.
struct AlertSeen {
    bool shown = false;
    QString text;
    QString informativeText;
    QStringList buttons;
    bool stop = false; // set to give up waiting for the alert
};
// Closes the next alert with its first button (or the one named `press`) and
// records what it said, unless `stop` is set first.
std::shared_ptr<AlertSeen> answerAlert(const QString& press = {});

// Runs `open` (which shows the file dialog), answers it with `path` and waits
// until the document has finished loading and drawn its waveform.
bool openInto(Document* document, const QString& path, const std::function<void()>& open);

// Catches every URL the editor asks the desktop to open, once made the
// handler of a scheme with QDesktopServices::setUrlHandler(scheme, catcher, "open").
class UrlCatcher : public QObject {
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl& url) { urls.append(url); }
};

// Opens `path` in a new window through File ▸ Open… and waits until it has
// loaded and every tool run has ended; null when it does not load.
Document* openInNewWindow(AppDelegate& app, const QString& path);

// Closes every window and waits for the runner. A window on the silence
// track deletes it when its history is cleared, as the editor's rules say:
// the track is made again, so that the next window finds it. False when the
// runner did not come to rest.
bool closeAllWindows(AppDelegate& app);

// Closes `d` as its title bar's button does; a window holding unexported
// versions asks first, and `press` answers. True when the window closed.
bool closeDocument(Document* d, const QString& press = QStringLiteral("Close Without Exporting"));

} // namespace gui
