#pragma once

#include "Error.h"

#include <QCoreApplication>

class QMessageBox;
class QPushButton;
class QWidget;

// The alerts and questions that sheet the main window or the login panel.
// Each is window-modal, deletes itself when closed, and is named for screen
// readers by its texts.
struct Sheets
{
    Q_DECLARE_TR_FUNCTIONS(Sheets)

public:
    // The one way errors reach the user: a capture error in its own words;
    // otherwise a server error, with the tool's own text under the details;
    // code 26, whatever the domain, as a failed authentication.
    static QMessageBox *errorAlert(QWidget *parent, const Error &error);
    // Not enough room on the volume called `volume` to record; while
    // recording, the alert says the recording has been paused.
    static QMessageBox *diskSpaceAlert(QWidget *parent, const QString &volume, bool whileRecording);
    // "Your current recording will be deleted…", asked before deleting a
    // recording. `destroy` names the button that deletes; `keep` the one
    // that does not.
    static QMessageBox *deletionQuestion(QWidget *parent, const QString &question, QPushButton **destroy,
        const QString &destroyTitle, QPushButton **keep);
};
