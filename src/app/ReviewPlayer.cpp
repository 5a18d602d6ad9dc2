#include "ReviewPlayer.h"

#include "MoviePlayer.h"
#include "PageWidgets.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

using namespace PageWidgets;

namespace {

constexpr qint64 kSecond = 1'000'000'000;

QString clockText(qint64 nanoseconds)
{
    const qint64 seconds = std::max<qint64>(0, nanoseconds) / kSecond;
    return seconds >= 3600 ? QStringLiteral("%1:%2:%3")
                                 .arg(seconds / 3600)
                                 .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0'))
                                 .arg(seconds % 60, 2, 10, QLatin1Char('0'))
                           : QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

// The picture, the screen's camera inset as on the record page, or for sound
// alone its loudness over the recording with the playhead.
class ReviewPicture final : public QWidget
{
public:
    explicit ReviewPicture(MoviePlayer *player, QWidget *parent)
        : QWidget(parent)
        , m_player(player)
    {
        setMinimumHeight(120);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }
    QImage snapshot;
    QString message;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        p.fillRect(rect(), QColor(0x0b, 0x0b, 0x0e));
        const QImage frame = snapshot.isNull() ? m_player->frame() : snapshot;
        if (!message.isEmpty()) {
            p.setPen(QColor(0xc8, 0xc8, 0xd0));
            p.drawText(rect().adjusted(12, 12, -12, -12), Qt::AlignCenter | Qt::TextWordWrap, message);
            return;
        }
        if (!frame.isNull()) {
            const QRect target = fitted(frame.size(), rect());
            p.setRenderHint(QPainter::SmoothPixmapTransform);
            p.drawImage(target, frame);
            const QImage inset = m_player->insetFrame();
            if (!inset.isNull() && snapshot.isNull()) {
                const QSize size = inset.size().scaled(target.width() / 4, target.height() / 4, Qt::KeepAspectRatio);
                const QRect box(target.right() - size.width() - 10, target.bottom() - size.height() - 10, size.width(),
                    size.height());
                p.drawImage(box, inset);
                p.setPen(QPen(QColor(0xf2, 0xf2, 0xf5), 1));
                p.drawRect(box.adjusted(0, 0, -1, -1));
            }
            return;
        }
        const QVector<float> levels = m_player->levels();
        if (levels.isEmpty())
            return;
        // Sound alone: a bar per slice of the recording, the played part lit.
        const int bars = std::max(1, width() / 3);
        const qint64 duration = std::max<qint64>(1, m_player->duration());
        const double played = double(m_player->position()) / double(duration);
        for (int i = 0; i < bars; ++i) {
            const int from = int(qint64(i) * levels.size() / bars);
            const int to = std::max(from + 1, int(qint64(i + 1) * levels.size() / bars));
            float level = 0;
            for (int j = from; j < to && j < levels.size(); ++j)
                level = std::max(level, levels[j]);
            const int h = std::max(1, int(level * (height() - 16)));
            const bool lit = double(i) / bars < played;
            p.fillRect(
                QRect(i * 3, (height() - h) / 2, 2, h), lit ? QColor(0x5d, 0xd3, 0x9e) : QColor(0x4a, 0x4a, 0x55));
        }
    }

private:
    static QRect fitted(QSize size, const QRect &into)
    {
        size.scale(into.size(), Qt::KeepAspectRatio);
        return QRect(into.center() - QPoint(size.width() / 2, size.height() / 2), size);
    }
    MoviePlayer *m_player;
};

// The scrub bar: the playhead, and the In and Out marks with the kept range
// between them; a click or a drag moves the playhead, a drag near a mark
// moves the mark.
class TrimBar final : public QWidget
{
public:
    explicit TrimBar(QWidget *parent)
        : QWidget(parent)
    {
        setMinimumHeight(28);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        setFocusPolicy(Qt::StrongFocus);
    }
    qint64 duration = 0;
    qint64 position = 0;
    qint64 in = -1, out = -1;
    bool trimmable = false;
    std::function<void(qint64)> seek;
    std::function<void(bool in, qint64)> moveMark;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const QRect track(kMargin, height() / 2 - 3, width() - 2 * kMargin, 6);
        p.fillRect(track, QColor(0x3c, 0x3c, 0x44));
        if (in >= 0 && out > in) {
            const QRect kept(xFor(in), track.top() - 4, xFor(out) - xFor(in), track.height() + 8);
            p.fillRect(kept, QColor(0x5d, 0xd3, 0x9e, 150));
            p.setPen(QPen(QColor(0x5d, 0xd3, 0x9e), 3));
            p.drawLine(xFor(in), 2, xFor(in), height() - 2);
            p.drawLine(xFor(out), 2, xFor(out), height() - 2);
        }
        p.setPen(Qt::NoPen);
        p.setBrush(hasFocus() ? QColor(0xff, 0xff, 0xff) : QColor(0xd0, 0xd0, 0xd8));
        p.drawEllipse(QPoint(xFor(position), height() / 2), 7, 7);
    }
    void mousePressEvent(QMouseEvent *event) override
    {
        const int x = int(event->position().x());
        m_dragging = 0;
        if (trimmable && in >= 0 && std::abs(x - xFor(in)) <= 6)
            m_dragging = 1;
        else if (trimmable && out >= 0 && std::abs(x - xFor(out)) <= 6)
            m_dragging = 2;
        mouseMoveEvent(event);
    }
    void mouseMoveEvent(QMouseEvent *event) override
    {
        const qint64 at = timeFor(int(event->position().x()));
        if (m_dragging && moveMark)
            moveMark(m_dragging == 1, at);
        else if (seek)
            seek(at);
    }
    void mouseReleaseEvent(QMouseEvent *) override { m_dragging = 0; }

private:
    static constexpr int kMargin = 10;
    int xFor(qint64 time) const
    {
        return kMargin + int(duration > 0 ? double(time) / double(duration) * (width() - 2 * kMargin) : 0);
    }
    qint64 timeFor(int x) const
    {
        const double fraction = std::clamp(double(x - kMargin) / std::max(1, width() - 2 * kMargin), 0.0, 1.0);
        return qint64(fraction * double(duration));
    }
    int m_dragging = 0; // 1: the In mark, 2: the Out mark
};

