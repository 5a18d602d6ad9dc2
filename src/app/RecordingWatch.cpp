#include "RecordingWatch.h"

#include "DesktopNotifier.h"
#include "LXMainWindow.h"
#include "RecordPage.h"
#include "RecordingDiskSpace.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>
#include <QTimer>

namespace {

const QString kLowDisk = QStringLiteral("low-disk");
// A rate measured over less than this says more about the start than the
// recording.
constexpr double kMeasuredAfterSeconds = 5;

} // namespace

RecordingWatch::RecordingWatch(LXMainWindow *window, Source source, QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_source(std::move(source))
    , m_timer(new QTimer(this))
    , m_guardTimer(new QTimer(this))
    , m_guard(new RecordingGuard(this))
{
    m_timer->setInterval(3000);
    connect(m_timer, &QTimer::timeout, this, &RecordingWatch::updateTimeLeft);
    m_guardTimer->setInterval(RecordingGuard::kCheckIntervalMs);
    connect(
        m_guardTimer, &QTimer::timeout, this, [this] { m_guard->check(m_source().guarded, StreamHealth::nowMs()); });
    connect(m_guard, &RecordingGuard::raised, this, &RecordingWatch::raise);
    connect(m_guard, &RecordingGuard::cleared, this, &RecordingWatch::clear);
}

void RecordingWatch::start()
{
    updateTimeLeft();
    m_timer->start();
    m_guardTimer->start();
}

void RecordingWatch::stop()
{
    m_timer->stop();
    m_guardTimer->stop();
    m_guard->reset();
    m_window->recordPage()->setTimeLeftText(QString());
    clearAll();
}

void RecordingWatch::updateTimeLeft()
{
    const Recording recording = m_source();
    if (!recording.local) {
        m_window->recordPage()->setTimeLeftText(QString());
        clear(kLowDisk);
        return;
    }
    double rate = recording.expectedBytesPerSecond;
    if (recording.begun && recording.recordedSeconds >= kMeasuredAfterSeconds) {
        qint64 written = 0;
        for (const QString &file : recording.files)
            written += QFileInfo(file).size();
        if (written > 0)
            rate = double(written) / recording.recordedSeconds;
    }
    const double room
        = double(QStorageInfo(QDir::homePath()).bytesAvailable()) - RecordingDiskSpace::cutoffMB() * 1024 * 1024;
    if (rate <= 0) {
        m_window->recordPage()->setTimeLeftText(QString());
        return;
    }
    const double seconds = qMax(0.0, room / rate);
    m_window->recordPage()->setTimeLeftText(timeLeftText(seconds));
    if (seconds < kLowSeconds)
        raise(kLowDisk,
            tr("Less than 10 minutes of recording left on this disk. Free some space, or the recording "
               "pauses when the disk is full."));
    else
        clear(kLowDisk);
}

QString RecordingWatch::timeLeftText(double seconds)
{
    // English has no plural table of its own: one and many are two texts.
    const auto minutesText = [](int n) { return n == 1 ? tr("1 minute") : tr("%n minutes", nullptr, n); };
    const auto hoursText = [](int n) { return n == 1 ? tr("1 hour") : tr("%n hours", nullptr, n); };
    const int minutes = int(seconds / 60);
    const int hours = minutes / 60;
    QString amount;
    if (hours == 0)
        amount = minutesText(minutes);
    else if (minutes % 60 == 0)
        amount = hoursText(hours);
    else
        amount = tr("%1 %2", "hours, then minutes").arg(hoursText(hours), minutesText(minutes % 60));
    return tr("About %1 of recording left on this disk").arg(amount);
}

void RecordingWatch::deviceLost(const QString &name, bool gavePicture, const QString &standIn)
{
    QString text = gavePicture
        ? tr("“%1” was disconnected. The recording goes on; its picture stays black until the recording ends.")
        : tr("“%1” was disconnected. The recording goes on without its sound until the recording ends.");
    if (!standIn.isEmpty())
        text = gavePicture ? tr("“%1” was disconnected. The recording goes on with a black picture and the sound "
                                "of “%2”.")
                           : tr("“%1” was disconnected. The recording goes on with the sound of “%2”.");
    raise(QStringLiteral("lost-") + name, standIn.isEmpty() ? text.arg(name) : text.arg(name, standIn));
}

void RecordingWatch::raise(const QString &id, const QString &text)
{
    const bool isNew = !m_raised.contains(id);
    m_window->recordPage()->showBanner(id, text);
    if (!isNew)
        return;
    m_raised << id;
    // The window out of sight, the desktop tells; once per time it arises.
    if (!m_window->isActiveWindow()) {
        if (!m_notifier)
            m_notifier = new DesktopNotifier(this);
        m_notifier->notify(tr("Lumex: check your recording"), text);
    }
}

void RecordingWatch::clear(const QString &id)
{
    if (!m_raised.removeOne(id))
        return;
    m_window->recordPage()->clearBanner(id);
}

void RecordingWatch::clearAll()
{
    for (const QString &id : std::exchange(m_raised, {}))
        m_window->recordPage()->clearBanner(id);
}
