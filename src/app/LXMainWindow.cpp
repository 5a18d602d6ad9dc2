#include "LXMainWindow.h"

#include "CountdownView.h"
#include "DonePage.h"
#include "LXPushView.h"
#include "LXRecordButton.h"
#include "LXSourceTile.h"
#include "MetadataPage.h"
#include "PageWidgets.h"
#include "RecordPage.h"
#include "SourceChooserPage.h"
#include "VKColorBox.h"
#include "VKMetalButton.h"

#include <QAction>
#include <QCloseEvent>
#include <QDialog>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QVBoxLayout>

using PageWidgets::named;

namespace {

QAction *named(QAction *action, const char *objectName)
{
    action->setObjectName(QLatin1String(objectName));
    return action;
}

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

    m_sourceChooser = new SourceChooserPage(m_contentBox);
    m_contentBox->setContentView(m_sourceChooser);

    makeMenus();
    setAcceptDrops(true);
    resize(800, 560);
    setMinimumSize(640, 460);
}

RecordPage *LXMainWindow::recordPage()
{
    makeLaterPages();
    return m_record;
}

MetadataPage *LXMainWindow::metadataPage()
{
    makeLaterPages();
    return m_metadata;
}

DonePage *LXMainWindow::donePage()
{
    makeLaterPages();
    return m_done;
}

void LXMainWindow::makeLaterPages()
{
    if (m_record)
        return;
    m_record = new RecordPage(m_contentBox);
    m_metadata = new MetadataPage(m_contentBox);
    m_done = new DonePage(m_contentBox);
    for (QWidget *page :
        { static_cast<QWidget *>(m_record), static_cast<QWidget *>(m_metadata), static_cast<QWidget *>(m_done) })
        page->hide();
    connect(m_metadata, &MetadataPage::titleEdited, this, &LXMainWindow::titleEdited);
    connect(m_metadata, &MetadataPage::descriptionEdited, this, &LXMainWindow::descriptionEdited);
    connect(m_metadata, &MetadataPage::workflowChosen, this, &LXMainWindow::workflowChosen);
    connect(m_done, &DonePage::newPodcastClicked, this, &LXMainWindow::newPodcastClicked);

    // Tab follows the reading order: the page's controls, then the strip
    // from left to right. Hidden pages drop out of the chain by themselves.
    QList<QWidget *> chain;
    for (LXSourceTile *tile : m_sourceChooser->tiles())
        chain << tile;
    chain << m_record->cameraPopUp() << m_record->microphonePopUp() << m_metadata->focusChain()
          << m_done->newPodcastButton() << m_startOver << m_recordPause << m_publish;
    for (qsizetype i = 1; i < chain.size(); ++i)
        setTabOrder(chain[i - 1], chain[i]);
}

