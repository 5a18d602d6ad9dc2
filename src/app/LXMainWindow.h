#pragma once

#include "CaptureSession.h"

#include <QMainWindow>

#include <array>
#include <memory>

class AudioLevelMeter;
class CaptureVideoPreviewWidget;
class QAction;
class QImage;
class QLabel;
class QMenu;
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

    // How long a page takes to slide in unless told otherwise.
    static constexpr int kPushDurationMs = 260;

    // A page further along the way in slides in from the right, one further
    // back from the left. "Start Over" is offered between the source chooser
    // and the done page.
    void showSourceChooser(int durationMs = kPushDurationMs);
    void showRecordPage(int durationMs = kPushDurationMs);
    void showMetadataPage();
    // The metadata page for files chosen on disk, listing them, with "Back"
    // to the source chooser.
    void showMetadataPageForFiles(const QStringList &paths);
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
    // The device menus the pop-up buttons offer (the controller keeps them)
    // and the title each button shows for the chosen device.
    void setDeviceMenus(QMenu *cameras, QMenu *microphones);
    void setChosenCamera(const QString &title);
    void setChosenMicrophone(const QString &title);
    // The record page's pictures: the screen or audio picture (null hides
    // it) and the hot-key hint; a camera's snapshot is setRemotePreview.
    void setScreenPreviewImage(const QImage &image);
    void setHotkeySuggestion(const QString &text);
    // A local camera's live picture over the preview; null ends it.
    void showLocalPreview(const std::shared_ptr<CaptureSession> &session);
    // A chosen microphone's level under the devices; null hides the meter.
    void setMicrophoneLevelConnection(const CaptureConnectionPtr &connection);
    // The start-over button offers "Back" (backClicked) instead.
    void offerBack();
    // Files dropped on the window are offered (filesDropped) only while this
    // is on.
    void setAcceptsFileDrops(bool accepts) { m_acceptsFileDrops = accepts; }
    // An empty menu offers nothing to choose, so its pop-up stays hidden
    // whatever is asked here.
    void setDevicePopUpsHidden(bool microphones, bool cameras);

    // Menu items in the workflow pop-up, as "TITLE\n$$$$\nDESCRIPTION" texts;
    // choosing one emits workflowChosen with its index in `titles`.
    void setWorkflows(const QStringList &titles);
    void setChosenWorkflowTitle(const QString &title);
    // Typing beyond these lengths is cut off.
    void setMetadataLengthLimits(int title, int description);
    void setTitlePlaceholderImageVisible(bool visible);
    // The snapshot of the chosen remote camera, shown in the video page's
    // preview; a null image hides the preview.
    void setRemotePreview(const QImage &image);

signals:
    // The user asked to close the window; the controller decides.
    void closeRequested();
    void pageChanged();
    void sourceClicked(LXMainWindow::Source source);
    void recordPauseClicked();
    void startOverClicked();
    void backClicked();
    void filesDropped(const QStringList &paths);
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
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    QWidget *makeButtonStrip(QWidget *parent);
    QWidget *makeSourceChooser();
    QWidget *makeRecordPage();
    QWidget *makeMetadataPage();
    QWidget *makeDonePage();
    void makeMenus();
    void describeForAssistiveTechnology();
    void showPage(Page page, int durationMs = kPushDurationMs);

    LXPushView *m_contentBox = nullptr;
    std::array<QWidget *, 4> m_pages {};
    Page m_currentPage = Page::SourceChooser;
    std::array<LXSourceTile *, 4> m_tiles {};
    QLabel *m_connectionStatus = nullptr;

    VKPopUpButton *m_cameras = nullptr;
    VKPopUpButton *m_microphones = nullptr;
    QLabel *m_previewImage = nullptr;
    QLabel *m_screenPreviewImage = nullptr;
    QLabel *m_hotkeySuggestion = nullptr;
    CaptureVideoPreviewWidget *m_localPreview = nullptr;
    AudioLevelMeter *m_levelMeter = nullptr;
    QLabel *m_helpText = nullptr;
    QLabel *m_chosenFiles = nullptr;
    bool m_acceptsFileDrops = false;
    bool m_startOverGoesBack = false;

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
