#include "LXController.h"

#include "LXDefaultsKeys.h"
#include "LXGlyphs.h"
#include "LXMainWindow.h"
#include "LXUserDefaults.h"

#include <QApplication>
#include <QPainter>
#include <QPushButton>
#include <QTimer>

namespace {

int pageDuration(Qt::KeyboardModifiers modifiers)
{
    // Shift slows the page down, to watch it go.
    return modifiers.testFlag(Qt::ShiftModifier) ? 2000 : 400;
}

QPixmap applicationIcon()
{
    QPixmap pixmap(128, 128);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    LXGlyphs::draw(p, LXGlyphs::Glyph::Lumex, QRectF(4, 4, 120, 120), Qt::white);
    return pixmap;
}

// The red dot that marks a recording in progress.
QPixmap recordingBadge()
{
    QPixmap pixmap(48, 48);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(Qt::white, 5));
    p.setBrush(QColor(230, 30, 40));
    p.drawEllipse(QRectF(3, 3, 42, 42));
    return pixmap;
}

} // namespace

void LXController::setSubmittedStatus(const QString &text)
{
    if (m_window)
        m_window->setSubmittedStatus(text);
}

void LXController::publishClicked()
{
    if (!m_window)
        return;
    // Nothing stops yet: the user may go back and resume.
    m_window->setPublishOffer(LXMainWindow::PublishOffer::None);
    m_window->setStartOverOffer(LXMainWindow::StartOverOffer::None);
    m_window->setRecordPauseButtonVisible(false);
    m_window->showMetadataPage();
    m_window->focusTitle();
    m_window->setPublishOffer(LXMainWindow::PublishOffer::Done);
    m_window->setStartOverOffer(LXMainWindow::StartOverOffer::BackToRecording);
}

void LXController::cancelClicked()
{
    if (!m_window)
        return;
    m_window->showRecordPage();
    m_window->setPublishOffer(LXMainWindow::PublishOffer::Publish);
    m_window->setStartOverOffer(LXMainWindow::StartOverOffer::StartOver);
    m_window->setRecordPauseButtonVisible(true); // still resumes
}

void LXController::submitClicked()
{
    if (!m_job)
        return;
    if (m_job->title().isEmpty()) {
        QApplication::beep();
        if (m_window)
            m_window->setTitlePlaceholderImageVisible(true);
        return;
    }
    for (QTimer **timer : { &m_remoteCameraSnapshotRefreshTimer, &m_selectedRemoteCameraPreviewUpdateTimer }) {
        if (*timer) {
            (*timer)->stop();
            (*timer)->deleteLater();
            *timer = nullptr;
        }
    }

    if (m_mode == Mode::File) {
        // An interrupted recording is ours, as a finished one is: it leaves
        // the spool folder once queued, or every later login would offer it
        // again. Files the user chose stay where they are.
        const bool recovered = !m_recoveredRecording.isEmpty()
            && m_job->movieFilePaths().value_or(QStringList()) == QStringList { m_recoveredRecording };
        m_recoveredRecording.clear();
        askServer(recovered ? &OrvaneServerInterface::submitAndDeleteJobFilesWithDelegate
                            : &OrvaneServerInterface::submitJobFilesWithDelegate,
            &LXController::jobDidStop);
    } else if (m_localRecordingChosen && m_mode == Mode::Video) {
        // The recorder calls localJobDidStop once the movie is finished.
        if (m_captureDevicesController)
            m_captureDevicesController->stopRecording();
    } else if (m_localRecordingChosen) {
        askServer(&OrvaneServerInterface::stopLocalJobWithDelegate, &LXController::localJobDidStop);
    } else {
        // The server publishes what its camera recorded.
        askServer(&OrvaneServerInterface::stopRemoteJobWithDelegate, &LXController::jobDidStop);
    }

    LXUserDefaults &defaults = LXUserDefaults::standard();
    defaults.setValue(
        m_job->workflow().value(QStringLiteral("title")).toString(), LXDefaultsKeys::PreviousWorkflowChosen);
    defaults.synchronize();

    if (m_window) {
        m_window->showDonePage();
        m_window->setRecordingStateVisible(false);
        m_window->setPublishOffer(LXMainWindow::PublishOffer::None);
        m_window->setStartOverOffer(LXMainWindow::StartOverOffer::None);
        m_window->setNewPodcastButtonVisible(true);
    }
    // Said before the server answers; a failure comes later as an alert.
    if (m_localRecordingChosen || m_mode == Mode::File) {
        if (m_transfersController)
            m_transfersController->startPollingSubmissions();
        setSubmittedStatus(tr("Your podcast is being submitted."));
    } else {
        setSubmittedStatus(tr("Your podcast has been successfully submitted."));
    }
    setState(State::Submitted);
    setMode(Mode::NoSource);
}

