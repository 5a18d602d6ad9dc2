#include "CaptureDeviceRegistry.h"

#include "GstBusReader.h"
#include <QCoreApplication>

CaptureDeviceRegistry &CaptureDeviceRegistry::instance()
{
    static CaptureDeviceRegistry *s_instance = new CaptureDeviceRegistry;
    return *s_instance;
}

CaptureDeviceRegistry::CaptureDeviceRegistry()
{
    Gst::ensureInitialized();
    qRegisterMetaType<CaptureDevicePtr>("CaptureDevicePtr");
    if (qEnvironmentVariable(kHardwareVariable) != QLatin1String("0"))
        startMonitor();
    const QStringList entries = qEnvironmentVariable(kTestDevicesVariable).split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString &entry : entries) {
        if (!addTestDevice(entry.trimmed()))
            qWarning("Ignoring malformed test device entry \"%s\"", qPrintable(entry));
    }
}

CaptureDeviceRegistry::~CaptureDeviceRegistry()
{
    m_busReader.reset();
    if (m_monitor)
        gst_device_monitor_stop(m_monitor.get());
}

void CaptureDeviceRegistry::startMonitor()
{
    m_monitor = Gst::ObjectRef<GstDeviceMonitor>(gst_device_monitor_new(), Gst::Ref::Adopt);
    gst_device_monitor_add_filter(m_monitor.get(), "Video/Source", nullptr);
    gst_device_monitor_add_filter(m_monitor.get(), "Audio/Source", nullptr);
    if (!gst_device_monitor_start(m_monitor.get())) {
        m_monitor = {};
        return;
    }
    GList *list = gst_device_monitor_get_devices(m_monitor.get());
    for (GList *l = list; l; l = l->next)
        addHardware(GST_DEVICE(l->data));
    g_list_free_full(list, gst_object_unref);

    m_busReader
        = std::make_unique<GstBusReader>(Gst::BusRef(gst_device_monitor_get_bus(m_monitor.get()), Gst::Ref::Adopt),
            [this](GstMessage *message) { handleMonitorMessage(message); });
}

void CaptureDeviceRegistry::handleMonitorMessage(GstMessage *message)
{
    GstDevice *raw = nullptr;
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_DEVICE_ADDED: {
        gst_message_parse_device_added(message, &raw);
        Gst::ObjectRef<GstDevice> device(raw, Gst::Ref::Adopt);
        if (CaptureDevicePtr added = addHardware(device.get()))
            emit deviceWasConnected(added);
        break;
    }
    case GST_MESSAGE_DEVICE_REMOVED: {
        gst_message_parse_device_removed(message, &raw);
        Gst::ObjectRef<GstDevice> device(raw, Gst::Ref::Adopt);
        removeHardware(device.get());
        break;
    }
    default:
        break;
    }
}

CaptureDevicePtr CaptureDeviceRegistry::addHardware(GstDevice *device)
{
    for (const CaptureDevicePtr &known : std::as_const(m_hardware))
        if (known->gstDevice() == device)
            return nullptr;
    QString id = CaptureDevice::uniqueIDForGstDevice(device);
    if (deviceWithUniqueID(id)) {
        // Two identical devices without serial numbers: the port tells them
        // apart, and stays the same while they stay plugged where they are.
        Gst::StructurePtr props(gst_device_get_properties(device));
        const gchar *port = props ? gst_structure_get_string(props.get(), "device.bus_path") : nullptr;
        const gchar *path = props ? gst_structure_get_string(props.get(), "device.path") : nullptr;
        id += QLatin1Char('@') + QString::fromUtf8(port ? port : path ? path : "duplicate");
        if (deviceWithUniqueID(id))
            return nullptr;
    }
    auto captureDevice = std::make_shared<CaptureDevice>(device, id);
    m_hardware.append(captureDevice);
    return captureDevice;
}

void CaptureDeviceRegistry::removeHardware(GstDevice *device)
{
    for (qsizetype i = 0; i < m_hardware.size(); ++i) {
        if (m_hardware[i]->gstDevice() == device) {
            const CaptureDevicePtr gone = m_hardware.takeAt(i);
            emit deviceWasDisconnected(gone);
            return;
        }
    }
}

QList<CaptureDevicePtr> CaptureDeviceRegistry::devices() const
{
    return m_hardware + m_testDevices;
}

QList<CaptureDevicePtr> CaptureDeviceRegistry::devicesWithMediaType(const QString &mediaType) const
{
    QList<CaptureDevicePtr> result;
    for (const CaptureDevicePtr &device : devices())
        if (device->hasMediaType(mediaType))
            result.append(device);
    return result;
}

CaptureDevicePtr CaptureDeviceRegistry::deviceWithUniqueID(const QString &uniqueID) const
{
    for (const CaptureDevicePtr &device : devices())
        if (device->uniqueID() == uniqueID)
            return device;
    return nullptr;
}

CaptureDevicePtr CaptureDeviceRegistry::defaultInputDeviceWithMediaType(const QString &mediaType) const
{
    const QList<CaptureDevicePtr> candidates = devicesWithMediaType(mediaType);
    for (const CaptureDevicePtr &device : candidates)
        if (device->isDefault())
            return device;
    return candidates.isEmpty() ? nullptr : candidates.first();
}

CaptureDevicePtr CaptureDeviceRegistry::addTestDevice(const QString &entry)
{
    const QStringList parts = entry.split(QLatin1Char(':'));
    if (parts.size() < 2 || parts[1].isEmpty())
        return nullptr;
    using Signal = CaptureDevice::TestSignal;
    static const QHash<QString, std::pair<CaptureDevice::Kind, Signal>> kinds {
        { QStringLiteral("camera"), { CaptureDevice::Kind::TestCamera, Signal::Normal } },
        { QStringLiteral("frozen-camera"), { CaptureDevice::Kind::TestCamera, Signal::Frozen } },
        { QStringLiteral("microphone"), { CaptureDevice::Kind::TestMicrophone, Signal::Normal } },
        { QStringLiteral("silent-microphone"), { CaptureDevice::Kind::TestMicrophone, Signal::Silent } },
        { QStringLiteral("loud-microphone"), { CaptureDevice::Kind::TestMicrophone, Signal::Clipping } },
        { QStringLiteral("muxed"), { CaptureDevice::Kind::TestMuxed, Signal::Normal } },
        { QStringLiteral("broken"), { CaptureDevice::Kind::TestBroken, Signal::Normal } },
    };
    const auto kind = kinds.find(parts[0]);
    if (kind == kinds.end())
        return nullptr;
    const QString id = QStringLiteral("test:") + parts[1];
    if (deviceWithUniqueID(id))
        return nullptr;
    const QString name
        = parts.size() > 2 ? parts.mid(2).join(QLatin1Char(':')) : QStringLiteral("Test %1 %2").arg(parts[0], parts[1]);
    auto device = std::make_shared<CaptureDevice>(kind->first, id, name);
    device->setTestSignal(kind->second);
    m_testDevices.append(device);
    emit deviceWasConnected(device);
    return device;
}

bool CaptureDeviceRegistry::removeTestDevice(const QString &uniqueID)
{
    for (qsizetype i = 0; i < m_testDevices.size(); ++i) {
        if (m_testDevices[i]->uniqueID() == uniqueID) {
            const CaptureDevicePtr gone = m_testDevices.takeAt(i);
            gone->postDisconnectedError();
            emit deviceWasDisconnected(gone);
            return true;
        }
    }
    return false;
}
