#pragma once

#include <QMainWindow>
#include <QPointer>

class CountdownView;
class DonePage;
class LXPushView;
class LXRecordButton;
class MetadataPage;
class QAction;
class QFileDialog;
class QPushButton;
class RecordPage;
class SourceChooserPage;

// The main window: four pages taking turns in the content box, the button
// strip under them and the menus. The application controller tells it and
// its pages what to show and hears what the user did through their signals.
// Every control has an object name and an accessible name, so tests and
// screen readers find them without reaching into the window.
class LXMainWindow final : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXMainWindow)

public:
    enum class Page { SourceChooser, Record, Metadata, Done };
    Q_ENUM(Page)

    explicit LXMainWindow(QWidget *parent = nullptr);

    // The pages after the first are made when first asked for: the window
    // is shown at start-up, behind the login panel, with the first alone.
    SourceChooserPage *sourceChooserPage() const { return m_sourceChooser; }
    RecordPage *recordPage();
    MetadataPage *metadataPage();
    DonePage *donePage();
    bool hasMadeLaterPages() const { return m_record != nullptr; }

    // How long a page takes to slide in unless told otherwise.
    static constexpr int kPushDurationMs = 260;

    // A page further along the way in slides in from the right, one further
    // back from the left.
    void showSourceChooser(int durationMs = kPushDurationMs);
    // With "Back" to the source chooser and "Publish" ready for a pause.
    void showRecordPage(int durationMs = kPushDurationMs);
    void showMetadataPage();
    // The metadata page for files chosen on disk, listing them, with "Back"
    // to the source chooser and "Done".
    void showMetadataPageForFiles(const QStringList &paths);
    // The metadata page for a paused recording: "Back" to it and "Done".
    void showMetadataPageForRecording();
    // Back from the metadata page to the paused recording.
    void showPausedRecordPage();
    // The done page with its new-recording button, and nothing to go back to.
    void showDonePage();
    // While paused, "Start Over" and "Publish" are offered; while recording
    // neither is.
    void offerPausedChoices(bool paused);
    // The panel in which movie files to publish are chosen.
    QFileDialog *makeMoviePanel();
    Page currentPage() const { return m_currentPage; }

    // Signing in is offered only while not connected: a new sign-in starts
    // from a new recording.
    void setConnected(bool connected, const QString &user = QString(), const QString &host = QString());
    // The record/pause button and menu item: their title, the button's
    // picture (see LXRecordButton) and whether either can be used.
    void setRecordControls(const QString &title, const QString &imageName, bool enabled);
    // Files dropped on the window are offered (filesDropped) only while this
    // is on.
    void setAcceptsFileDrops(bool accepts) { m_acceptsFileDrops = accepts; }

    // What the button strip offers.
    enum class StartOverOffer { None, StartOver, BackToSources, BackToRecording };
    enum class PublishOffer { None, Publish, Done };
    // Shows the start-over button titled for what it does (startOverClicked,
    // backClicked or cancelClicked); None hides it.
    void setStartOverOffer(StartOverOffer offer);
    // Shows the publish button as "Publish" (publishClicked) or "Done"
    // (submitClicked); None hides it.
    void setPublishOffer(PublishOffer offer);
    // A shown button is brought in front of the countdown over the strip.
    void setRecordPauseButtonVisible(bool visible);
    // The countdown covers the strip, one point wider than it and one to the
    // left, below its buttons, and follows the strip's width.
    void showCountdown(CountdownView *countdown);

    // Whether a sheet (a window-modal alert or panel) is on the window;
    // sheetsChanged tells when that may have changed.
    bool hasSheet() const;

signals:
    // The user asked to close the window; the controller decides.
    void closeRequested();
    void pageChanged();
    void sheetsChanged();
    void recordPauseClicked();
    void startOverClicked();
    void backClicked();
    void cancelClicked();
    void publishClicked();
    void submitClicked();
    void filesDropped(const QStringList &paths);
    void signInRequested();
    void preferencesRequested();
    void transfersRequested();
    void cameraConfigurationRequested();
    void quitRequested();
    void recordPauseMenuItemInvoked();
    // From the later pages.
    void titleEdited(const QString &title);
    void descriptionEdited(const QString &description);
    void workflowChosen(int index);
    void newPodcastClicked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void childEvent(QChildEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    QWidget *makeButtonStrip(QWidget *parent);
    void makeMenus();
    void showPage(Page page, int durationMs = kPushDurationMs);
    void offerBack();
    void makeLaterPages();

    LXPushView *m_contentBox = nullptr;
    SourceChooserPage *m_sourceChooser = nullptr;
    RecordPage *m_record = nullptr;
    MetadataPage *m_metadata = nullptr;
    DonePage *m_done = nullptr;
    Page m_currentPage = Page::SourceChooser;
    bool m_acceptsFileDrops = false;
    StartOverOffer m_startOverOffer = StartOverOffer::StartOver;
    PublishOffer m_publishOffer = PublishOffer::Publish;
    QWidget *m_buttonBox = nullptr;
    QPointer<QWidget> m_buttonStripOverlay;
    QPushButton *m_startOver = nullptr;
    QPushButton *m_publish = nullptr;
    LXRecordButton *m_recordPause = nullptr;
    QAction *m_recordPauseMenuItem = nullptr;
    QAction *m_signInMenuItem = nullptr;
};
