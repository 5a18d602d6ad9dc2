#pragma once

#include <QImage>
#include <QLineEdit>

// A text field that draws a placeholder picture (a "required" marker) at its
// trailing edge while it is empty, besides the usual placeholder text.
class LXPlaceholderLineEdit final : public QLineEdit
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXPlaceholderLineEdit)

public:
    explicit LXPlaceholderLineEdit(QWidget *parent = nullptr);

    void setPlaceholderImageVisible(bool visible);
    bool isPlaceholderImageVisible() const { return m_imageVisible; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_imageVisible = true;
};
