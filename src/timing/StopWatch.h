#pragma once

#include <QDateTime>
#include <QString>
#include <QVariantMap>

#include <functional>

// Running time of a recording across any number of pauses. Pauses are
// accounted for by moving the start back by the time already accumulated, so
// the time between stop() and the next start() is never counted.
// Used on the main thread only.
class StopWatch final
{
public:
    // Seconds as a double; the wall clock by default, replaceable for tests.
    using Clock = std::function<double()>;

    struct AttributedString
    {
        QString text;
        QVariantMap attributes;
    };

    explicit StopWatch(Clock clock = {});
    ~StopWatch();
    StopWatch(const StopWatch &) = delete;
    StopWatch &operator=(const StopWatch &) = delete;

    void start();
    double stop();
    double elapsedTime();
    void reset();
    // Takes up a recording's time where an earlier run of the program left
    // it; only while stopped.
    void setElapsedTime(double seconds)
    {
        if (!m_isRunning)
            m_elapsedInterval = seconds;
    }
    bool isRunning() const { return m_isRunning; }

    // "%02d:%02d:%02d" of whole hours, minutes and seconds; hours are not
    // limited to two digits.
    QString elapsedTimeString();
    AttributedString elapsedTimeAttributedString();

    quint32 frameRate() const { return m_frameRate; }
    void setFrameRate(quint32 rate) { m_frameRate = rate; }
    QDateTime startPoint() const { return m_startPoint; }
    void setStartPoint(const QDateTime &date) { m_startPoint = date; }
    QVariantMap stringAttributes() const { return m_stringAttributes; }
    void setStringAttributes(const QVariantMap &attributes) { m_stringAttributes = attributes; }

    // The text for a number of seconds, as elapsedTimeString() shows it.
    static QString formatElapsed(double seconds);

private:
    Clock m_clock;
    QDateTime m_startPoint;
    double m_startInterval = 0;
    double m_elapsedInterval = 0;
    quint32 m_frameRate = 30;
    bool m_isRunning = false;
    QVariantMap m_stringAttributes;
};
