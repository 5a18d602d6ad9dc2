#pragma once

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QStringList>

#include <functional>

class QLocalServer;

// The application object: applies Lumex's look, keeps an exception that
// escapes an event handler from ending the program (it is logged instead),
// and turns the window system's record/pause hot key event into
// "RecordPauseKeyShortcutTriggered".
class LXApplication final : public QApplication, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    LXApplication(int &argc, char **argv);

    bool notify(QObject *receiver, QEvent *event) override;
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

    // One Lumex runs per user. A second launch hands its files (absolute
    // paths, possibly none) to the running one and ends: true when a running
    // instance took them.
    static bool handOverToRunningInstance(const QStringList &files);
    // Becomes the running instance (the server belongs to `owner`); files
    // handed over arrive at `open` on the main thread. Null when the socket
    // cannot be taken.
    static QLocalServer *listenForOtherInstances(QObject *owner, std::function<void(const QStringList &)> open);
    // Where the running instance listens: one socket per user.
    static QString instanceSocketName();
    // The files named on a command line, made absolute.
    static QStringList filesFromArguments(const QStringList &arguments);

    // The string table of the desktop's language (LANGUAGE, then LC_ALL,
    // LC_MESSAGES, LANG, in Qt's order of preference), with Qt's own texts
    // in the same language. English, the language of the source texts, needs
    // none, so an English entry before another language ends the search.
    static void installTranslations(QCoreApplication &app);
    // --version and --help are answered before any connection to a display,
    // so they work on a console: the exit status, or -1 to start normally.
    static int answerInformationRequest(int &argc, char **argv);

    // SIGTERM (a logout or shutdown), SIGINT and SIGHUP reach `handle` on
    // the main thread, through a pipe the handler writes to, instead of
    // ending the process where it stands.
    static void catchTerminationSignals(QObject *owner, std::function<void(int)> handle);

    // Fusion with a dark palette: the recording pages are dark, and the rest
    // of the application matches them.
    static void applyLook(QApplication &app);
};
