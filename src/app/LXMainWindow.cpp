#include "LXMainWindow.h"

#include "AudioLevelMeter.h"
#include "CaptureVideoPreviewWidget.h"
#include "LXPlaceholderLineEdit.h"
#include "LXPushView.h"
#include "LXRecordButton.h"
#include "LXSourceTile.h"
#include "LXTimerBackgroundView.h"
#include "LXWorkflowMenu.h"
#include "VKColorBox.h"
#include "VKMetalButton.h"
#include "VKPopUpButton.h"

#include <QAction>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QImage>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QLabel *heading(const QString &text, QWidget *parent, qreal scale = 1.5)
{
    auto *label = new QLabel(text, parent);
    QFont f = label->font();
    f.setPointSizeF(f.pointSizeF() * scale);
    f.setWeight(QFont::DemiBold);
    label->setFont(f);
    label->setStyleSheet(QStringLiteral("color: #f2f2f5;"));
    return label;
}

QLabel *subtle(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setStyleSheet(QStringLiteral("color: #9a9aa3;"));
    label->setWordWrap(true);
    return label;
}

QLabel *fieldLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setStyleSheet(QStringLiteral("color: #d8d8de;"));
    return label;
}

// Names a control for tests (object name) and for screen readers.
template<typename W> W *named(W *widget, const char *objectName, const QString &accessibleName)
{
    widget->setObjectName(QLatin1String(objectName));
    widget->setAccessibleName(accessibleName);
    return widget;
}

QAction *named(QAction *action, const char *objectName)
{
    action->setObjectName(QLatin1String(objectName));
    return action;
}

// A plain-text field has no maximum length of its own; typing past it is cut
// off, keeping the cursor where it was.
void limitLength(QPlainTextEdit *field, int maximum)
{
    QObject::connect(field, &QPlainTextEdit::textChanged, field, [field, maximum] {
        const QString text = field->toPlainText();
        if (text.size() <= maximum)
            return;
        QTextCursor cursor = field->textCursor();
        const int position = qMin(cursor.position(), maximum);
        QSignalBlocker blocker(field);
        field->setPlainText(text.left(maximum));
        cursor = field->textCursor();
        cursor.setPosition(position);
        field->setTextCursor(cursor);
    });
}

} // namespace

LXMainWindow::LXMainWindow(QWidget *parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("Lumex"));
    setObjectName(QStringLiteral("LXMainWindow"));

    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    m_contentBox = new LXPushView(central);
    m_contentBox->setObjectName(QStringLiteral("contentBox"));
    m_contentBox->setBackgroundColor(Qt::black);
    m_contentBox->setFrameColor(Qt::black);
    m_contentBox->setDrawsGradient(true);
    m_contentBox->setGradient(QColor(30, 31, 36), QColor(14, 14, 17));
    layout->addWidget(m_contentBox, 1);
    layout->addWidget(makeButtonStrip(central));
    setCentralWidget(central);

    m_pages = { makeSourceChooser(), makeRecordPage(), makeMetadataPage(), makeDonePage() };
    for (QWidget *page : m_pages)
        page->hide();
    m_contentBox->setContentView(m_pages[0]);

    makeMenus();
    setAcceptDrops(true);
    resize(800, 560);
    setMinimumSize(640, 460);
    describeForAssistiveTechnology();
}

