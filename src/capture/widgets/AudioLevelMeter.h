#pragma once

#include "CaptureSession.h"

#include <QTimer>
#include <QWidget>

// A horizontal bar for the level of a sound connection, so the user sees a
// microphone working before recording. Reads the connection's level ten
// times a second while one is set; a null connection shows an empty bar.
class AudioLevelMeter final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AudioLevelMeter)

public:
    // The bar spans this many decibels below full scale.
    static constexpr float kFloorDecibels = -60.0f;

    explicit AudioLevelMeter(QWidget *parent = nullptr);

    void setConnection(const CaptureConnectionPtr &connection);
    CaptureConnectionPtr connection() const { return m_connection; }
    // The share of the bar lit now, 0 to 1.
    qreal fraction() const { return m_fraction; }

    QSize sizeHint() const override { return { 160, 10 }; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void sample();

    CaptureConnectionPtr m_connection;
    QTimer m_timer;
    qreal m_fraction = 0;
};