QWidget *LXMainWindow::makeButtonStrip(QWidget *parent)
{
    auto *buttonBox = new VKColorBox(parent);
    m_buttonBox = buttonBox;
    buttonBox->installEventFilter(this);
    buttonBox->setDrawsGradient(true);
    buttonBox->setGradient(QColor(44, 45, 50), QColor(28, 28, 32));
    buttonBox->setTopSeparatorColor(QColor(0, 0, 0));
    buttonBox->setFrameColor(Qt::black);
    buttonBox->setFixedHeight(76);
    auto *buttons = new QHBoxLayout(buttonBox);
    buttons->setContentsMargins(18, 10, 18, 10);
    m_startOver = named(new VKMetalButton(tr("Start Over"), buttonBox), "startOver", tr("Start Over"));
    m_startOver->setAccessibleDescription(tr("Goes back, or discards the recording and starts over"));
    m_publish = named(new VKMetalButton(tr("Publish"), buttonBox), "publish", tr("Publish"));
    m_publish->setAccessibleDescription(tr("Goes on to describe and publish the recording"));
    m_recordPause = new LXRecordButton(buttonBox);
    m_recordPause->setObjectName(QStringLiteral("recordPauseButton"));
    m_recordPause->setToolTip(tr("Record"));
    // Each is offered on the pages that need it.
    m_startOver->hide();
    m_publish->hide();
    m_recordPause->hide();
    buttons->addWidget(m_startOver);
    buttons->addStretch(1);
    buttons->addWidget(m_recordPause);
    buttons->addStretch(1);
    buttons->addWidget(m_publish);
    connect(m_startOver, &QPushButton::clicked, this, [this] {
        switch (m_startOverOffer) {
        case StartOverOffer::BackToSources:
            emit backClicked();
            break;
        case StartOverOffer::BackToRecording:
            emit cancelClicked();
            break;
        case StartOverOffer::StartOver:
            emit startOverClicked();
            break;
        case StartOverOffer::None:
            break;
        }
    });
    connect(m_publish, &QPushButton::clicked, this, [this] {
        if (m_publishOffer == PublishOffer::Done)
            emit submitClicked();
        else if (m_publishOffer == PublishOffer::Publish)
            emit publishClicked();
    });
    connect(m_recordPause, &QPushButton::clicked, this, &LXMainWindow::recordPauseClicked);
    return buttonBox;
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
    connect(m_recordPauseMenuItem, &QAction::triggered, this, &LXMainWindow::recordPauseMenuItemInvoked);
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
    m_publishOffer = PublishOffer::Publish;
    m_publish->setText(tr("Publish"));
    m_publish->setAccessibleName(tr("Publish"));
    showPage(Page::Record, durationMs);
}

void LXMainWindow::showMetadataPage()
{
    m_metadata->showChosenFiles({});
    showPage(Page::Metadata);
}

void LXMainWindow::showMetadataPageForFiles(const QStringList &paths)
{
    m_metadata->showChosenFiles(paths);
    offerBack();
    showPage(Page::Metadata);
    m_recordPause->hide();
    setPublishOffer(PublishOffer::Done);
    m_metadata->focusTitle();
}

void LXMainWindow::showMetadataPageForRecording()
{
    // Nothing stops yet: the user may go back and resume.
    setRecordPauseButtonVisible(false);
    showMetadataPage();
    m_metadata->focusTitle();
    setPublishOffer(PublishOffer::Done);
    setStartOverOffer(StartOverOffer::BackToRecording);
}

void LXMainWindow::showPausedRecordPage()
{
    showRecordPage();
    offerPausedChoices(true);
    setRecordPauseButtonVisible(true); // still resumes
}

void LXMainWindow::showDonePage()
{
    showPage(Page::Done);
    setPublishOffer(PublishOffer::None);
    setStartOverOffer(StartOverOffer::None);
    m_done->setNewPodcastButtonVisible(true);
}

void LXMainWindow::offerPausedChoices(bool paused)
{
    setStartOverOffer(paused ? StartOverOffer::StartOver : StartOverOffer::None);
    setPublishOffer(paused ? PublishOffer::Publish : PublishOffer::None);
}

QFileDialog *LXMainWindow::makeMoviePanel()
{
    auto *panel = new QFileDialog(this, tr("Choose Movie Files"), QDir::homePath());
    panel->setObjectName(QStringLiteral("openPanel"));
    panel->setFileMode(QFileDialog::ExistingFiles);
    panel->setWindowModality(Qt::WindowModal);
    panel->resize(panel->width(), 435);
    return panel;
}

void LXMainWindow::offerBack()
{
    m_startOverOffer = StartOverOffer::BackToSources;
    m_startOver->setText(tr("Back"));
    m_startOver->setAccessibleName(tr("Back"));
}

