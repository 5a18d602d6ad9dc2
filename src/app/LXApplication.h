#pragma once

#include <QApplication>

// The application object: applies Lumex's look and keeps an exception that
// escapes an event handler from ending the program (it is logged instead).
class LXApplication final : public QApplication
{
    Q_OBJECT

public:
    LXApplication(int &argc, char **argv);

    bool notify(QObject *receiver, QEvent *event) override;

    // Fusion with a dark palette: the recording pages are dark, and the rest
    // of the application matches them.
    static void applyLook(QApplication &app);
};
