#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QThread>

#include <xcb/xcb.h>

// A private X server for one test: Xvfb on the first free display number,
// with -noreset so it outlives the test's own connections.
class XvfbServer final
{
public:
    explicit XvfbServer(const QString &geometry = QStringLiteral("320x240x24"))
    {
        for (int number = 90; number < 190; ++number) {
            if (QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(number))
                || QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(number)))
                continue;
            const QString display = QStringLiteral(":%1").arg(number);
            m_process.start(QStringLiteral("Xvfb"),
                { display, QStringLiteral("-noreset"), QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                    QStringLiteral("-screen"), QStringLiteral("0"), geometry });
            if (!m_process.waitForStarted())
                return;
            for (int i = 0; i < 100 && m_process.state() == QProcess::Running; ++i) {
                if (xcb_connection_t *c = xcb_connect(display.toLocal8Bit().constData(), nullptr)) {
                    const bool ok = !xcb_connection_has_error(c);
                    xcb_disconnect(c);
                    if (ok) {
                        m_display = display;
                        return;
                    }
                }
                QThread::msleep(50);
            }
            m_process.kill();
            m_process.waitForFinished();
        }
    }
    ~XvfbServer()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.terminate();
            if (!m_process.waitForFinished(3000)) {
                m_process.kill();
                m_process.waitForFinished();
            }
        }
    }
    XvfbServer(const XvfbServer &) = delete;
    XvfbServer &operator=(const XvfbServer &) = delete;

    // Empty when no server could be started.
    QString display() const { return m_display; }

private:
    QProcess m_process;
    QString m_display;
};