void LXMainWindow::describeForAssistiveTechnology()
{
    // Names are given where the controls are made; these say what each is
    // for, read by screen readers after the name.
    for (LXSourceTile *tile : m_tiles)
        tile->setAccessibleDescription(tile->toolTip());
    const std::pair<const char *, QString> descriptions[] = {
        { "startOver", tr("Goes back, or discards the recording and starts over") },
        { "publish", tr("Goes on to describe and publish the recording") },
        { "connectionStatus", tr("The server and account you are signed in with") },
        { "camerasPopUpButton", tr("The camera to record from") },
        { "microphonesPopUpButton", tr("The microphone to record from") },
        { "microphoneLevelMeter", tr("How loud the chosen microphone is") },
        { "previewImage", tr("A recent picture from the remote camera") },
        { "screenPreviewImage", tr("A picture of the screen that is recorded") },
        { "localVideoCaptureView", tr("The live picture of the chosen camera") },
        { "recordingState", tr("Whether a recording is running or paused") },
        { "hotkeySuggestion", tr("The key that starts or pauses a recording from any application") },
        { "recordingTimer", tr("How long the recording has run") },
        { "helpTextField", tr("What to fill in before publishing") },
        { "chosenFiles", tr("The movie files that are published") },
        { "title", tr("The title the recording is published with") },
        { "descriptionField", tr("A description published with the recording") },
        { "workflowPopUpButton", tr("The server workflow that processes the recording") },
        { "submittedStatus", tr("Whether the recording was handed to the server") },
        { "newPodcastButton", tr("Starts a new recording") },
    };
    for (const auto &[objectName, description] : descriptions)
        if (auto *control = findChild<QWidget *>(QLatin1String(objectName)))
            control->setAccessibleDescription(description);
    // A label that shows a changing value is read by that value: a fixed
    // name would hide it, and the description already says what it is.
    for (const char *objectName :
        { "recordingState", "hotkeySuggestion", "recordingTimer", "chosenFiles", "submittedStatus" })
        if (auto *label = findChild<QLabel *>(QLatin1String(objectName)))
            label->setAccessibleName(QString());

    // Tab follows the reading order: the page's controls, then the strip
    // from left to right. Hidden pages drop out of the chain by themselves.
    const QList<QWidget *> chain { m_tiles[0], m_tiles[1], m_tiles[2], m_tiles[3], m_cameras, m_microphones, m_title,
        m_description, m_workflowButton, findChild<QWidget *>(QStringLiteral("newPodcastButton")), m_startOver,
        m_recordPause, m_publish };
    for (qsizetype i = 1; i < chain.size(); ++i)
        setTabOrder(chain[i - 1], chain[i]);
}

QWidget *LXMainWindow::makeButtonStrip(QWidget *parent)
{
    auto *buttonBox = new VKColorBox(parent);
    buttonBox->setDrawsGradient(true);
    buttonBox->setGradient(QColor(44, 45, 50), QColor(28, 28, 32));
    buttonBox->setTopSeparatorColor(QColor(0, 0, 0));
    buttonBox->setFrameColor(Qt::black);
    buttonBox->setFixedHeight(76);
    auto *buttons = new QHBoxLayout(buttonBox);
    buttons->setContentsMargins(18, 10, 18, 10);
    m_startOver = named(new VKMetalButton(tr("Start Over"), buttonBox), "startOver", tr("Start Over"));
    m_publish = named(new VKMetalButton(tr("Publish"), buttonBox), "publish", tr("Publish"));
    m_recordPause = new LXRecordButton(buttonBox);
    m_recordPause->setObjectName(QStringLiteral("recordPauseButton"));
    m_recordPause->setToolTip(tr("Record"));
    // Both are offered on the record page only.
    m_startOver->hide();
    m_publish->hide();
    buttons->addWidget(m_startOver);
    buttons->addStretch(1);
    buttons->addWidget(m_recordPause);
    buttons->addStretch(1);
    buttons->addWidget(m_publish);
    m_recordPause->hide();
    connect(m_startOver, &QPushButton::clicked, this, [this] {
        if (m_startOverGoesBack)
            emit backClicked();
        else
            emit startOverClicked();
    });
    connect(m_publish, &QPushButton::clicked, this, &LXMainWindow::publishClicked);
    connect(m_recordPause, &QPushButton::clicked, this, &LXMainWindow::recordPauseClicked);
    return buttonBox;
}

