#include "LXMainWindow.h"

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
#include <QApplication>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
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

    contentBox = new LXPushView(central);
    contentBox->setBackgroundColor(Qt::black);
    contentBox->setDrawsGradient(true);
    contentBox->setGradient(QColor(30, 31, 36), QColor(14, 14, 17));
    layout->addWidget(contentBox, 1);

    buttonBox = new VKColorBox(central);
    buttonBox->setDrawsGradient(true);
    buttonBox->setGradient(QColor(44, 45, 50), QColor(28, 28, 32));
    buttonBox->setTopSeparatorColor(QColor(0, 0, 0));
    buttonBox->setFrameColor(Qt::black);
    buttonBox->setFixedHeight(76);
    auto *buttons = new QHBoxLayout(buttonBox);
    buttons->setContentsMargins(18, 10, 18, 10);
    startOver = new VKMetalButton(tr("Start Over"), buttonBox);
    publish = new VKMetalButton(tr("Publish"), buttonBox);
    recordPauseButton = new LXRecordButton(buttonBox);
    recordPauseButton->setToolTip(tr("Record"));
    buttons->addWidget(startOver);
    buttons->addStretch(1);
    buttons->addWidget(recordPauseButton);
    buttons->addStretch(1);
    buttons->addWidget(publish);
    layout->addWidget(buttonBox);
    setCentralWidget(central);

    sourceChooserView = makeSourceChooser();
    previewRecordView = makePreviewRecord();
    metadataEntryView = makeMetadataEntry();
    doneView = makeDone();
    for (QWidget *page : { sourceChooserView, previewRecordView, metadataEntryView, doneView })
        page->hide();

    makeMenus();
    resize(800, 560);
    setMinimumSize(640, 460);
}

QWidget *LXMainWindow::makeSourceChooser()
{
    auto *page = new QWidget(contentBox);
    page->setObjectName(QStringLiteral("sourceChooserView"));
    auto *v = new QVBoxLayout(page);
    v->setContentsMargins(36, 30, 36, 30);
    v->setSpacing(10);
    v->addWidget(heading(tr("What would you like to record?"), page));
    v->addWidget(subtle(tr("Choose a source. Recordings go to the workflow you pick when you publish."), page));
    v->addSpacing(14);
    auto *grid = new QGridLayout;
    grid->setSpacing(14);
    videoTile = new LXSourceTile(LXGlyphs::Glyph::Camera, tr("Video"), page);
    audioTile = new LXSourceTile(LXGlyphs::Glyph::Microphone, tr("Audio"), page);
    screenTile = new LXSourceTile(LXGlyphs::Glyph::Screen, tr("Screen"), page);
    fileTile = new LXSourceTile(LXGlyphs::Glyph::Film, tr("Movie Files"), page);
    videoTile->setToolTip(tr("Record from a camera in a lecture hall or from this computer's camera"));
    audioTile->setToolTip(tr("Record sound only"));
    screenTile->setToolTip(tr("Record this computer's screen with narration"));
    fileTile->setToolTip(tr("Publish movie files you already have"));
    const QList<LXSourceTile *> tiles { videoTile, audioTile, screenTile, fileTile };
    for (int i = 0; i < tiles.size(); ++i) {
        tiles[i]->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        grid->addWidget(tiles[i], 0, i);
    }
    v->addLayout(grid, 1);
    connectionStatus = subtle(QString(), page);
    connectionStatus->setObjectName(QStringLiteral("connectionStatus"));
    v->addWidget(connectionStatus);
    return page;
}

QWidget *LXMainWindow::makePreviewRecord()
{
    auto *page = new QWidget(contentBox);
    page->setObjectName(QStringLiteral("previewRecordView"));
    auto *v = new QVBoxLayout(page);
    v->setContentsMargins(24, 18, 24, 18);
    v->setSpacing(10);

    auto *devices = new QHBoxLayout;
    camerasPopUpButton = new VKPopUpButton(page);
    camerasPopUpButton->setAccessibleName(tr("Camera"));
    microphonesPopUpButton = new VKPopUpButton(page);
    microphonesPopUpButton->setAccessibleName(tr("Microphone"));
    devices->addWidget(camerasPopUpButton);
    devices->addWidget(microphonesPopUpButton);
    devices->addStretch(1);
    v->addLayout(devices);

    auto *stage = new QGridLayout;
    previewImage = new QLabel(page);
    previewImage->setAlignment(Qt::AlignCenter);
    previewImage->setMinimumSize(320, 200);
    previewImage->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    previewImage->setStyleSheet(
        QStringLiteral("background: #050506; border: 1px solid #2a2a2f; border-radius: 8px; color: #5a5a62;"));
    previewImage->setText(tr("No preview yet"));
    screenPreviewImage = new QLabel(page);
    screenPreviewImage->setAlignment(Qt::AlignCenter);
    screenPreviewImage->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    screenPreviewImage->hide();
    stage->addWidget(previewImage, 0, 0);
    stage->addWidget(screenPreviewImage, 0, 0);
    v->addLayout(stage, 1);

    auto *status = new QHBoxLayout;
    recordingState = new QLabel(page);
    recordingState->setStyleSheet(QStringLiteral("color: #d8d8de;"));
    hotkeySuggestion = subtle(QString(), page);
    status->addWidget(recordingState);
    status->addWidget(hotkeySuggestion, 1);
    auto *timerBox = new LXTimerBackgroundView(page);
    timerBackgroundView = timerBox;
    auto *timerLayout = new QHBoxLayout(timerBox);
    timerLayout->setContentsMargins(14, 4, 14, 4);
    recordingTimerTextField = new QLabel(QStringLiteral("00:00:00"), timerBox);
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    mono.setPointSizeF(font().pointSizeF() * 1.6);
    recordingTimerTextField->setFont(mono);
    recordingTimerTextField->setStyleSheet(QStringLiteral("color: #f4f4f6;"));
    timerLayout->addWidget(recordingTimerTextField);
    status->addWidget(timerBox);
    v->addLayout(status);
    return page;
}

