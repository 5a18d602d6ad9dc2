#include "LXController.h"

#include "CountdownView.h"
#include "Format.h"
#include "LXMainWindow.h"
#include "RecordPage.h"
#include "RecordingDiskSpace.h"

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

namespace {

constexpr int kCountdownSeconds = 3;
constexpr int kFlashMsec = 900;

// The tick that stops may be the one running now: it goes once it is done.
void stopTimer(QTimer *&timer)
{
    if (!timer)
        return;
    timer->stop();
    timer->deleteLater();
    timer = nullptr;
}

} // namespace

void LXController::setTimerValue(const QString &value)
{
    m_timerValue = value;
    m_window->recordPage()->setTimerText(value);
    emit timerValueChanged();
}

void LXController::setTimerTextHidden(bool hidden)
{
    m_timerTextHidden = hidden;
    m_window->recordPage()->setTimerTextHidden(hidden);
    emit timerTextHiddenChanged();
}

void LXController::setWaitingOnRecordOrPauseResponse(bool waiting)
{
    m_waitingOnRecordOrPauseResponse = waiting;
    emit waitingOnRecordOrPauseResponseChanged();
}

void LXController::recordPauseButtonClicked()
{
    switch (m_recordPauseAction) {
    case RecordPauseAction::Record:
        recordClicked();
        break;
    case RecordPauseAction::Pause:
        pauseClicked();
        break;
    case RecordPauseAction::Resume:
        resumeClicked();
        break;
    }
}

void LXController::restartEverySecondTimer(int msec, void (LXController::*target)())
{
    stopTimer(m_everySecondTimer);
    m_everySecondTimer = new QTimer(this);
    m_everySecondTimer->setInterval(msec);
    connect(m_everySecondTimer, &QTimer::timeout, this, target);
    m_everySecondTimer->start();
}

void LXController::recordClicked()
{
    if (!m_route) {
        QApplication::beep();
        return;
    }
    // Only this machine's disk fills up with the recording.
    if (m_localRecordingChosen && !RecordingDiskSpace::enoughForRecording()) {
        showCutoffWarningAndPauseRecordingIfApplicable();
        return;
    }
    writeSelectedDevicesToDefaults();
    setWaitingOnRecordOrPauseResponse(true);
    m_route->prepare();
}

void LXController::jobDidStart(const std::optional<Error> &error)
{
    setWaitingOnRecordOrPauseResponse(false);
    if (error) {
        alertUserToError(*error);
        return;
    }
    m_window->setStartOverOffer(LXMainWindow::StartOverOffer::None);
    m_window->setRecordPauseButtonVisible(false);
    setState(State::Starting);

    delete m_countdownView;
    auto *countdown = new CountdownView;
    m_countdownView = countdown;
    countdown->setObjectName(QStringLiteral("countdownView"));
    countdown->setCountdownTime(kCountdownSeconds);
    connect(countdown, &CountdownView::countdownTimerDidClose, this, &LXController::countdownTimerDidClose);
    m_window->showCountdown(countdown);
    countdown->startCountdown();
}

void LXController::countdownTimerDidClose()
{
    if (m_route)
        m_route->start();
}

void LXController::updateToRecordingView(const std::optional<Error> &error)
{
    // A local start that fails leaves the countdown's state and hidden
    // buttons in place: quitting is the way out, as it always was.
    if (error) {
        alertUserToError(*error);
        return;
    }
    setState(State::Recording);
    m_window->setRecordPauseButtonVisible(true);
    m_recordPauseAction = RecordPauseAction::Pause;
    stopTimer(m_everySecondTimer);
    m_recordingTime->start();
    updateTimer();
    // Named for a second, yet ticks frameRate/2 times a second.
    restartEverySecondTimer(qRound(2000.0 / m_recordingTime->frameRate()), &LXController::updateTimer);
}

void LXController::updateTimer()
{
    setTimerValue(m_recordingTime->elapsedTimeString());
    if (m_state != State::Recording || !m_localRecordingChosen)
        return;
    // Every tick of every third second checks; the first failing one pauses.
    const qint64 seconds = qint64(m_recordingTime->elapsedTime());
    if (seconds % 3 == 0 && !RecordingDiskSpace::enoughForRecording())
        showCutoffWarningAndPauseRecordingIfApplicable();
}