void LXController::updateSubmissionStatus()
{
    if (m_job && m_transfersController && !m_job->uploadUUID().isNull())
        notifyIfWatchedUploadEnded(m_transfersController->transferForUUID(m_job->uploadUUID()));
    if (m_currentJobCompletedUploading || !m_job || m_job->uploadUUID().isNull() || !m_transfersController)
        return;
    const QString status = m_transfersController->transferStatusForUUID(m_job->uploadUUID());
    if (status.isNull() || status == QLatin1String("pending") || status == QLatin1String("uploading")) {
        setSubmittedStatus(tr("Your podcast is being submitted."));
    } else if (status == QLatin1String("completed")) {
        setSubmittedStatus(tr("Your podcast has been successfully submitted."));
        m_currentJobCompletedUploading = true;
        m_transfersController->stopPollingSubmissions();
    } else if (status == QLatin1String("error")) {
        setSubmittedStatus(tr("There was an error submitting your podcast."));
        m_transfersController->stopPollingSubmissions();
    } else {
        setSubmittedStatus(QString());
    }
}

void LXController::newPodcastClicked(Qt::KeyboardModifiers modifiers)
{
    if (m_window)
        m_window->hide();
    if (m_transfersController)
        m_transfersController->stopPollingSubmissions();
    if (m_window) {
        m_window->setStartOverOffer(LXMainWindow::StartOverOffer::None);
        m_window->setNewPodcastButtonVisible(false);
        m_window->setRecordPauseButtonVisible(false);
        m_window->showSourceChooser(pageDuration(modifiers));
    }
    // Every new recording begins with signing in again.
    m_inBetweenMainWindowAndLoginPanel = true;
    showLoginPanel();
}

void LXController::startOverClicked()
{
    if (m_startOverSheet)
        return;
    auto *sheet = new QMessageBox(m_window.get());
    m_startOverSheet = sheet;
    sheet->setObjectName(QStringLiteral("startOverSheet"));
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setWindowModality(Qt::WindowModal);
    sheet->setIcon(QMessageBox::Critical);
    sheet->setText(tr("Delete recording and Start Over?"));
    sheet->setInformativeText(tr("Your current recording will be deleted. This action cannot be undone."));
    QPushButton *startOver = sheet->addButton(tr("Start Over"), QMessageBox::DestructiveRole);
    QPushButton *cancel = sheet->addButton(tr("Cancel"), QMessageBox::RejectRole);
    sheet->setDefaultButton(startOver);
    sheet->setEscapeButton(cancel);
    trackSheetOnMainWindow(sheet);
    connect(sheet, &QMessageBox::finished, this, [this, sheet, startOver] {
        // The default button answers 1, as the platform's sheets did.
        startOverSheetDidEnd(sheet->clickedButton() == startOver ? 1 : 0);
    });
    sheet->open();
}

void LXController::startOverSheetDidEnd(int returnCode)
{
    if (returnCode != 1)
        return;
    if (isLocalVideo()) {
        // The recorder deletes the movie itself.
        if (m_captureDevicesController)
            m_captureDevicesController->cancelRecording();
    } else if (m_localRecordingChosen) {
        askServer(&OrvaneServerInterface::cancelLocalJobWithDelegate, &LXController::jobDidStop);
    } else {
        askServer(&OrvaneServerInterface::cancelRemoteJobWithDelegate, &LXController::jobDidStop);
    }
    if (m_window) {
        m_window->showSourceChooser();
        m_window->setRecordingStateVisible(false);
        m_window->setRecordPauseButtonVisible(false);
        m_window->setPublishOffer(LXMainWindow::PublishOffer::None);
        m_window->setStartOverOffer(LXMainWindow::StartOverOffer::None);
    }
    setRecordPauseAction(RecordPauseAction::Record);
    resetJobAndRecordingState();
}

void LXController::updateDockIcon()
{
    // The window icon stands in for the dock icon: badged while recording
    // only, not while counting down or paused.
    QPixmap icon = applicationIcon();
    if (m_state == State::Recording) {
        const QPixmap badge = recordingBadge();
        QPainter p(&icon);
        p.setCompositionMode(QPainter::CompositionMode_SourceOver);
        p.drawPixmap(icon.width() - badge.width(), 0, badge);
    }
    QApplication::setWindowIcon(QIcon(icon));
}