QWidget *LXMainWindow::makeSourceChooser()
{
    auto *page = new QWidget(m_contentBox);
    page->setObjectName(QStringLiteral("sourceChooserView"));
    auto *v = new QVBoxLayout(page);
    v->setContentsMargins(36, 30, 36, 30);
    v->setSpacing(10);
    v->addWidget(heading(tr("What would you like to record?"), page));
    v->addWidget(subtle(tr("Choose a source. Recordings go to the workflow you pick when you publish."), page));
    v->addSpacing(14);
    auto *grid = new QGridLayout;
    grid->setSpacing(14);
    const struct
    {
        Source source;
        LXGlyphs::Glyph glyph;
        QString title;
        QString toolTip;
        const char *name;
    } tiles[] = {
        { Source::Video, LXGlyphs::Glyph::Camera, tr("Video"),
            tr("Record from a camera in a lecture hall or from this computer's camera"), "videoTile" },
        { Source::Audio, LXGlyphs::Glyph::Microphone, tr("Audio"), tr("Record sound only"), "audioTile" },
        { Source::Screen, LXGlyphs::Glyph::Screen, tr("Screen"), tr("Record this computer's screen with narration"),
            "screenTile" },
        { Source::File, LXGlyphs::Glyph::Film, tr("Movie Files"), tr("Publish movie files you already have"),
            "fileTile" },
    };
    for (int i = 0; i < int(m_tiles.size()); ++i) {
        auto *tile = new LXSourceTile(tiles[i].glyph, tiles[i].title, page);
        tile->setObjectName(QLatin1String(tiles[i].name));
        tile->setToolTip(tiles[i].toolTip);
        tile->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        const Source source = tiles[i].source;
        connect(tile, &QAbstractButton::clicked, this, [this, source] { emit sourceClicked(source); });
        grid->addWidget(tile, 0, i);
        m_tiles[i] = tile;
    }
    v->addLayout(grid, 1);
    m_connectionStatus = subtle(QString(), page);
    m_connectionStatus->setObjectName(QStringLiteral("connectionStatus"));
    v->addWidget(m_connectionStatus);
    return page;
}

QWidget *LXMainWindow::makeRecordPage()
{
    auto *page = new QWidget(m_contentBox);
    page->setObjectName(QStringLiteral("previewRecordView"));
    auto *v = new QVBoxLayout(page);
    v->setContentsMargins(24, 18, 24, 18);
    v->setSpacing(10);

    auto *devices = new QHBoxLayout;
    m_cameras = named(new VKPopUpButton(page), "camerasPopUpButton", tr("Camera"));
    m_microphones = named(new VKPopUpButton(page), "microphonesPopUpButton", tr("Microphone"));
    devices->addWidget(m_cameras);
    devices->addWidget(m_microphones);
    m_levelMeter = named(new AudioLevelMeter(page), "microphoneLevelMeter", tr("Microphone level"));
    m_levelMeter->setFixedWidth(140);
    m_levelMeter->hide();
    devices->addWidget(m_levelMeter, 0, Qt::AlignVCenter);
    devices->addStretch(1);
    v->addLayout(devices);

    auto *stage = new QGridLayout;
    auto *previewImage = m_previewImage = named(new QLabel(page), "previewImage", tr("Preview"));
    previewImage->setAlignment(Qt::AlignCenter);
    previewImage->setMinimumSize(320, 200);
    previewImage->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    previewImage->setStyleSheet(
        QStringLiteral("background: #050506; border: 1px solid #2a2a2f; border-radius: 8px; color: #80808a;"));
    previewImage->setText(tr("No preview yet"));
    auto *screenPreviewImage = m_screenPreviewImage
        = named(new QLabel(page), "screenPreviewImage", tr("Screen preview"));
    screenPreviewImage->setAlignment(Qt::AlignCenter);
    screenPreviewImage->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    screenPreviewImage->hide();
    stage->addWidget(previewImage, 0, 0);
    stage->addWidget(screenPreviewImage, 0, 0);
    m_localPreview = named(new CaptureVideoPreviewWidget(page), "localVideoCaptureView", tr("Camera preview"));
    m_localPreview->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_localPreview->hide();
    stage->addWidget(m_localPreview, 0, 0);
    v->addLayout(stage, 1);

    auto *status = new QHBoxLayout;
    auto *recordingState = named(new QLabel(page), "recordingState", tr("Recording state"));
    recordingState->setStyleSheet(QStringLiteral("color: #d8d8de;"));
    auto *hotkeySuggestion = m_hotkeySuggestion
        = named(subtle(QString(), page), "hotkeySuggestion", tr("Keyboard shortcut"));
    status->addWidget(recordingState);
    status->addWidget(hotkeySuggestion, 1);
    auto *timerBox = new LXTimerBackgroundView(page);
    auto *timerLayout = new QHBoxLayout(timerBox);
    timerLayout->setContentsMargins(14, 4, 14, 4);
    auto *timer = named(new QLabel(QStringLiteral("00:00:00"), timerBox), "recordingTimer", tr("Recording time"));
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    mono.setPointSizeF(font().pointSizeF() * 1.6);
    timer->setFont(mono);
    timer->setStyleSheet(QStringLiteral("color: #f4f4f6;"));
    timerLayout->addWidget(timer);
    status->addWidget(timerBox);
    v->addLayout(status);
    return page;
}

