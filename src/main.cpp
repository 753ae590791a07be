#include "app/AppDelegate.h"
#include "app/Icons.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tanselo"));
    QApplication::setWindowIcon(toolbarIcon(QStringLiteral("play")));

    AppDelegate delegate;
    if (const std::optional<int> status = delegate.applicationDidFinishLaunching())
        return *status;
    delegate.newDocument();
    return QApplication::exec();
}
