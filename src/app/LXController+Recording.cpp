#include "LXController.h"

#include "CountdownView.h"
#include "LXMainWindow.h"
#include "RecordPage.h"
#include "RecordingDiskSpace.h"
#include "Sheets.h"

#include <QApplication>
#include <QMessageBox>

namespace {

constexpr int kCountdownSeconds = 3;

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
    // The button's action follows the state; it is hidden while counting down.
    if (m_state == State::Recording)
        pauseClicked();
    else if (m_state == State::Paused)
        resumeClicked();
    else if (m_state == State::Idle)
        recordClicked();
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
    m_clock->run();
}

void LXController::updateTimer()
{
    setTimerValue(recordingTime()->elapsedTimeString());
    if (m_state != State::Recording || !m_localRecordingChosen)
        return;
    // Every tick of every third second checks; the first failing one pauses.
    const qint64 seconds = qint64(recordingTime()->elapsedTime());
    if (seconds % 3 == 0 && !RecordingDiskSpace::enoughForRecording())
        showCutoffWarningAndPauseRecordingIfApplicable();
}

void LXController::pauseClicked()
{
    setState(State::Paused);
    if (m_route)
        m_route->pause();
    showPaused();
}

void LXController::showPaused()
{
    m_window->recordPage()->setRecordingStateText(tr("Recording Paused"));
    m_window->recordPage()->setRecordingStateVisible(true);
    if (m_countdownView)
        m_countdownView->hide();
    m_window->offerPausedChoices(true);
    m_window->setRecordPauseButtonVisible(true);
    m_clock->freeze();
    setTimerTextHidden(true);
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
    m_window->offerPausedChoices(false);
    m_window->recordPage()->setRecordingStateVisible(false, true);
    m_clock->run();
    setTimerTextHidden(false);
}

void LXController::showCutoffWarningAndPauseRecordingIfApplicable()
{
    const bool recording = m_state == State::Recording;
    QMessageBox *alert = Sheets::diskSpaceAlert(m_window.get(), RecordingDiskSpace::volumeName(), recording);
    if (recording)
        pauseClicked();
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

void LXController::localJobDidStop(const std::optional<Error> &error)
{
    // Ending without asking keeps the finished files for the next sign-in.
    if (m_ending)
        return;
    if (!error) {
        handOverFiles(true);
    } else {
        alertUserToError(*error);
    }
    if (m_state == State::Submitted)
        tearDownLocalCameraAndMicrophone();
}
