#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

// The last page: how the hand-over went, and the way to a new recording.
class DonePage final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DonePage)

public:
    explicit DonePage(QWidget *parent = nullptr);

    void setSubmittedStatus(const QString &text);
    void setNewPodcastButtonVisible(bool visible);
    QPushButton *newPodcastButton() const { return m_newPodcast; }

signals:
    void newPodcastClicked();

private:
    QLabel *m_submittedStatus = nullptr;
    QPushButton *m_newPodcast = nullptr;
};