QWidget *LXMainWindow::makeMetadataPage()
{
    auto *page = new QWidget(m_contentBox);
    page->setObjectName(QStringLiteral("metadataEntryView"));
    auto *v = new QVBoxLayout(page);
    v->setContentsMargins(36, 26, 36, 22);
    v->setSpacing(8);
    v->addWidget(heading(tr("Describe your recording"), page));
    v->addWidget(
        m_helpText = named(subtle(tr("Give the recording a title and a description, then choose where it goes."), page),
            "helpTextField", tr("Help")));
    m_chosenFiles = named(subtle(QString(), page), "chosenFiles", tr("Files to publish"));
    m_chosenFiles->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_chosenFiles->hide();
    v->addWidget(m_chosenFiles);
    v->addSpacing(8);
    auto *titleLabel = fieldLabel(tr("Title"), page);
    m_title = named(new LXPlaceholderLineEdit(page), "title", tr("Title"));
    m_title->setPlaceholderText(tr("Title of the recording"));
    titleLabel->setBuddy(m_title);
    auto *descriptionLabel = fieldLabel(tr("Description"), page);
    m_description = named(new QPlainTextEdit(page), "descriptionField", tr("Description"));
    m_description->setPlaceholderText(tr("What is it about?"));
    m_description->setTabChangesFocus(true);
    auto *workflowLabel = fieldLabel(tr("Workflow"), page);
    m_workflowButton = named(new QPushButton(page), "workflowPopUpButton", tr("Workflow"));
    m_workflowMenu = new LXWorkflowMenu(m_workflowButton);
    m_workflowMenu->setObjectName(QStringLiteral("workflowMenu"));
    m_workflowButton->setMenu(m_workflowMenu);
    v->addWidget(titleLabel);
    v->addWidget(m_title);
    v->addWidget(descriptionLabel);
    v->addWidget(m_description, 1);
    v->addWidget(workflowLabel);
    v->addWidget(m_workflowButton, 0, Qt::AlignLeft);
    return page;
}

QWidget *LXMainWindow::makeDonePage()
{
    auto *page = new QWidget(m_contentBox);
    page->setObjectName(QStringLiteral("doneView"));
    auto *v = new QVBoxLayout(page);
    v->setContentsMargins(36, 30, 36, 30);
    v->addStretch(1);
    auto *submittedStatus = named(heading(QString(), page, 1.3), "submittedStatus", tr("Submission status"));
    submittedStatus->setAlignment(Qt::AlignCenter);
    submittedStatus->setWordWrap(true);
    v->addWidget(submittedStatus);
    auto *newPodcast = named(new QPushButton(tr("New Recording"), page), "newPodcastButton", tr("New Recording"));
    connect(newPodcast, &QPushButton::clicked, this, &LXMainWindow::newPodcastClicked);
    v->addWidget(newPodcast, 0, Qt::AlignHCenter);
    v->addStretch(1);
    return page;
}

