#pragma once

#include <gst/gst.h>

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <utility>

#include "Error.h"

// Owning handles for the GLib and GStreamer C objects the capture layer
// holds, so that every early return releases what it received.
namespace Gst {

enum class Ref { Adopt, Add };

// A counted reference to a GstObject (element, pad, bus, device, ...). A
// floating reference is sunk on adoption, so a freshly made element and one
// returned with transfer-full are owned the same way.
template<typename T> class ObjectRef final
{
public:
    ObjectRef() = default;
    ObjectRef(T *object, Ref mode)
        : m_object(object)
    {
        if (!m_object)
            return;
        if (mode == Ref::Add)
            gst_object_ref(GST_OBJECT_CAST(m_object));
        else if (g_object_is_floating(m_object))
            gst_object_ref_sink(GST_OBJECT_CAST(m_object));
    }
    ObjectRef(const ObjectRef &other)
        : ObjectRef(other.m_object, Ref::Add)
    { }
    ObjectRef(ObjectRef &&other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    { }
    ObjectRef &operator=(ObjectRef other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~ObjectRef()
    {
        if (m_object)
            gst_object_unref(GST_OBJECT_CAST(m_object));
    }

    T *get() const { return m_object; }
    GstElement *element() const { return GST_ELEMENT_CAST(m_object); }
    explicit operator bool() const { return m_object != nullptr; }
    T *release() { return std::exchange(m_object, nullptr); }

private:
    T *m_object = nullptr;
};

using ElementRef = ObjectRef<GstElement>;
using PadRef = ObjectRef<GstPad>;
using BusRef = ObjectRef<GstBus>;

struct GErrorDeleter
{
    void operator()(GError *e) const { g_error_free(e); }
};
using ErrorPtr = std::unique_ptr<GError, GErrorDeleter>;

struct GFreeDeleter
{
    void operator()(void *p) const { g_free(p); }
};
using CharPtr = std::unique_ptr<gchar, GFreeDeleter>;

struct MessageDeleter
{
    void operator()(GstMessage *m) const { gst_message_unref(m); }
};
using MessagePtr = std::unique_ptr<GstMessage, MessageDeleter>;

struct EventDeleter
{
    void operator()(GstEvent *e) const { gst_event_unref(e); }
};
using EventPtr = std::unique_ptr<GstEvent, EventDeleter>;

struct CapsDeleter
{
    void operator()(GstCaps *c) const { gst_caps_unref(c); }
};
using CapsPtr = std::unique_ptr<GstCaps, CapsDeleter>;

struct StructureDeleter
{
    void operator()(GstStructure *s) const { gst_structure_free(s); }
};
using StructurePtr = std::unique_ptr<GstStructure, StructureDeleter>;

// A GObject signal handler that stays connected as long as this object
// lives: a callback never outlives the object whose pointer it was given.
class SignalConnection final
{
public:
    SignalConnection() = default;
    SignalConnection(gpointer instance, const char *signal, GCallback callback, gpointer data);
    SignalConnection(SignalConnection &&other) noexcept;
    SignalConnection &operator=(SignalConnection &&other) noexcept;
    SignalConnection(const SignalConnection &) = delete;
    SignalConnection &operator=(const SignalConnection &) = delete;
    ~SignalConnection() { disconnect(); }

    void disconnect();
    explicit operator bool() const { return m_id != 0; }

private:
    GObject *m_instance = nullptr; // referenced while connected
    gulong m_id = 0;
};

// Initialises GStreamer once per process; safe to call from anywhere.
void ensureInitialized();

// A new element from a factory, or an empty handle when the factory is not
// in the registry.
ElementRef make(const char *factory, const char *name = nullptr);

// Like make(), but a missing factory sets `error` (a missing plug-in).
ElementRef make(const char *factory, Error *error);

// Adds `element` to `bin`; the bin takes its own reference.
void add(GstElement *bin, const ElementRef &element);

// Links two elements, or two pads; a refusal sets `error` (a negotiation
// failure) and returns false.
bool link(GstElement *source, GstElement *sink, Error *error);
bool link(GstPad *source, GstPad *sink, Error *error);

// A bin from a launch description, or an empty handle with `error` set.
// With `ghostUnlinked`, the bin's unlinked pads become its own.
ElementRef parseBin(const QByteArray &description, bool ghostUnlinked, Error *error);

// Gives `bin` a ghost pad `ghostName` for the pad `padName` of its child
// `childName`; false when either is missing.
bool addGhostPad(GstElement *bin, const char *childName, const char *padName, const char *ghostName);

// Takes an element out of whichever bin holds it, if any.
void removeFromParent(GstElement *element);

// Whether the registry knows a factory of that name.
bool hasFactory(const char *factory);

// GStreamer's failure as the capture layer reports it: GStreamer's own error
// domain and message.
Error toError(const GError *error);

// An error of GStreamer's core domain for failures that GStreamer reports
// without a GError (a refused link or state change).
Error coreError(GstCoreError code, const QString &message);

// An error of GStreamer's resource domain (a device missing or busy).
Error resourceError(GstResourceError code, const QString &message);

// The first error message on an element's bus, if any, as an Error.
std::optional<Error> errorFromMessage(GstMessage *message);

} // namespace Gst
