// The floor for the start-up benchmark: a bare Qt window that reports its
// first paint the same way the application does.
#include "ResidentMemory.h"

#include <QApplication>
#include <QLabel>
#include <QPaintEvent>

#include <cstdio>
#include <cstdlib>

namespace {

class Window final : public QLabel
{
public:
    Window()
        : QLabel(QStringLiteral("Hello"))
    { }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QLabel::paintEvent(event);
        QMetaObject::invokeMethod(
            this,
            [] {
                std::printf("painted %ld\n", residentMemoryKiB());
                std::fflush(stdout);
                std::_Exit(0);
            },
            Qt::QueuedConnection);
    }
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    Window w;
    w.show();
    return app.exec();
}
