#pragma once

#include <QPushButton>

// The round record/pause button of the button strip. Its picture is chosen
// by image name: "RecordVideo", "RecordAudio", "RecordScreen" or "PausedOff".
class LXRecordButton final : public QPushButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXRecordButton)

public:
    explicit LXRecordButton(QWidget *parent = nullptr);

    void setImageName(const QString &name);
    QString imageName() const { return m_imageName; }
    // Whether pressing it now pauses a running recording.
    bool pauses() const;
    QSize sizeHint() const override { return { 56, 56 }; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void describeState();

    QString m_imageName = QStringLiteral("RecordVideo");
    bool m_hovered = false;
};