ReviewPlayer::ReviewPlayer(QWidget *parent)
    : QWidget(parent)
    , m_player(new MoviePlayer(this))
{
    setObjectName(QStringLiteral("reviewPlayer"));
    m_picture = named(new ReviewPicture(m_player, this), "reviewPicture", tr("Recording"));
    m_bar = named(new TrimBar(this), "reviewPosition", tr("Position"));
    m_play = named(new QToolButton(this), "reviewPlay", tr("Play"));
    m_play->setText(tr("Play"));
    m_time = named(subtle(QString(), this), "reviewTime", tr("Time"));
    m_markIn = named(new QPushButton(tr("Mark In"), this), "reviewMarkIn", tr("Mark In"));
    m_markOut = named(new QPushButton(tr("Mark Out"), this), "reviewMarkOut", tr("Mark Out"));
    m_clear = named(new QPushButton(tr("Clear"), this), "reviewClear", tr("Clear marks"));
    m_kept = named(subtle(QString(), this), "reviewKept", tr("Kept length"));
    m_kept->setWordWrap(false);
    auto *controls = new QHBoxLayout;
    controls->setSpacing(8);
    controls->addWidget(m_play);
    controls->addWidget(m_time);
    controls->addStretch(1);
    controls->addWidget(m_kept);
    controls->addWidget(m_markIn);
    controls->addWidget(m_markOut);
    controls->addWidget(m_clear);
    auto *v = new QVBoxLayout(this);
    v->setContentsMargins(0, 0, 0, 0);
    v->setSpacing(4);
    v->addWidget(m_picture, 1);
    v->addWidget(m_bar);
    v->addLayout(controls);

    m_bar->seek = [this](qint64 at) { m_player->seek(at); };
    m_bar->moveMark = [this](bool in, qint64 at) { setMark(in, at); };
    connect(
        m_play, &QToolButton::clicked, this, [this] { m_player->isPlaying() ? m_player->pause() : m_player->play(); });
    connect(m_markIn, &QPushButton::clicked, this, [this] { setMark(true, m_player->position()); });
    connect(m_markOut, &QPushButton::clicked, this, [this] { setMark(false, m_player->position()); });
    connect(m_clear, &QPushButton::clicked, this, [this] {
        clearMarks();
        announce(tr("Marks cleared: the whole recording is published."));
    });
    connect(m_player, &MoviePlayer::frameChanged, m_picture, qOverload<>(&QWidget::update));
    connect(m_player, &MoviePlayer::levelsChanged, m_picture, qOverload<>(&QWidget::update));
    connect(m_player, &MoviePlayer::positionChanged, this, [this](qint64 at) {
        m_bar->position = at;
        m_bar->update();
        if (m_player->levels().size())
            m_picture->update();
        updateTexts();
    });
    connect(m_player, &MoviePlayer::durationChanged, this, [this](qint64 duration) {
        m_bar->duration = duration;
        // A recording that was resumed and paused again is longer now; the
        // marks stay where they were.
        if (m_bar->out > duration)
            m_bar->out = duration;
        m_bar->update();
        updateTexts();
    });
    connect(m_player, &MoviePlayer::playingChanged, this, [this](bool playing) {
        m_play->setText(playing ? tr("Pause") : tr("Play"));
        m_play->setAccessibleName(m_play->text());
    });
    connect(m_player, &MoviePlayer::failed, this, [this](const QString &message) {
        m_picture->message = message;
        m_picture->update();
    });

    // The keys act while the focus is in the player, not in the fields.
    const auto key = [this](const QKeySequence &sequence, auto action) {
        auto *shortcut = new QShortcut(sequence, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, action);
    };
    key(Qt::Key_Space, [this] { m_player->isPlaying() ? m_player->pause() : m_player->play(); });
    key(Qt::Key_Left, [this] { step(-5 * kSecond); });
    key(Qt::Key_Right, [this] { step(5 * kSecond); });
    key(Qt::Key_Home, [this] { m_player->seek(0); });
    key(Qt::Key_End, [this] { m_player->seek(std::max<qint64>(0, m_player->duration())); });
    key(Qt::Key_I, [this] { setMark(true, m_player->position()); });
    key(Qt::Key_O, [this] { setMark(false, m_player->position()); });
    describe(this,
        {
            { "reviewPicture", tr("The recording as it will be published") },
            { "reviewPosition", tr("Left and Right step 5 seconds; I and O set the marks") },
            { "reviewPlay", tr("Plays or pauses the recording (Space)") },
            { "reviewMarkIn", tr("Publishes the recording from the playhead on (I)") },
            { "reviewMarkOut", tr("Publishes the recording up to the playhead (O)") },
            { "reviewClear", tr("Publishes the whole recording again") },
        });
    updateTexts();
    hide(); // until there is something to review
}

