#include "CountdownView.h"

#include "VKNotePlayer.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include <cmath>

namespace {

constexpr double kTickSeconds = 0.8;
constexpr int kNoteMsec = 400;
// Notes sound on the last this-many seconds, never on the closing tick.
constexpr quint32 kNotedSeconds = 4;
const QString kGap = QStringLiteral("    ");

} // namespace

CountdownView::CountdownView(QWidget *parent, Scheduler scheduler)
    : QWidget(parent)
    , m_interiorColor(QColor::fromRgbF(0.839216f, 0.337255f, 0.321569f, 1.0f))
    , m_secondInteriorColor(QColor::fromRgbF(1.0f, 0.0f, 0.0f, 1.0f))
    , m_scheduler(std::move(scheduler))
{
    if (!m_scheduler) {
        m_scheduler = [this](int msec, Event, std::function<void()> action) {
            QTimer::singleShot(msec, Qt::PreciseTimer, this, std::move(action));
        };
    }
    setAccessibleDescription(tr("Counts down the seconds before the recording starts"));
}

CountdownView::~CountdownView() = default;

QString CountdownView::countdownDisplayText() const
{
    QString text;
    for (const Segment &s : m_countdownDisplayValue)
        text += s.text;
    return text;
}

QString CountdownView::rowText(quint32 first) const
{
    QString row = QString::number(first);
    for (qint64 n = qint64(m_maxTimeValue) - 1; n >= 1; --n)
        row += kGap + QString::number(n);
    return row;
}

QRect CountdownView::contentRectForString()
{
    m_font = QFont(QStringLiteral("Lucida Grande"));
    m_font.setPointSizeF(40);
    const QFontMetricsF metrics(m_font);
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QRect frame = screen ? screen->geometry() : QRect(0, 0, 1024, 768);

    m_maxTimeValue = m_countdownTime;
    while (m_maxTimeValue > 0 && metrics.horizontalAdvance(rowText(m_maxTimeValue)) > frame.width())
        --m_maxTimeValue;
    m_numberColor = QColor::fromRgbF(1.0f, 0.419608f, 0.403922f, 1.0f);
    m_activeNumberColor = Qt::white;
    const int height = int(std::ceil(metrics.height())) + 10;
    m_currentTimeValue = m_maxTimeValue;
    // Qt places windows below the desktop's panels itself.
    return QRect(frame.x(), frame.y(), frame.width(), height);
}

void CountdownView::startCountdown()
{
    const bool silent = QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier);
    for (quint32 i = 0; i <= m_countdownTime; ++i) {
        const int at = int(std::lround(double(float(i * kTickSeconds)) * 1000));
        m_scheduler(at, Event::Tick, [this] { updateCountdown(); });
        const quint32 left = m_countdownTime - i;
        if (!silent && left < kNotedSeconds && left != 0) {
            m_scheduler(at, Event::StartNote, [this] { startNote(); });
            m_scheduler(at + kNoteMsec, Event::StopNote, [this] { stopNote(); });
        }
    }
}

void CountdownView::updateCountdown()
{
    if (m_currentTimeValue == 0) {
        setDisplay({});
        emit countdownTimerDidClose(this);
        return;
    }
    QList<Segment> display;
    if (m_countdownTime <= m_maxTimeValue) {
        for (quint32 n = m_maxTimeValue; n >= 1; --n)
            display.append({ (n == m_maxTimeValue ? QString() : kGap) + QString::number(n), n == m_currentTimeValue });
        --m_currentTimeValue;
    } else {
        // More seconds than fit: the first place counts down the surplus
        // until the row that fits takes over.
        display.append({ QString::number(m_countdownTime), true });
        --m_countdownTime;
        for (qint64 n = qint64(m_maxTimeValue) - 1; n >= 1; --n)
            display.append({ kGap + QString::number(n), false });
    }
    setDisplay(std::move(display));
}

void CountdownView::setDisplay(QList<Segment> value)
{
    m_countdownDisplayValue = std::move(value);
    announceCurrentNumber();
    update();
}

void CountdownView::announceCurrentNumber()
{
    // The strip never has focus, so the number is posted as an alert as
    // well as a new name: screen readers speak alerts from any window.
    for (const Segment &s : std::as_const(m_countdownDisplayValue)) {
        if (!s.active)
            continue;
        // English sources in both forms; a translation's plural rules take %n.
        const int seconds = s.text.trimmed().toInt();
        setAccessibleName(
            seconds == 1 ? tr("Recording starts in 1 second") : tr("Recording starts in %n seconds", nullptr, seconds));
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
        return;
    }
}

VKNotePlayer *CountdownView::countdownNotePlayer()
{
    if (!m_countdownNotePlayer)
        m_countdownNotePlayer = VKNotePlayer::countdownNotePlayer();
    return m_countdownNotePlayer.get();
}

void CountdownView::startNote()
{
    countdownNotePlayer()->startNote();
}

void CountdownView::stopNote()
{
    countdownNotePlayer()->stopNote();
    if (m_currentTimeValue == 0)
        m_countdownNotePlayer.reset();
}

void CountdownView::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    QLinearGradient interior(rect().topLeft(), rect().bottomLeft());
    interior.setColorAt(0, m_interiorColor);
    interior.setColorAt(1, m_secondInteriorColor);
    p.fillRect(rect(), interior);
    if (m_countdownDisplayValue.isEmpty())
        return;

    p.setFont(m_font);
    const QFontMetricsF metrics(m_font);
    const QRectF area = QRectF(rect()).adjusted(0, 0, 0, -5);
    qreal x = area.center().x() - metrics.horizontalAdvance(countdownDisplayText()) / 2;
    for (const Segment &s : m_countdownDisplayValue) {
        p.setPen(s.active ? m_activeNumberColor : m_numberColor);
        const qreal w = metrics.horizontalAdvance(s.text);
        p.drawText(QRectF(x, area.top(), w, area.height()), Qt::AlignVCenter | Qt::AlignLeft, s.text);
        x += w;
    }
}
