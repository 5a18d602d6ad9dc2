#include "LXController.h"

#include "LXMainWindow.h"
#include "Log.h"
#include "MetadataPage.h"
#include "RecordPage.h"
#include "RecordingJournal.h"
#include "RecordingWatch.h"
#include "RemoteCameraRoute.h"

#include <QTimer>

using J = RecordingJournal;

void LXController::scheduleJournal()
{
    if (m_journalDue || !m_job)
        return;
    m_journalDue = true;
    QTimer::singleShot(0, this, &LXController::writeJournal);
}

void LXController::writeJournal()
{
    m_journalDue = false;
    if (!m_job || !m_route || !(hasBegunRecording() || m_handOverPending))
        return;
    m_journal->save({
        { J::kRoute, m_route->kind() },
        { J::kUser, m_credentials.user },
        { J::kServer, m_credentials.server },
        { J::kMode, int(m_mode) },
        { J::kState, int(m_state) },
        { J::kCamera, m_job->camera() },
        { J::kMicrophone, m_job->localAudioDeviceName() },
        { J::kFiles, m_job->movieFilePaths().value_or(QStringList()) },
        { J::kStartedAt, m_job->startedAt() },
        { J::kElapsed, recordingTime()->elapsedTime() },
        { J::kTitle, m_job->title() },
        { J::kDescription, m_job->jobDescription() },
        { J::kWorkflow, m_job->workflow() },
    });
}

void LXController::jobDidStop(const std::optional<Error> &error)
{
    if (error) {
        alertUserToError(*error);
        return;
    }
    // Handed over: the server or the upload queue has the recording now.
    // A trimmed recording's original waits for its upload to complete, and
    // so does its journal, so a crash before leaves it offered with its title.
    if (m_handOverPending && !hasBegunRecording()) {
        m_handOverPending = false;
        if (!m_trimMarks)
            m_journal->discard();
    }
}

void LXController::continueJournaledRecording(const QVariantMap &journal, bool publish)
{
    auto route = RemoteCameraRoute::fromKind(journal.value(J::kRoute).toString(), *this);
    if (!route || m_state != State::Idle)
        return;
    const bool recording = State(journal.value(J::kState).toInt()) != State::Paused;
    setMode(Mode(journal.value(J::kMode).toInt()));
    setRoute(std::move(route));
    setJobCamera(journal.value(J::kCamera).toMap());
    m_job->setTitle(journal.value(J::kTitle).toString());
    m_job->setJobDescription(journal.value(J::kDescription).toString());
    if (const QVariantMap workflow = journal.value(J::kWorkflow).toMap(); !workflow.isEmpty())
        m_job->setWorkflow(workflow);
    m_job->setStartedAt(journal.value(J::kStartedAt).toDateTime());
    m_window->metadataPage()->setMetadata(m_job->title(), m_job->jobDescription());
    updateWorkflowPopUp();
    // The time it has run: to the last word of the journal, and on since
    // then when the room kept recording.
    double elapsed = journal.value(J::kElapsed).toDouble();
    if (recording)
        elapsed += journal.value(J::kSavedAt).toDateTime().msecsTo(QDateTime::currentDateTimeUtc()) / 1000.0;
    m_clock->setElapsedTime(qMax(0.0, elapsed));
    // The recording exists before its page shows, so the device choice
    // leaves the journal's camera alone.
    setState(recording ? State::Recording : State::Paused);
    m_window->showRecordPage();
    rebuildInputDevicesList();
    m_window->recordPage()->setChosenCamera(m_job->camera().value(QStringLiteral("name")).toString());
    m_window->recordPage()->setChosenMicrophone(m_job->camera().value(QStringLiteral("name")).toString());
    if (recording) {
        m_window->setRecordPauseButtonVisible(true);
        m_clock->run();
    } else {
        showPaused();
    }
    scheduleJournal();
    m_watch->start();
    if (!publish)
        return;
    if (recording)
        pauseClicked();
    publishClicked();
}

void LXController::discardJournaledRecording(const QVariantMap &journal)
{
    auto route = RemoteCameraRoute::fromKind(journal.value(J::kRoute).toString(), *this);
    if (route && m_server && m_job && m_state == State::Idle) {
        setJobCamera(journal.value(J::kCamera).toMap());
        route->discard();
        setJobCamera(QVariantMap());
    }
    m_journal->discard();
}

void LXController::endWithoutAsking()
{
    if (m_ending)
        return;
    m_ending = true;
    Log::write(QStringLiteral("Ending at the system's request; the recording is kept"));
    auto done = std::make_shared<bool>(false);
    QPointer<LXController> self(this);
    auto finish = [self, done] {
        if (*done || !self)
            return;
        *done = true;
        self->writeJournal();
        self->m_journal->flush();
        emit self->terminateRequested();
    };
    if (!m_route || !hasBegunRecording())
        return finish();
    m_route->finishForEnding([finish](const std::optional<Error> &error) {
        if (error)
            Log::format(QStringLiteral("Finishing the recording while ending failed: %@"), { describeError(*error) });
        finish();
    });
    QTimer::singleShot(kEndTimeoutMs, this, finish);
}
