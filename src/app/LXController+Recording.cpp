#include "LXController.h"

#include "Format.h"
#include "LXMainWindow.h"
#include "Log.h"
#include "Paths.h"
#include "PropertyList.h"

#include <QApplication>
#include <QDir>
#include <QStorageInfo>
#include <QTimer>

namespace {

const QString kCutoffKey = QStringLiteral("RecordingDiskSpaceCutoffInMB");
constexpr double kCutoffMargin = 100;
constexpr double kDefaultCutoff = 1024;
constexpr int kCountdownSeconds = 3;
constexpr int kFlashMsec = 900;

// The home folder's file system, as the free-space check and the cutoff
// warning see it.
QStorageInfo homeVolume()
{
    return QStorageInfo(QDir::homePath());
}

// The agent's cutoff setting in `configuration`, if it has one.
std::optional<double> cutoffIn(const QVariant &configuration)
{
    const QVariant value = configuration.toMap().value(kCutoffKey);
    if (!value.isValid())
        return std::nullopt;
    return value.toDouble();
}

} // namespace

void LXController::connectRecordingAndSubmission()
{
    LXMainWindow *w = m_window.get();
    connect(w, &LXMainWindow::recordPauseClicked, this, &LXController::recordPauseButtonClicked);
    connect(w, &LXMainWindow::recordPauseMenuItemInvoked, this, &LXController::recordPauseResumeMenuItemInvoked);
    connect(w, &LXMainWindow::publishClicked, this, &LXController::publishClicked);
    connect(w, &LXMainWindow::submitClicked, this, &LXController::submitClicked);
    connect(w, &LXMainWindow::cancelClicked, this, &LXController::cancelClicked);
    connect(w, &LXMainWindow::startOverClicked, this, &LXController::startOverClicked);
    connect(
        w, &LXMainWindow::newPodcastClicked, this, [this] { newPodcastClicked(QGuiApplication::keyboardModifiers()); });
    connect(w, &LXMainWindow::titleEdited, this, [this](const QString &title) {
        if (m_job)
            m_job->setTitle(title);
    });
    connect(w, &LXMainWindow::descriptionEdited, this, [this](const QString &description) {
        if (m_job)
            m_job->setJobDescription(description);
    });
    // A record or pause request in flight keeps the button from asking twice.
    connect(this, &LXController::waitingOnRecordOrPauseResponseChanged, this, &LXController::updateBoundControls);
}

void LXController::askServer(void (OrvaneServerInterface::*operation)(QObject *, OrvaneServerInterface::JobCallback),
    void (LXController::*didEnd)(const std::optional<Error> &))
{
    if (!m_server)
        return;
    // The answer is dropped if the controller is gone by then.
    (m_server.get()->*operation)(this, [this, didEnd](const std::optional<Error> &error) { (this->*didEnd)(error); });
}

void LXController::setTimerValue(const QString &value)
{
    m_timerValue = value;
    if (m_window)
        m_window->setTimerText(value);
    emit timerValueChanged();
}

void LXController::setTimerTextHidden(bool hidden)
{
    m_timerTextHidden = hidden;
    if (m_window)
        m_window->setTimerTextHidden(hidden);
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
    delete m_everySecondTimer;
    m_everySecondTimer = new QTimer(this);
    m_everySecondTimer->setInterval(msec);
    connect(m_everySecondTimer, &QTimer::timeout, this, target);
    m_everySecondTimer->start();
}

void LXController::recordClicked()
{
    // Only this machine's disk fills up with the recording.
    if (m_localRecordingChosen && !enoughDiskSpaceForRecording()) {
        showCutoffWarningAndPauseRecordingIfApplicable();
        return;
    }
    writeSelectedDevicesToDefaults();
    setWaitingOnRecordOrPauseResponse(true);
    // A remote job already runs on the server while the countdown is shown;
    // a local one starts only once it is over.
    if (m_localRecordingChosen)
        jobDidStart(std::nullopt);
    else if (m_mode == Mode::Audio)
        askServer(&OrvaneServerInterface::startRemoteAudioJobWithDelegate, &LXController::jobDidStart);
    else
        askServer(&OrvaneServerInterface::startRemoteVideoJobWithDelegate, &LXController::jobDidStart);
}

void LXController::jobDidStart(const std::optional<Error> &error)
{
    setWaitingOnRecordOrPauseResponse(false);
    if (error) {
        alertUserToError(*error);
        return;
    }
    if (m_window) {
        m_window->setStartOverOffer(LXMainWindow::StartOverOffer::None);
        m_window->setRecordPauseButtonVisible(false);
    }
    setState(State::Starting);

    delete m_countdownView;
    auto *countdown = new CountdownView(nullptr, m_countdownScheduler);
    m_countdownView = countdown;
    countdown->setObjectName(QStringLiteral("countdownView"));
    countdown->setCountdownTime(kCountdownSeconds);
    connect(countdown, &CountdownView::countdownTimerDidClose, this, &LXController::countdownTimerDidClose);
    if (m_window) {
        m_window->placeOverButtonStrip(countdown);
        QRect frame(QPoint(0, 0), m_window->buttonStripSize());
        countdown->setGeometry(frame);
        countdown->contentRectForString(); // fixes the numbers that fit
        frame.translate(-1, 0);
        frame.setWidth(frame.width() + 1);
        countdown->setGeometry(frame);
    }
    countdown->startCountdown();
}