void LXMainWindow::makeMenus()
{
    QMenu *file = menuBar()->addMenu(tr("&Lumex"));
    m_signInMenuItem = named(file->addAction(tr("&Sign In…")), "signInMenuItem");
    QAction *preferences = named(file->addAction(tr("&Preferences…")), "preferencesMenuItem");
    preferences->setShortcut(QKeySequence::Preferences);
    preferences->setMenuRole(QAction::PreferencesRole);
    file->addSeparator();
    QAction *quit = named(file->addAction(tr("&Quit Lumex")), "quitMenuItem");
    quit->setShortcut(QKeySequence::Quit);
    quit->setMenuRole(QAction::QuitRole);

    QMenu *recording = menuBar()->addMenu(tr("&Recording"));
    m_recordPauseMenuItem = named(recording->addAction(tr("Record Podcast")), "recordPauseMenuItem");
    m_recordPauseMenuItem->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));

    QMenu *window = menuBar()->addMenu(tr("&Window"));
    QAction *transfers = named(window->addAction(tr("&Transfers")), "transfersMenuItem");
    QAction *cameraConfiguration
        = named(window->addAction(tr("&Camera Configuration…")), "cameraConfigurationMenuItem");

    connect(m_signInMenuItem, &QAction::triggered, this, &LXMainWindow::signInRequested);
    connect(preferences, &QAction::triggered, this, &LXMainWindow::preferencesRequested);
    connect(quit, &QAction::triggered, this, &LXMainWindow::quitRequested);
    connect(m_recordPauseMenuItem, &QAction::triggered, this, &LXMainWindow::recordPauseClicked);
    connect(transfers, &QAction::triggered, this, &LXMainWindow::transfersRequested);
    connect(cameraConfiguration, &QAction::triggered, this, &LXMainWindow::cameraConfigurationRequested);
}

void LXMainWindow::showSourceChooser(int durationMs)
{
    showPage(Page::SourceChooser, durationMs);
}

void LXMainWindow::showRecordPage(int durationMs)
{
    offerBack();
    m_publish->setText(tr("Publish"));
    m_publish->setAccessibleName(tr("Publish"));
    showPage(Page::Record, durationMs);
}

void LXMainWindow::showMetadataPageForFiles(const QStringList &paths)
{
    QStringList names;
    for (const QString &path : paths)
        names << path.toHtmlEscaped();
    m_chosenFiles->setText(tr("Files to publish:") + QStringLiteral("<br>") + names.join(QStringLiteral("<br>")));
    m_chosenFiles->show();
    m_helpText->hide();
    offerBack();
    showPage(Page::Metadata);
    m_recordPause->hide();
    m_publish->setText(tr("Done"));
    m_publish->setAccessibleName(tr("Done"));
    m_publish->show();
}

void LXMainWindow::offerBack()
{
    m_startOverGoesBack = true;
    m_startOver->setText(tr("Back"));
    m_startOver->setAccessibleName(tr("Back"));
}

void LXMainWindow::showMetadataPage()
{
    showPage(Page::Metadata);
}

void LXMainWindow::showDonePage()
{
    showPage(Page::Done);
}

void LXMainWindow::showPage(Page page, int durationMs)
{
    const Page current = m_currentPage;
    const bool forward = current == Page::SourceChooser || (current == Page::Record && page != Page::SourceChooser);
    m_currentPage = page;
    m_contentBox->pushView(m_pages[size_t(page)],
        forward ? LXPushView::Direction::FromRight : LXPushView::Direction::FromLeft, durationMs);
    m_startOver->setVisible(page != Page::SourceChooser && page != Page::Done);
    m_recordPause->setVisible(page == Page::Record);
    if (page == Page::SourceChooser) {
        m_startOverGoesBack = false;
        m_startOver->setText(tr("Start Over"));
        m_startOver->setAccessibleName(tr("Start Over"));
        m_publish->hide();
        m_chosenFiles->hide();
        m_helpText->show();
    }
    emit pageChanged();
}

void LXMainWindow::setConnected(bool connected, const QString &user, const QString &host)
{
    for (LXSourceTile *tile : m_tiles)
        tile->setEnabled(connected);
    m_signInMenuItem->setEnabled(!connected);
    if (connected)
        m_connectionStatus->setText(tr("Signed in as %1 on %2.").arg(user, host));
    else
        m_connectionStatus->setText(tr("Not connected to a server yet. Choose Lumex ▸ Sign In… to connect."));
}

void LXMainWindow::setRecordControls(const QString &title, const QString &imageName, bool enabled)
{
    m_recordPauseMenuItem->setText(title);
    m_recordPauseMenuItem->setEnabled(enabled);
    m_recordPause->setImageName(imageName);
    m_recordPause->setToolTip(title);
    m_recordPause->setEnabled(enabled);
}

void LXMainWindow::setDeviceMenus(QMenu *cameras, QMenu *microphones)
{
    m_cameras->setMenu(cameras);
    m_microphones->setMenu(microphones);
}

void LXMainWindow::setChosenCamera(const QString &title)
{
    m_cameras->setTitle(title);
}

