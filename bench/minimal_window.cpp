// The floor for the start-up benchmark: a bare Qt window that reports its
// first paint the same way the application does.
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPaintEvent>

#include <cstdio>
#include <cstdlib>

namespace {

class Window final : public QLabel
{
public:
    Window() : QLabel(QStringLiteral("Hello")) {}

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QLabel::paintEvent(event);
        QMetaObject::invokeMethod(
            this,
            [] {
                long rss = 0;
                QFile status(QStringLiteral("/proc/self/status"));
                if (status.open(QIODevice::ReadOnly)) {
                    for (const QByteArray &line : status.readAll().split('\n')) {
                        if (line.startsWith("VmRSS:"))
                            rss = line.mid(6).trimmed().split(' ').first().toLong();
                    }
                }
                std::printf("painted %ld\n", rss);
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
