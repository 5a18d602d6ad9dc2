#include "GstHandles.h"

#include <mutex>

namespace Gst {

void ensureInitialized()
{
    static std::once_flag once;
    std::call_once(once, [] { gst_init(nullptr, nullptr); });
}

ElementRef make(const char *factory, const char *name)
{
    ensureInitialized();
    return ElementRef(gst_element_factory_make(factory, name), Ref::Adopt);
}

ElementRef make(const char *factory, Error *error)
{
    ElementRef element = make(factory);
    if (!element && error)
        *error = coreError(GST_CORE_ERROR_MISSING_PLUGIN,
            QStringLiteral("The GStreamer element %1 is not installed.").arg(QString::fromUtf8(factory)));
    return element;
}

void add(GstElement *bin, const ElementRef &element)
{
    gst_bin_add(GST_BIN(bin), element.element());
}

bool link(GstElement *source, GstElement *sink, Error *error)
{
    if (source && sink && gst_element_link(source, sink))
        return true;
    if (error)
        *error = coreError(GST_CORE_ERROR_NEGOTIATION,
            QStringLiteral("Cannot link %1 to %2")
                .arg(QString::fromUtf8(source ? GST_OBJECT_NAME(source) : "nothing"),
                    QString::fromUtf8(sink ? GST_OBJECT_NAME(sink) : "nothing")));
    return false;
}

bool link(GstPad *source, GstPad *sink, Error *error)
{
    if (source && sink && gst_pad_link(source, sink) == GST_PAD_LINK_OK)
        return true;
    if (error)
        *error = coreError(GST_CORE_ERROR_NEGOTIATION, QStringLiteral("Cannot link the capture streams"));
    return false;
}

ElementRef parseBin(const QByteArray &description, bool ghostUnlinked, Error *error)
{
    ensureInitialized();
    GError *raw = nullptr;
    ElementRef bin(gst_parse_bin_from_description(description.constData(), ghostUnlinked, &raw), Ref::Adopt);
    ErrorPtr parseError(raw);
    if (bin && !parseError)
        return bin;
    if (error)
        *error = parseError ? toError(parseError.get())
                            : coreError(GST_CORE_ERROR_FAILED, QStringLiteral("Cannot build the capture pipeline"));
    return {};
}

bool addGhostPad(GstElement *bin, const char *childName, const char *padName, const char *ghostName)
{
    ElementRef child(gst_bin_get_by_name(GST_BIN(bin), childName), Ref::Adopt);
    PadRef target(child ? gst_element_get_static_pad(child.element(), padName) : nullptr, Ref::Adopt);
    return target && gst_element_add_pad(bin, gst_ghost_pad_new(ghostName, target.get()));
}

void removeFromParent(GstElement *element)
{
    if (!element)
        return;
    if (GstObject *parent = gst_object_get_parent(GST_OBJECT(element))) {
        gst_bin_remove(GST_BIN(parent), element);
        gst_object_unref(parent);
    }
}

SignalConnection::SignalConnection(gpointer instance, const char *signal, GCallback callback, gpointer data)
    : m_instance(G_OBJECT(g_object_ref(instance)))
    , m_id(g_signal_connect(instance, signal, callback, data))
{ }

SignalConnection::SignalConnection(SignalConnection &&other) noexcept
    : m_instance(std::exchange(other.m_instance, nullptr))
    , m_id(std::exchange(other.m_id, 0))
{ }

SignalConnection &SignalConnection::operator=(SignalConnection &&other) noexcept
{
    if (this != &other) {
        disconnect();
        m_instance = std::exchange(other.m_instance, nullptr);
        m_id = std::exchange(other.m_id, 0);
    }
    return *this;
}

void SignalConnection::disconnect()
{
    if (!m_instance)
        return;
    if (m_id)
        g_signal_handler_disconnect(m_instance, m_id);
    g_object_unref(std::exchange(m_instance, nullptr));
    m_id = 0;
}

bool hasFactory(const char *factory)
{
    ensureInitialized();
    GstElementFactory *f = gst_element_factory_find(factory);
    if (!f)
        return false;
    gst_object_unref(f);
    return true;
}

Error toError(const GError *error)
{
    if (!error)
        return coreError(GST_CORE_ERROR_FAILED, QStringLiteral("Unknown GStreamer failure"));
    return Error { QString::fromUtf8(g_quark_to_string(error->domain)), error->code,
        QString::fromUtf8(error->message) };
}

Error coreError(GstCoreError code, const QString &message)
{
    return Error { QString::fromUtf8(g_quark_to_string(GST_CORE_ERROR)), code, message };
}

Error resourceError(GstResourceError code, const QString &message)
{
    return Error { QString::fromUtf8(g_quark_to_string(GST_RESOURCE_ERROR)), code, message };
}

std::optional<Error> errorFromMessage(GstMessage *message)
{
    if (!message || GST_MESSAGE_TYPE(message) != GST_MESSAGE_ERROR)
        return std::nullopt;
    GError *raw = nullptr;
    gchar *debug = nullptr;
    gst_message_parse_error(message, &raw, &debug);
    ErrorPtr error(raw);
    CharPtr debugText(debug);
    return toError(error.get());
}

} // namespace Gst
