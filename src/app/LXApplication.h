#pragma once

#include <QAbstractNativeEventFilter>
#include <QApplication>

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

    // Fusion with a dark palette: the recording pages are dark, and the rest
    // of the application matches them.
    static void applyLook(QApplication &app);
};