void LXMainWindow::showPage(Page page, int durationMs)
{
    makeLaterPages();
    QWidget *const pages[] = { m_sourceChooser, m_record, m_metadata, m_done };
    const Page current = m_currentPage;
    const bool forward = current == Page::SourceChooser || (current == Page::Record && page != Page::SourceChooser);
    m_currentPage = page;
    m_contentBox->pushView(
        pages[int(page)], forward ? LXPushView::Direction::FromRight : LXPushView::Direction::FromLeft, durationMs);
    m_startOver->setVisible(page != Page::SourceChooser && page != Page::Done);
    m_recordPause->setVisible(page == Page::Record);
    if (page == Page::SourceChooser) {
        m_startOverOffer = StartOverOffer::StartOver;
        m_startOver->setText(tr("Start Over"));
        m_startOver->setAccessibleName(tr("Start Over"));
        m_publish->hide();
        m_metadata->showChosenFiles({});
    }
    emit pageChanged();
}

void LXMainWindow::setConnected(bool connected, const QString &user, const QString &host)
{
    m_sourceChooser->setConnected(connected, user, host);
    m_signInMenuItem->setEnabled(!connected);
}

void LXMainWindow::setRecordControls(const QString &title, const QString &imageName, bool enabled)
{
    m_recordPauseMenuItem->setText(title);
    m_recordPauseMenuItem->setEnabled(enabled);
    m_recordPause->setImageName(imageName);
    m_recordPause->setToolTip(title);
    m_recordPause->setEnabled(enabled);
}

void LXMainWindow::setStartOverOffer(StartOverOffer offer)
{
    m_startOverOffer = offer;
    if (offer == StartOverOffer::None) {
        m_startOver->hide();
        return;
    }
    const QString title = offer == StartOverOffer::StartOver ? tr("Start Over") : tr("Back");
    m_startOver->setText(title);
    m_startOver->setAccessibleName(title);
    m_startOver->show();
}

void LXMainWindow::setPublishOffer(PublishOffer offer)
{
    m_publishOffer = offer;
    if (offer == PublishOffer::None) {
        m_publish->hide();
        return;
    }
    const QString title = offer == PublishOffer::Publish ? tr("Publish") : tr("Done");
    m_publish->setText(title);
    m_publish->setAccessibleName(title);
    m_publish->show();
}

void LXMainWindow::setRecordPauseButtonVisible(bool visible)
{
    m_recordPause->setVisible(visible);
    if (visible)
        m_recordPause->raise();
}

void LXMainWindow::showCountdown(CountdownView *countdown)
{
    m_buttonStripOverlay = countdown;
    countdown->setParent(m_buttonBox);
    QRect frame(QPoint(0, 0), m_buttonBox->size());
    countdown->setGeometry(frame);
    countdown->contentRectForString(); // fixes the numbers that fit
    frame.translate(-1, 0);
    frame.setWidth(frame.width() + 1);
    countdown->setGeometry(frame);
    countdown->show();
    for (QWidget *button : { static_cast<QWidget *>(m_startOver), static_cast<QWidget *>(m_publish),
             static_cast<QWidget *>(m_recordPause) })
        button->raise();
}

bool LXMainWindow::hasSheet() const
{
    for (const QDialog *dialog : findChildren<QDialog *>(QString(), Qt::FindDirectChildrenOnly))
        if (dialog->isVisible() && dialog->windowModality() != Qt::NonModal)
            return true;
    return false;
}

void LXMainWindow::childEvent(QChildEvent *event)
{
    // Sheets are dialogs parented to the window; their showing and hiding
    // decides whether recording can be asked for.
    if (event->added())
        if (auto *dialog = qobject_cast<QDialog *>(event->child()))
            dialog->installEventFilter(this);
    QMainWindow::childEvent(event);
}

bool LXMainWindow::eventFilter(QObject *watched, QEvent *event)
{
    // The view over the strip keeps the place it was given, one point to the
    // left of the strip and one wider, as the strip resizes.
    if (watched == m_buttonBox && event->type() == QEvent::Resize && m_buttonStripOverlay)
        m_buttonStripOverlay->setGeometry(-1, 0, m_buttonBox->width() + 1, m_buttonBox->height());
    if ((event->type() == QEvent::Show || event->type() == QEvent::Hide) && qobject_cast<QDialog *>(watched)
        && watched->parent() == this)
        emit sheetsChanged();
    return QMainWindow::eventFilter(watched, event);
}

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
