#pragma once

#include "Error.h"

#include <QDBusConnection>
#include <QObject>
#include <QSize>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

class QDBusMessage;

// The main monitor as a PipeWire stream, shared through the desktop portal's
// screen cast interface: the only way a Wayland client sees the screen.
//
// The first request creates a portal session, selects one monitor and starts
// it (where the portal asks the user), then opens the PipeWire remote. The
// session and its descriptor stay open for the object's life, so the user is
// asked once per run; a restore token, where the portal gives one, lets a
// later run skip the question. Every step is an asynchronous D-Bus call:
// nothing here blocks the thread the object lives on.
class ScreenCastPortal final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ScreenCastPortal)

public:
    struct Stream
    {
        int fd = -1; // the PipeWire remote, owned by the portal object
        quint32 nodeId = 0;
        QSize size; // the monitor's size in pixels, when the portal tells it
    };
    // Runs on this object's thread, once, with nullopt when stream() is set.
    using Completion = std::function<void(const std::optional<Error> &)>;

    explicit ScreenCastPortal(const QDBusConnection &bus = QDBusConnection::sessionBus(), QObject *parent = nullptr);
    ~ScreenCastPortal() override;

    // Calls `done` when the stream is open: at once (queued) when it already
    // is, or when the steps started by the first request end. A failure ends
    // the session; the next request starts again.
    void requestStream(Completion done);
    const std::optional<Stream> &stream() const { return m_stream; }

    QString restoreToken() const { return m_restoreToken; }
    void setRestoreToken(const QString &token) { m_restoreToken = token; }

    // The domain of this object's errors; the codes below.
    static const QString kErrorDomain;
    enum Code : int { NoPortal = 1, Declined = 2, Failed = 3 };

signals:
    // The portal gave a new token to restore this choice in a later run.
    void restoreTokenChanged(const QString &token);

private slots:
    void handleResponse(const QDBusMessage &message);
    void handleSessionClosed();

private:
    enum class Step { Idle, Version, CreateSession, SelectSources, Start, OpenRemote, Ready };

    void callVersion();
    void callRequest(Step step, const QString &method, const QList<QVariant> &arguments, QVariantMap options);
    void afterResponse(Step step, const QVariantMap &results);
    void openRemote();
    void finish(const std::optional<Error> &error);
    void fail(Code code, const QString &detail);
    void closeSession();

    QDBusConnection m_bus;
    Step m_step = Step::Idle;
    uint m_version = 0;
    uint m_cursorModes = 0;
    int m_generation = 0; // replies to an ended session are dropped
    QString m_requestPath;
    QString m_sessionHandle;
    QString m_restoreToken;
    std::optional<Stream> m_stream;
    std::vector<Completion> m_waiting;
};
