#pragma once

#include <QStringList>
#include <QWidget>

#include <optional>
#include <utility>

class MoviePlayer;
class QLabel;
class QPushButton;
class QToolButton;
class ReviewPicture;
class TrimBar;

// The review on the metadata page: the recording played back, or stepped
// through, with an In and an Out mark that say what is published. Space
// plays and pauses, Left and Right step 5 seconds, Home and End jump, I and
// O set the marks at the playhead; the keys work while the focus is in the
// player, so the title field keeps its own.
class ReviewPlayer final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ReviewPlayer)

public:
    explicit ReviewPlayer(QWidget *parent = nullptr);
    ~ReviewPlayer() override;

    // The first file is played with its sound; a second one (a screen's
    // camera) is shown inset, in step. Marks are offered when `trimmable`;
    // opening again keeps the marks that still fall within the recording.
    // `knownDuration`: the length of a recording still being written.
    void open(const QStringList &paths, bool trimmable, qint64 knownDuration = -1);
    // A recording whose media is on the server: its camera's last picture.
    void showSnapshot(const QImage &snapshot);
    void close();

    MoviePlayer *player() const { return m_player; }
    // In and Out in nanoseconds from the start; none without marks.
    std::optional<std::pair<qint64, qint64>> marks() const;
    void setMarks(qint64 in, qint64 out);
    void clearMarks();
    // The controls in reading order, for the window's tab chain.
    QList<QWidget *> focusChain() const;

signals:
    void marksChanged();

private:
    void setMark(bool in, qint64 position);
    void updateTexts();
    void announce(const QString &text);
    void step(qint64 by);

    MoviePlayer *m_player = nullptr;
    ReviewPicture *m_picture = nullptr;
    TrimBar *m_bar = nullptr;
    QToolButton *m_play = nullptr;
    QLabel *m_time = nullptr;
    QLabel *m_kept = nullptr;
    QPushButton *m_markIn = nullptr;
    QPushButton *m_markOut = nullptr;
    QPushButton *m_clear = nullptr;
    bool m_trimmable = false;
    QStringList m_openedPaths;
};
