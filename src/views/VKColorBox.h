#pragma once

#include <QColor>
#include <QWidget>

// A box that fills itself with a colour or a vertical gradient and draws
// separator lines along its top and bottom edges. Pages and the button strip
// of the main window sit in these.
class VKColorBox : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VKColorBox)

public:
    explicit VKColorBox(QWidget *parent = nullptr);

    void setBackgroundColor(const QColor &color);
    QColor backgroundColor() const { return m_background; }
    void setGradient(const QColor &top, const QColor &bottom);
    void setDrawsGradient(bool draws);
    bool drawsGradient() const { return m_drawsGradient; }
    void setFrameColor(const QColor &color);
    void setTopSeparatorColor(const QColor &color);
    void setBottomSeparatorColor(const QColor &color);
    void setCornerRadius(qreal radius);

    // The single page shown in the box; the previous one is hidden, not
    // deleted (pages belong to the window).
    void setContentView(QWidget *view);
    QWidget *contentView() const { return m_content; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QColor m_background { Qt::black };
    QColor m_gradientTop;
    QColor m_gradientBottom;
    QColor m_frame;
    QColor m_topSeparator;
    QColor m_bottomSeparator;
    qreal m_cornerRadius = 0;
    bool m_drawsGradient = false;
    QWidget *m_content = nullptr;
};