ReviewPlayer::~ReviewPlayer() = default;

void ReviewPlayer::open(const QStringList &paths, bool trimmable, qint64 knownDuration)
{
    show();
    m_picture->snapshot = {};
    m_picture->message.clear();
    m_trimmable = trimmable;
    m_bar->trimmable = trimmable;
    // Marks belong to one recording: they stay for the same files (back to
    // the recording and here again), and go for others.
    if (paths != m_openedPaths)
        clearMarks();
    m_openedPaths = paths;
    for (QWidget *mark : { static_cast<QWidget *>(m_markIn), static_cast<QWidget *>(m_markOut),
             static_cast<QWidget *>(m_clear), static_cast<QWidget *>(m_kept) })
        mark->setVisible(trimmable);
    if (!trimmable)
        clearMarks();
    m_bar->show();
    m_play->show();
    m_time->show();
    // The same files again (back from the page and here once more): the
    // marks stay, and the player reads how far the recording has got.
    m_player->open(paths, knownDuration);
    m_picture->update();
    updateTexts();
}

void ReviewPlayer::showSnapshot(const QImage &snapshot)
{
    show();
    m_player->close();
    clearMarks();
    m_picture->message = snapshot.isNull() ? tr("The recording is on the server.") : QString();
    m_picture->snapshot = snapshot;
    for (QWidget *control : focusChain())
        control->hide();
    m_time->hide();
    m_kept->hide();
    m_picture->update();
}

void ReviewPlayer::close()
{
    m_player->close();
    hide();
}

std::optional<std::pair<qint64, qint64>> ReviewPlayer::marks() const
{
    if (!m_trimmable || (m_bar->in < 0 && m_bar->out < 0))
        return std::nullopt;
    const qint64 in = std::max<qint64>(0, m_bar->in);
    const qint64 out = m_bar->out >= 0 ? m_bar->out : std::max<qint64>(0, m_player->duration());
    return std::pair { in, out };
}

void ReviewPlayer::setMarks(qint64 in, qint64 out)
{
    m_bar->in = in;
    m_bar->out = out;
    m_bar->update();
    updateTexts();
    emit marksChanged();
}

void ReviewPlayer::clearMarks()
{
    if (m_bar->in < 0 && m_bar->out < 0)
        return;
    setMarks(-1, -1);
}

void ReviewPlayer::setMark(bool in, qint64 position)
{
    if (!m_trimmable)
        return;
    const qint64 duration = std::max<qint64>(0, m_player->duration());
    position = std::clamp<qint64>(position, 0, duration);
    qint64 newIn = m_bar->in, newOut = m_bar->out;
    // A mark set past the other one moves the other one along.
    if (in) {
        newIn = position;
        if (newOut >= 0 && newOut <= newIn)
            newOut = -1;
    } else {
        newOut = position;
        if (newIn >= newOut)
            newIn = -1;
    }
    setMarks(newIn, newOut);
    announce((in ? tr("In mark at %1.") : tr("Out mark at %1.")).arg(clockText(position)) + QLatin1Char(' ')
        + m_kept->text());
}

void ReviewPlayer::step(qint64 by)
{
    m_player->seek(m_player->position() + by);
}

void ReviewPlayer::updateTexts()
{
    const qint64 duration = m_player->duration();
    m_time->setText(tr("%1 of %2").arg(clockText(m_bar->position), duration >= 0 ? clockText(duration) : tr("–")));
    m_time->setAccessibleName(m_time->text());
    m_bar->setAccessibleDescription(m_time->text());
    const std::optional<std::pair<qint64, qint64>> kept = marks();
    m_kept->setText(kept
            ? tr("Keeps %1 (%2–%3)")
                  .arg(clockText(kept->second - kept->first), clockText(kept->first), clockText(kept->second))
            : tr("Keeps all"));
    m_kept->setAccessibleName(m_kept->text());
    m_clear->setEnabled(kept.has_value());
}

void ReviewPlayer::announce(const QString &text)
{
    m_kept->setAccessibleDescription(text);
    QAccessibleEvent alert(m_kept, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QList<QWidget *> ReviewPlayer::focusChain() const
{
    return { m_play, m_bar, m_markIn, m_markOut, m_clear };
}