void LXMainWindow::setChosenMicrophone(const QString &title)
{
    m_microphones->setTitle(title);
}

void LXMainWindow::setDevicePopUpsHidden(bool microphones, bool cameras)
{
    for (auto [popUp, hidden] : { std::pair { m_microphones, microphones }, std::pair { m_cameras, cameras } })
        popUp->setHidden(hidden || !popUp->menu() || popUp->menu()->isEmpty());
}

void LXMainWindow::setScreenPreviewImage(const QImage &image)
{
    if (image.isNull()) {
        m_screenPreviewImage->clear();
        m_screenPreviewImage->hide();
        return;
    }
    const QSize room = m_contentBox->size().expandedTo(QSize(480, 300)) * 0.9;
    m_screenPreviewImage->setPixmap(
        QPixmap::fromImage(image.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    m_screenPreviewImage->show();
}

void LXMainWindow::setHotkeySuggestion(const QString &text)
{
    m_hotkeySuggestion->setText(text);
}

void LXMainWindow::showLocalPreview(const std::shared_ptr<CaptureSession> &session)
{
    m_localPreview->setCaptureSession(session);
    m_localPreview->setVisible(bool(session));
    if (session)
        m_localPreview->raise();
}

void LXMainWindow::setMicrophoneLevelConnection(const CaptureConnectionPtr &connection)
{
    m_levelMeter->setConnection(connection);
    m_levelMeter->setVisible(bool(connection));
}

void LXMainWindow::setWorkflows(const QStringList &titles)
{
    m_workflowMenu->clear();
    for (int i = 0; i < titles.size(); ++i) {
        QAction *item = m_workflowMenu->insertItemWithTitle(titles.at(i), i);
        connect(item, &QAction::triggered, this, [this, i] { emit workflowChosen(i); });
    }
}

void LXMainWindow::setChosenWorkflowTitle(const QString &title)
{
    m_workflowButton->setText(title.split(LXWorkflowMenu::kSeparator).first());
}

void LXMainWindow::setMetadataLengthLimits(int title, int description)
{
    m_title->setMaxLength(title);
    limitLength(m_description, description);
}

void LXMainWindow::setTitlePlaceholderImageVisible(bool visible)
{
    m_title->setPlaceholderImageVisible(visible);
}

namespace {

// The local files of a drag; empty when it carries none.
QStringList droppedPaths(const QMimeData *data)
{
    QStringList paths;
    for (const QUrl &url : data->urls())
        if (url.isLocalFile())
            paths << url.toLocalFile();
    return paths;
}

} // namespace

void LXMainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    // Files are taken only while nothing is recorded, and only as copies.
    if (!m_acceptsFileDrops || droppedPaths(event->mimeData()).isEmpty()
        || !(event->possibleActions() & Qt::CopyAction)) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void LXMainWindow::dragMoveEvent(QDragMoveEvent *event)
{
    if (m_acceptsFileDrops && (event->possibleActions() & Qt::CopyAction)) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    } else {
        event->ignore();
    }
}

void LXMainWindow::dropEvent(QDropEvent *event)
{
    const QStringList paths = droppedPaths(event->mimeData());
    if (!m_acceptsFileDrops || paths.isEmpty()) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    emit filesDropped(paths);
}

void LXMainWindow::closeEvent(QCloseEvent *event)
{
    // Whether the application ends with its window is the controller's call.
    event->ignore();
    emit closeRequested();
}

void LXMainWindow::setRemotePreview(const QImage &image)
{
    // The snapshot takes the place of the smaller preview, which video mode
    // otherwise hides; without one (a local device, a failed download)
    // nothing stale is left on the page.
    if (image.isNull()) {
        m_previewImage->setPixmap(QPixmap());
        m_previewImage->hide();
        return;
    }
    m_previewImage->show();
    const qreal ratio = m_previewImage->devicePixelRatioF();
    const QSize box = m_previewImage->contentsRect().size() * ratio;
    QPixmap pixmap = QPixmap::fromImage(image);
    if (!box.isEmpty())
        pixmap = pixmap.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    pixmap.setDevicePixelRatio(ratio);
    m_previewImage->setPixmap(pixmap);
}
