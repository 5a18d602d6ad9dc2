#pragma once

#include <QMainWindow>

#include <array>

class QAction;
class QImage;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class LXPlaceholderLineEdit;
class LXPushView;
class LXRecordButton;
class LXSourceTile;
class LXWorkflowMenu;
class VKPopUpButton;

// The main window: four pages taking turns in the content box, the button
// strip and the menus. It keeps its widgets to itself; the application
// controller tells it what to show and hears what the user did through its
// signals. Every control has an object name and an accessible name, so tests
// and screen readers find them without reaching into the window.
class LXMainWindow final : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXMainWindow)

public:
    enum class Page { SourceChooser, Record, Metadata, Done };
    Q_ENUM(Page)
    enum class Source { Video, Audio, Screen, File };
    Q_ENUM(Source)

    explicit LXMainWindow(QWidget *parent = nullptr);

    // A page further along the way in slides in from the right, one further
    // back from the left. "Start Over" is offered between the source chooser
    // and the done page.
    void showSourceChooser();
    void showRecordPage();
    void showMetadataPage();
    void showDonePage();
    Page currentPage() const { return m_currentPage; }

    // Shows who is signed in where and enables the source tiles; before a
    // sign-in the tiles are off and the window says how to connect. Signing in
    // is offered only while not connected: a new sign-in starts from a new
    // recording.
    void setConnected(bool connected, const QString &user = QString(), const QString &host = QString());

    // The record/pause button and menu item: their title, the button's
    // picture (see LXRecordButton) and whether either can be used.
    void setRecordControls(const QString &title, const QString &imageName, bool enabled);
    void setCameraNames(const QStringList &names);
    // An empty microphone menu offers nothing to choose, so it stays hidden
    // whatever is asked here.
    void setMicrophoneListHidden(bool hidden);

    // Menu items in the workflow pop-up, as "TITLE\n$$$$\nDESCRIPTION" texts;
    // choosing one emits workflowChosen with its index in `titles`.
    void setWorkflows(const QStringList &titles);
    void setChosenWorkflowTitle(const QString &title);
    // Typing beyond these lengths is cut off.
    void setMetadataLengthLimits(int title, int description);
    void setTitlePlaceholderImageVisible(bool visible);
    // The snapshot of the chosen remote camera; a null image leaves the
    // preview blank.
    void setRemotePreview(const QImage &image);

signals:
    // The user asked to close the window; the controller decides.
    void closeRequested();
    void pageChanged();
    void sourceClicked(LXMainWindow::Source source);
    void recordPauseClicked();
    void startOverClicked();
    void publishClicked();
    void newPodcastClicked();
    void workflowChosen(int index);
    void signInRequested();
    void preferencesRequested();
    void transfersRequested();
    void cameraConfigurationRequested();
    void quitRequested();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *makeButtonStrip(QWidget *parent);
    QWidget *makeSourceChooser();
    QWidget *makeRecordPage();
    QWidget *makeMetadataPage();
    QWidget *makeDonePage();
    void makeMenus();
    void showPage(Page page);

    LXPushView *m_contentBox = nullptr;
    std::array<QWidget *, 4> m_pages {};
    Page m_currentPage = Page::SourceChooser;
    std::array<LXSourceTile *, 4> m_tiles {};
    QLabel *m_connectionStatus = nullptr;

    VKPopUpButton *m_cameras = nullptr;
    VKPopUpButton *m_microphones = nullptr;
    QLabel *m_previewImage = nullptr;

    LXPlaceholderLineEdit *m_title = nullptr;
    QPlainTextEdit *m_description = nullptr;
    QPushButton *m_workflowButton = nullptr;
    LXWorkflowMenu *m_workflowMenu = nullptr;

    QPushButton *m_startOver = nullptr;
    QPushButton *m_publish = nullptr;
    LXRecordButton *m_recordPause = nullptr;

    QAction *m_recordPauseMenuItem = nullptr;
    QAction *m_signInMenuItem = nullptr;
};
