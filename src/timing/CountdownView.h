#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QWidget>

#include <functional>
#include <memory>

class VKNotePlayer;

// The strip of numbers counted down before a recording starts, with a short
// note on each of the last three seconds. Made afresh for each recording and
// used once: contentRectForString() fixes how many numbers fit, then
// startCountdown() runs the ticks; the closing tick empties the strip and
// emits countdownTimerDidClose(). Main thread only.
class CountdownView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CountdownView)

public:
    enum class Event { Tick, StartNote, StopNote };
    // Runs `action` once, `msec` after now. The default is a single-shot
    // QTimer on this view (Qt timers also fire while a menu is open).
    using Scheduler = std::function<void(int msec, Event event, std::function<void()> action)>;

    // One run of the strip's text: a number (with its leading spaces) and
    // whether it is the highlighted one.
    struct Segment
    {
        QString text;
        bool active = false;
        bool operator==(const Segment &) const = default;
    };

    explicit CountdownView(QWidget *parent = nullptr, Scheduler scheduler = {});
    ~CountdownView() override;

    quint32 countdownTime() const { return m_countdownTime; }
    void setCountdownTime(quint32 seconds) { m_countdownTime = seconds; }
    quint32 maxTimeValue() const { return m_maxTimeValue; }
    quint32 currentTimeValue() const { return m_currentTimeValue; }
    QList<Segment> countdownDisplayValue() const { return m_countdownDisplayValue; }
    QString countdownDisplayText() const;

    // Fixes how many numbers fit across the main screen; returns the strip
    // right below the top of the screen. Callers use it for that side effect.
    QRect contentRectForString();
    void startCountdown();

    // Made on the first note; released once the countdown is over.
    VKNotePlayer *countdownNotePlayer();
    bool hasNotePlayer() const { return m_countdownNotePlayer != nullptr; }

signals:
    void countdownTimerDidClose(CountdownView *view);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void updateCountdown();
    void startNote();
    void stopNote();
    QString rowText(quint32 first) const;
    void setDisplay(QList<Segment> value);
    void announceCurrentNumber();

    quint32 m_maxTimeValue = 0;
    quint32 m_currentTimeValue = 0;
    quint32 m_countdownTime = 0;
    QFont m_font;
    QColor m_numberColor;
    QColor m_activeNumberColor;
    QColor m_interiorColor;
    QColor m_secondInteriorColor;
    QList<Segment> m_countdownDisplayValue;
    Scheduler m_scheduler;
    std::unique_ptr<VKNotePlayer> m_countdownNotePlayer;
};
