#include "LXController.h"

#include "ChosenFilesRoute.h"
#include "DonePage.h"
#include "LXDefaultsKeys.h"
#include "LXMainWindow.h"
#include "LXUserDefaults.h"
#include "Log.h"
#include "MetadataPage.h"
#include "MovieRewriter.h"
#include "OrvaneServerInterface.h"
#include "PodcastJob.h"
#include "RecordPage.h"
#include "RecordingJournal.h"
#include "RecordingWatch.h"
#include "RemoteCameraPreviews.h"
#include "ReviewPlayer.h"
#include "Sheets.h"
#include "Threads.h"
#include "TransfersController.h"
#include "TrimmedUploads.h"

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
    openReview();
}

void LXController::openReview()
{
    ReviewPlayer *review = m_window->metadataPage()->reviewPlayer();
    if (!m_job)
        return;
    if (!m_route || !m_route->recordsOnThisComputer()) {
        // The server holds what its camera recorded; its last picture is
        // what can be shown.
        review->showSnapshot(
            m_previews->snapshotOfCameraNamed(m_job->camera().value(QStringLiteral("name")).toString()));
        return;
    }
    const QStringList paths = m_job->movieFilePaths().value_or(QStringList());
    // A recording (an interrupted one too) is reviewed whole, a screen with
    // its camera; of several chosen files the first is shown, and they are
    // published whole.
    const auto *chosen = dynamic_cast<ChosenFilesRoute *>(m_route.get());
    const bool recording = !chosen || !chosen->isUsersOwn();
    const bool trimmable = !paths.isEmpty() && (recording || paths.size() == 1)
        && std::all_of(paths.begin(), paths.end(), [](const QString &path) { return MovieRewriter::canTrim(path); });
    if (chosen)
        review->open(recording ? paths : paths.mid(0, 1), trimmable);
    else
        review->open(paths, trimmable, qint64(recordingTime()->elapsedTime() * 1e9));
}

void LXController::cancelClicked()
{
    // Back to the recording, which may go on: the files are let go.
    m_window->metadataPage()->reviewPlayer()->close();
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
    ReviewPlayer *review = m_window->metadataPage()->reviewPlayer();
    m_trimMarks = review->marks();
    review->clearMarks(); // taken: the next recording starts without
    review->close();

    // Recordings made here and chosen files are uploaded from here.
    const bool uploadFollows = m_route && m_route->recordsOnThisComputer();
    // The journal stays until the hand-over has succeeded: a crash before
    // leaves the recording offered at the next sign-in.
    m_handOverPending = true;
    if (m_route && m_mode == Mode::File)
        handOverFiles(false);
    else if (m_route)
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

void LXController::handOverFiles(bool recorded)
{
    auto *chosen = dynamic_cast<ChosenFilesRoute *>(m_route.get());
    const QStringList movies = m_job ? m_job->movieFilePaths().value_or(QStringList()) : QStringList();
    const auto asTheyAre = [this, recorded] {
        if (!recorded && m_route)
            m_route->stopAndHandOver();
        else if (m_server)
            m_server->submitAndDeleteJobFilesWithDelegate(
                this, [this](const std::optional<Error> &submitError) { jobDidStop(submitError); });
    };
    if (!m_trimMarks || movies.isEmpty() || !m_server) {
        asTheyAre();
        return;
    }
    // The user's own files stay theirs; Lumex's recordings wait for their
    // upload to complete.
    const bool ours = recorded || (chosen && !chosen->isUsersOwn());
    const QString spool = LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::LocalRecordSpoolPath);
    const auto [in, out] = *m_trimMarks;
    const std::shared_ptr<PodcastJob> job = m_job;
    const std::shared_ptr<OrvaneServerInterface> server = m_server;
    runInBackground(
        this, [movies, spool, in, out] { return TrimmedUploads::trim(movies, spool, in, out); },
        [this, job, server, movies, ours, spool, asTheyAre](
            const std::pair<QStringList, std::optional<Error>> &trimmed) {
            if (trimmed.second) {
                Log::format(QStringLiteral("Publishing untrimmed: %@"), { trimmed.second->localizedDescription });
                alertUserToError(Error { trimmed.second->domain, trimmed.second->code,
                    tr("The recording could not be trimmed, so it is published whole.") });
                asTheyAre();
                return;
            }
            job->setMovieFilePaths(trimmed.first);
            server->submitAndDeleteJobFilesWithDelegate(
                this, [this, job, movies, ours, spool](const std::optional<Error> &submitError) {
                    if (!submitError && ours)
                        TrimmedUploads::remember(spool, job->uploadUUID(), movies);
                    jobDidStop(submitError);
                });
        },
        [](const QString &failure) {
            return std::pair { QStringList(), std::optional<Error>(Error { kPosixErrorDomain, EIO, failure }) };
        });
}

void LXController::updateSubmissionStatus()
{
    TransfersController *transfers = transfersController();
    if (transfers) {
        // Originals of trimmed recordings go once their upload has completed.
        TrimmedUploads::settle(LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::LocalRecordSpoolPath),
            [transfers](const QString &uuid) { return transfers->transferStatusForUUID(uuid); });
    }
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
        m_journal->discard(); // a trimmed recording's, kept until now
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
