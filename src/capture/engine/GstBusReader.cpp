#include "GstBusReader.h"

#include <QPointer>
#include <QSocketNotifier>

GstBusReader::GstBusReader(Gst::BusRef bus, Handler handler, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_handler(std::move(handler))
{
    GPollFD pollFd;
    gst_bus_get_pollfd(m_bus.get(), &pollFd);
    m_notifier = new QSocketNotifier(pollFd.fd, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &GstBusReader::readPending);
}

GstBusReader::~GstBusReader() = default;

void GstBusReader::readPending()
{
    const QPointer<GstBusReader> alive(this);
    // Both held here: the handler may destroy the reader.
    const Gst::BusRef bus = m_bus;
    const Handler handler = m_handler;
    while (alive) {
        Gst::MessagePtr message(gst_bus_pop(bus.get()));
        if (!message)
            break;
        handler(message.get());
    }
}
