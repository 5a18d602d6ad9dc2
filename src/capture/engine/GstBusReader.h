#pragma once

#include "GstHandles.h"

#include <QObject>

#include <functional>

class QSocketNotifier;

// Brings the messages of one GStreamer bus to the Qt event loop of the
// thread that makes the reader: the bus's poll descriptor wakes a socket
// notifier, and each message goes to the handler there, one at a time.
// The handler may destroy the reader; reading stops at once then.
class GstBusReader final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(GstBusReader)

public:
    using Handler = std::function<void(GstMessage *message)>;

    GstBusReader(Gst::BusRef bus, Handler handler, QObject *parent = nullptr);
    ~GstBusReader() override;

    GstBus *bus() const { return m_bus.get(); }
    // Hands every message waiting now to the handler, without waiting for
    // the event loop (a state change that failed has posted why).
    void readPending();

private:
    Gst::BusRef m_bus;
    Handler m_handler;
    QSocketNotifier *m_notifier = nullptr;
};
