#include "application/AppDelegate.h"
#include "session/CommandLine.h"

#include <QApplication>
#include <QCommandLineParser>
#include <algorithm>
#include <memory>
#include <string_view>

namespace {
// --help and --version only print, so they need no display: they are
// answered by a core application, everything else by the windowed one.
bool onlyPrints(int argc, char* argv[]) {
    return std::any_of(argv + 1, argv + argc, [](const char* argument) {
        for (std::string_view option : {"-h", "--help", "-?", "--help-all", "-v", "--version"})
            if (argument == option)
                return true;
        return false;
    });
}
} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication::setApplicationName(QStringLiteral("Tanselo"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TANSELO_VERSION));
    const std::unique_ptr<QCoreApplication> application = onlyPrints(argc, argv)
                                                              ? std::make_unique<QCoreApplication>(argc, argv)
                                                              : std::make_unique<QApplication>(argc, argv);

    // tanselo [FILE…]; --help and --version print and end here.
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Tanselo, an audio editor. Opens each FILE in a window of "
                       "its own, or one window with a silent track when none is "
                       "given. A running editor opens them instead."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("An audio file to open."),
                                 QStringLiteral("[FILE…]"));
    parser.process(*application);
    const QStringList files = givenFiles(parser.positionalArguments());

    AppDelegate delegate;
    if (const std::optional<int> status = delegate.applicationDidFinishLaunching(files))
        return *status;
    // Reopened windows of an editor that died stand in for the first window;
    // files named here open after them.
    if (!delegate.offerRecovery() || !files.isEmpty())
        delegate.openFiles(files);
    return QApplication::exec();
}