QWidget *LXMainWindow::makeMetadataEntry()
{
    auto *page = new QWidget(contentBox);
    page->setObjectName(QStringLiteral("metadataEntryView"));
    auto *v = new QVBoxLayout(page);
    v->setContentsMargins(36, 26, 36, 22);
    v->setSpacing(8);
    v->addWidget(heading(tr("Describe your recording"), page));
    helpTextField = subtle(tr("Give the recording a title and a description, then choose where it goes."), page);
    v->addWidget(helpTextField);
    v->addSpacing(8);
    auto *titleLabel = new QLabel(tr("Title"), page);
    titleLabel->setStyleSheet(QStringLiteral("color: #d8d8de;"));
    title = new LXPlaceholderLineEdit(page);
    title->setPlaceholderText(tr("Title of the recording"));
    titleLabel->setBuddy(title);
    auto *descriptionLabel = new QLabel(tr("Description"), page);
    descriptionLabel->setStyleSheet(QStringLiteral("color: #d8d8de;"));
    descriptionField = new QPlainTextEdit(page);
    descriptionField->setPlaceholderText(tr("What is it about?"));
    descriptionField->setTabChangesFocus(true);
    auto *workflowLabel = new QLabel(tr("Workflow"), page);
    workflowLabel->setStyleSheet(QStringLiteral("color: #d8d8de;"));
    workflowPopUpButton = new QPushButton(page);
    workflowMenu = new LXWorkflowMenu(workflowPopUpButton);
    workflowPopUpButton->setMenu(workflowMenu);
    v->addWidget(titleLabel);
    v->addWidget(title);
    v->addWidget(descriptionLabel);
    v->addWidget(descriptionField, 1);
    v->addWidget(workflowLabel);
    v->addWidget(workflowPopUpButton, 0, Qt::AlignLeft);
    return page;
}

QWidget *LXMainWindow::makeDone()
{
    auto *page = new QWidget(contentBox);
    page->setObjectName(QStringLiteral("doneView"));
    auto *v = new QVBoxLayout(page);
    v->setContentsMargins(36, 30, 36, 30);
    v->addStretch(1);
    submittedStatus = heading(QString(), page, 1.3);
    submittedStatus->setAlignment(Qt::AlignCenter);
    submittedStatus->setWordWrap(true);
    v->addWidget(submittedStatus);
    newPodcastButton = new QPushButton(tr("New Recording"), page);
    v->addWidget(newPodcastButton, 0, Qt::AlignHCenter);
    v->addStretch(1);
    return page;
}

void LXMainWindow::makeMenus()
{
    QMenu *file = menuBar()->addMenu(tr("&Lumex"));
    signInMenuItem = file->addAction(tr("&Sign In…"));
    preferencesMenuItem = file->addAction(tr("&Preferences…"));
    preferencesMenuItem->setShortcut(QKeySequence::Preferences);
    preferencesMenuItem->setMenuRole(QAction::PreferencesRole);
    file->addSeparator();
    quitMenuItem = file->addAction(tr("&Quit Lumex"));
    quitMenuItem->setShortcut(QKeySequence::Quit);
    quitMenuItem->setMenuRole(QAction::QuitRole);

    QMenu *recording = menuBar()->addMenu(tr("&Recording"));
    recordPauseMenuItem = recording->addAction(tr("Record Podcast"));
    recordPauseMenuItem->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));

    QMenu *window = menuBar()->addMenu(tr("&Window"));
    transfersMenuItem = window->addAction(tr("&Transfers"));
    cameraConfigurationMenuItem = window->addAction(tr("&Camera Configuration…"));
}

void LXMainWindow::setConnected(bool connected, const QString &user, const QString &host)
{
    for (LXSourceTile *tile : { videoTile, audioTile, screenTile, fileTile })
        tile->setEnabled(connected);
    if (connected)
        connectionStatus->setText(tr("Signed in as %1 on %2.").arg(user, host));
    else
        connectionStatus->setText(tr("Not connected to a server yet. Choose Lumex ▸ Sign In… to connect."));
}

void LXMainWindow::closeEvent(QCloseEvent *event)
{
    // Whether the application ends with its window is the controller's call.
    event->ignore();
    emit closeRequested();
}
