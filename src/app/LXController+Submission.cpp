#include "LXController.h"

#include "DonePage.h"
#include "LXDefaultsKeys.h"
#include "LXMainWindow.h"
#include "LXUserDefaults.h"
#include "MetadataPage.h"
#include "RecordPage.h"
#include "RecordingJournal.h"
#include "RecordingWatch.h"
#include "RemoteCameraPreviews.h"
#include "Sheets.h"
#include "TransfersController.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

void LXController::setSubmittedStatus(const QString &text)
{
    m_window->donePage()->setSubmittedStatus(text);
}

void LXController::publishClicked()
{
    m_window->showMetadataPageForRecording();
}

void LXController::cancelClicked()
{
    m_window->showPausedRecordPage();
}

void LXController::submitClicked()
{
    if (!m_job)
        return;
    if (m_job->title().isEmpty()) {
        QApplication::beep();
        m_window->metadataPage()->setTitlePlaceholderImageVisible(true);
        return;
    }
    m_previews->stopRefreshing();
    m_watch->stop();

    // Recordings made here and chosen files are uploaded from here.
    const bool uploadFollows = m_route && m_route->recordsOnThisComputer();
    // The journal stays until the hand-over has succeeded: a crash before
    // leaves the recording offered at the next sign-in.
    m_handOverPending = true;
    if (m_route)
        m_route->stopAndHandOver();

    LXUserDefaults &defaults = LXUserDefaults::standard();
    defaults.setValue(
        m_job->workflow().value(QStringLiteral("title")).toString(), LXDefaultsKeys::PreviousWorkflowChosen);
    defaults.synchronize();

    m_window->showDonePage();
    m_window->recordPage()->setRecordingStateVisible(false);
    // Said before the server answers; a failure comes later as an alert.
    if (uploadFollows) {
        if (transfersController())
            transfersController()->startPollingSubmissions();
        setSubmittedStatus(tr("Your podcast is being submitted."));
    } else {
        setSubmittedStatus(tr("Your podcast has been successfully submitted."));
    }
    setState(State::Submitted);
    setMode(Mode::NoSource);
}

void LXController::updateSubmissionStatus()
{
    TransfersController *transfers = transfersController();
    if (!m_job || m_job->uploadUUID().isNull() || !transfers)
        return;
    notifyIfWatchedUploadEnded(transfers->transferForUUID(m_job->uploadUUID()));
    if (m_currentJobCompletedUploading)
        return;
    const QString status = transfers->transferStatusForUUID(m_job->uploadUUID());
    if (status.isNull() || status == QLatin1String("pending") || status == QLatin1String("uploading")) {
        setSubmittedStatus(tr("Your podcast is being submitted."));
    } else if (status == QLatin1String("completed")) {
        setSubmittedStatus(tr("Your podcast has been successfully submitted."));
        m_currentJobCompletedUploading = true;
        transfers->stopPollingSubmissions();
    } else if (status == QLatin1String("error")) {
        setSubmittedStatus(tr("There was an error submitting your podcast."));
        transfers->stopPollingSubmissions();
    } else {
        setSubmittedStatus(QString());
    }
}

void LXController::newPodcastClicked(Qt::KeyboardModifiers modifiers)
{
    m_window->hide();
    if (transfersController())
        transfersController()->stopPollingSubmissions();
    m_window->donePage()->setNewPodcastButtonVisible(false);
    // Shift slows the page down, to watch it go.
    m_window->showSourceChooser(modifiers.testFlag(Qt::ShiftModifier) ? 2000 : 400);
    // Every new recording begins with signing in again.
    m_inBetweenMainWindowAndLoginPanel = true;
    showLoginPanel();
}

void LXController::startOverClicked()
{
    if (m_startOverSheet)
        return;
    QPushButton *startOver = nullptr, *cancel = nullptr;
    QMessageBox *sheet = Sheets::deletionQuestion(
        m_window.get(), tr("Delete recording and Start Over?"), &startOver, tr("Start Over"), &cancel);
    m_startOverSheet = sheet;
    sheet->setObjectName(QStringLiteral("startOverSheet"));
    sheet->setDefaultButton(startOver);
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
    if (m_route)
        m_route->discard();
    m_journal->discard();
    m_window->showSourceChooser();
    m_window->recordPage()->setRecordingStateVisible(false);
    resetJobAndRecordingState();
}