void LXController::countdownTimerDidClose()
{
    if (!m_localRecordingChosen) {
        updateToRecordingView(std::nullopt);
        return;
    }
    if (m_job)
        m_job->setStartedAt(QDateTime::currentDateTime());
    if (m_mode == Mode::Screen) {
        askServer(&OrvaneServerInterface::startLocalScreenCapJobWithDelegate, &LXController::updateToRecordingView);
    } else if (m_mode == Mode::Audio) {
        askServer(&OrvaneServerInterface::startLocalAudioJobWithDelegate, &LXController::updateToRecordingView);
    } else {
        if (m_captureDevicesController)
            m_captureDevicesController->beginRecording();
        updateToRecordingView(std::nullopt);
    }
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
    if (m_window)
        m_window->setRecordPauseButtonVisible(true);
    setRecordPauseAction(RecordPauseAction::Pause);
    delete m_everySecondTimer;
    m_everySecondTimer = nullptr;
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
    if (seconds % 3 == 0 && !enoughDiskSpaceForRecording())
        showCutoffWarningAndPauseRecordingIfApplicable();
}

void LXController::pauseClicked()
{
    setState(State::Paused);
    if (m_window) {
        m_window->setRecordingStateText(tr("Recording Paused"));
        m_window->setRecordingStateVisible(true);
    }
    if (m_countdownView)
        m_countdownView->hide();
    if (m_localRecordingChosen) {
        if (m_job)
            m_job->setStoppedAt(QDateTime::currentDateTime());
        if (m_mode == Mode::Video) {
            if (m_captureDevicesController)
                m_captureDevicesController->pauseRecording();
        } else {
            askServer(&OrvaneServerInterface::pauseLocalJobWithDelegate, &LXController::jobDidPause);
        }
    } else {
        askServer(&OrvaneServerInterface::pauseRemoteJobWithDelegate, &LXController::jobDidPause);
    }
    setRecordPauseAction(RecordPauseAction::Resume);
    if (m_window) {
        m_window->setStartOverOffer(LXMainWindow::StartOverOffer::StartOver);
        m_window->setPublishOffer(LXMainWindow::PublishOffer::Publish);
    }
    delete m_everySecondTimer;
    m_everySecondTimer = nullptr;
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
    if (m_localRecordingChosen && !enoughDiskSpaceForRecording()) {
        showCutoffWarningAndPauseRecordingIfApplicable();
        return;
    }
    setState(State::Recording);
    if (m_countdownView)
        m_countdownView->show();
    if (m_localRecordingChosen) {
        if (m_mode == Mode::Video) {
            if (m_captureDevicesController)
                m_captureDevicesController->resumeRecording();
        } else {
            askServer(&OrvaneServerInterface::resumeLocalJobWithDelegate, &LXController::jobDidResume);
        }
    } else {
        askServer(&OrvaneServerInterface::resumeRemoteJobWithDelegate, &LXController::jobDidResume);
    }
    setRecordPauseAction(RecordPauseAction::Pause);
    if (m_window) {
        m_window->setStartOverOffer(LXMainWindow::StartOverOffer::None);
        m_window->setPublishOffer(LXMainWindow::PublishOffer::None);
        m_window->setRecordingStateVisible(false, true);
    }
    delete m_everySecondTimer;
    m_everySecondTimer = nullptr;
    m_recordingTime->start(); // continues from the time before the pause
    updateTimer();
    setTimerTextHidden(false);
    restartEverySecondTimer(qRound(2000.0 / m_recordingTime->frameRate()), &LXController::updateTimer);
}

bool LXController::enoughDiskSpaceForRecording() const
{
    const double available = double(homeVolume().bytesAvailable()) / 1024 / 1024;
    // The agent's own setting wins; then the machine's ad-hoc default.
    std::optional<double> cutoff = cutoffIn(PropertyList::readFile(Paths::userAgentConfig()));
    if (!cutoff)
        cutoff = cutoffIn(PropertyList::readFile(Paths::agentAdHocDefaults()));
    const double limit = cutoff.value_or(kDefaultCutoff) + kCutoffMargin;
    if (available > limit)
        return true;
    // Names "/" whatever volume holds the home folder; the line stays as it is.
    Log::format(QStringLiteral("Not enough space for recording: %.1f MB available on /, but cutoff is %.1f MB"),
        { available, limit });
    return false;
}

void LXController::showCutoffWarningAndPauseRecordingIfApplicable()
{
    // The file system's label; none, or a failed query, names no volume.
    const QStorageInfo volume = homeVolume();
    const QString name = volume.isValid() ? volume.name() : QString();
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
    trackSheetOnMainWindow(alert);
    alert->open();
}

void LXController::trackSheetOnMainWindow(QMessageBox *sheet)
{
    ++m_sheetsOnMainWindow;
    emit canRecordOrPauseChanged();
    connect(sheet, &QMessageBox::finished, this, [this] {
        --m_sheetsOnMainWindow;
        emit canRecordOrPauseChanged();
    });
}

void LXController::recordPauseKeyTriggered()
{
    if (!m_window || m_window->currentPage() != LXMainWindow::Page::Record) {
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
    if (!error)
        askServer(&OrvaneServerInterface::submitAndDeleteJobFilesWithDelegate, &LXController::jobDidStop);
    else
        alertUserToError(*error);
    if (m_state == State::Submitted)
        tearDownLocalCameraAndMicrophone();
}
