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
