#pragma once

#include <QMainWindow>

class QAction;
class QLabel;
class QMenu;
class QPlainTextEdit;
class QPushButton;
class LXPlaceholderLineEdit;
class LXPushView;
class LXSourceTile;
class LXWorkflowMenu;
class VKColorBox;
class VKPopUpButton;

// The main window as loaded: its pages and controls, which the application
// controller drives. It holds no behaviour of its own beyond telling the
// controller that the user wants it closed.
class LXMainWindow final : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXMainWindow)

public:
    explicit LXMainWindow(QWidget *parent = nullptr);

    // The pages that take turns in the content box.
    LXPushView *contentBox = nullptr;
    VKColorBox *buttonBox = nullptr;
    QWidget *sourceChooserView = nullptr;
    QWidget *previewRecordView = nullptr;
    QWidget *metadataEntryView = nullptr;
    QWidget *doneView = nullptr;

    LXSourceTile *videoTile = nullptr;
    LXSourceTile *audioTile = nullptr;
    LXSourceTile *screenTile = nullptr;
    LXSourceTile *fileTile = nullptr;

    QLabel *previewImage = nullptr;
    QLabel *screenPreviewImage = nullptr;
    VKPopUpButton *camerasPopUpButton = nullptr;
    VKPopUpButton *microphonesPopUpButton = nullptr;
    QLabel *hotkeySuggestion = nullptr;
    QLabel *recordingState = nullptr;
    QWidget *timerBackgroundView = nullptr;
    QLabel *recordingTimerTextField = nullptr;

    LXPlaceholderLineEdit *title = nullptr;
    QPlainTextEdit *descriptionField = nullptr;
    QPushButton *workflowPopUpButton = nullptr;
    LXWorkflowMenu *workflowMenu = nullptr;
    QLabel *helpTextField = nullptr;

    QLabel *submittedStatus = nullptr;
    QPushButton *newPodcastButton = nullptr;

    QPushButton *startOver = nullptr;
    QPushButton *publish = nullptr;
    QPushButton *recordPauseButton = nullptr;

    QAction *recordPauseMenuItem = nullptr;
    QAction *preferencesMenuItem = nullptr;
    QAction *transfersMenuItem = nullptr;
    QAction *cameraConfigurationMenuItem = nullptr;
    QAction *quitMenuItem = nullptr;
    QAction *signInMenuItem = nullptr;
    QLabel *connectionStatus = nullptr;

    // Shows who is signed in where, and enables the source tiles; before a
    // sign-in the tiles are off and the window says how to connect.
    void setConnected(bool connected, const QString &user = QString(), const QString &host = QString());

signals:
    // The user asked to close the window; the controller decides.
    void closeRequested();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *makeSourceChooser();
    QWidget *makePreviewRecord();
    QWidget *makeMetadataEntry();
    QWidget *makeDone();
    void makeMenus();
};