void LXController::pauseClicked()
{
    setState(State::Paused);
    m_window->recordPage()->setRecordingStateText(tr("Recording Paused"));
    m_window->recordPage()->setRecordingStateVisible(true);
    if (m_countdownView)
        m_countdownView->hide();
    if (m_route)
        m_route->pause();
    m_recordPauseAction = RecordPauseAction::Resume;
    m_window->setStartOverOffer(LXMainWindow::StartOverOffer::StartOver);
    m_window->setPublishOffer(LXMainWindow::PublishOffer::Publish);
    stopTimer(m_everySecondTimer);
    m_recordingTime->stop();
    updateTimer();
    setTimerTextHidden(true);
    restartEverySecondTimer(kFlashMsec, &LXController::flashPause);
}

void LXController::flashPause()
{
    // One flag for the whole run, never reset: the first flash after a pause
    // may show the time or hide it.
    static bool s_timerTextHidden = true;
    s_timerTextHidden = !s_timerTextHidden;
    setTimerTextHidden(s_timerTextHidden);
}

void LXController::resumeClicked()
{
    if (m_localRecordingChosen && !RecordingDiskSpace::enoughForRecording()) {
        showCutoffWarningAndPauseRecordingIfApplicable();
        return;
    }
    setState(State::Recording);
    if (m_countdownView)
        m_countdownView->show();
    if (m_route)
        m_route->resume();
    m_recordPauseAction = RecordPauseAction::Pause;
    m_window->setStartOverOffer(LXMainWindow::StartOverOffer::None);
    m_window->setPublishOffer(LXMainWindow::PublishOffer::None);
    m_window->recordPage()->setRecordingStateVisible(false, true);
    stopTimer(m_everySecondTimer);
    m_recordingTime->start(); // continues from the time before the pause
    updateTimer();
    setTimerTextHidden(false);
    restartEverySecondTimer(qRound(2000.0 / m_recordingTime->frameRate()), &LXController::updateTimer);
}

void LXController::showCutoffWarningAndPauseRecordingIfApplicable()
{
    const QString name = RecordingDiskSpace::volumeName();
    auto *alert = new QMessageBox(m_window.get());
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowModality(Qt::WindowModal);
    alert->setObjectName(QStringLiteral("diskSpaceAlert"));
    alert->setText(tr("Not enough disk space available"));
    alert->setStandardButtons(QMessageBox::Ok);
    if (m_state != State::Recording) {
        alert->setInformativeText(lxFormat(
            tr("There is not enough disk space available on the volume %@ to record a podcast."), { QVariant(name) }));
    } else {
        alert->setInformativeText(lxFormat(tr("There is not enough disk space available on the volume %@ to continue "
                                              "recording the podcast. Your recording has been paused."),
            { QVariant(name) }));
        pauseClicked();
    }
    QApplication::beep();
    alert->open();
}

void LXController::recordPauseKeyTriggered()
{
    if (m_window->currentPage() != LXMainWindow::Page::Record) {
        QApplication::beep();
        return;
    }
    if (m_state == State::Idle && canBeginRecording())
        recordClicked();
    else if (m_state == State::Recording)
        pauseClicked();
    else if (m_state == State::Paused)
        resumeClicked();
    else
        QApplication::beep();
}

void LXController::recordPauseResumeMenuItemInvoked()
{
    // Unlike the key, the menu item trusts its own enabling for the page.
    if (m_state == State::Recording)
        pauseClicked();
    else if (m_state == State::Paused)
        resumeClicked();
    else if (canBeginRecording())
        recordClicked();
    else
        QApplication::beep();
}

void LXController::jobDidPause(const std::optional<Error> &error)
{
    if (error)
        alertUserToError(*error);
}

void LXController::jobDidResume(const std::optional<Error> &error)
{
    if (error)
        alertUserToError(*error);
}

void LXController::jobDidStop(const std::optional<Error> &error)
{
    if (error)
        alertUserToError(*error);
}

void LXController::localJobDidStop(const std::optional<Error> &error)
{
    if (!error) {
        if (m_server)
            m_server->submitAndDeleteJobFilesWithDelegate(
                this, [this](const std::optional<Error> &submitError) { jobDidStop(submitError); });
    } else {
        alertUserToError(*error);
    }
    if (m_state == State::Submitted)
        tearDownLocalCameraAndMicrophone();
}
