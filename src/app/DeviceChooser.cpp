#include "DeviceChooser.h"

#include "CaptureDeviceRegistry.h"
#include "CaptureDevicesController.h"
#include "LXDefaultsKeys.h"
#include "LXGlyphs.h"
#include "LXUserDefaults.h"
#include "Log.h"

#include <QAction>
#include <QPainter>

namespace {

const QString kName = QStringLiteral("name");
const QString kUniqueID = QStringLiteral("uniqueID");
const QString kIsLocalDevice = QStringLiteral("isLocalDevice");
const QString kIsLocalRecording = QStringLiteral("isLocalRecording");
const QString kCamera = QStringLiteral("camera");
const QString kMicrophone = QStringLiteral("microphone");
constexpr int kNoGlyph = -1;

QVariantMap localEntry(const CaptureDevicePtr &device)
{
    return { { kName, device->localizedDisplayName() }, { kUniqueID, device->uniqueID() }, { kIsLocalDevice, true } };
}

bool isInUse(const QVariantMap &camera)
{
    return camera.value(QStringLiteral("in_use")).toString() == QLatin1String("true");
}

// Equal strings, where a missing one equals nothing.
bool sameID(const QVariant &a, const QString &b)
{
    return !b.isNull() && a.toString() == b;
}

QList<QAction *> deviceItems(const QMenu *menu)
{
    QList<QAction *> items;
    if (menu)
        for (QAction *item : menu->actions())
            if (!item->isSeparator())
                items << item;
    return items;
}

// The first item with this title, as a menu looks items up by title.
QAction *itemWithTitle(const QMenu *menu, const QString &title)
{
    if (title.isNull())
        return nullptr;
    for (QAction *item : deviceItems(menu))
        if (item->text() == title)
            return item;
    return nullptr;
}

// The last item whose entry has this uniqueID.
QAction *lastItemWithUniqueID(const QMenu *menu, const QString &uniqueID)
{
    QAction *found = nullptr;
    for (QAction *item : deviceItems(menu))
        if (sameID(DeviceChooser::entryOf(item).value(kUniqueID), uniqueID))
            found = item;
    return found;
}

QString defaultDeviceName(const QString &mediaType)
{
    CaptureDeviceRegistry &registry = CaptureDeviceRegistry::instance();
    CaptureDevicePtr device = registry.defaultInputDeviceWithMediaType(mediaType);
    if (!device)
        device = registry.defaultInputDeviceWithMediaType(MediaType::Muxed);
    return device ? device->localizedDisplayName() : QString();
}

QIcon glyphIcon(int glyph)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    LXGlyphs::draw(p, LXGlyphs::Glyph(glyph), QRectF(2, 2, 28, 28), QColor(230, 230, 235));
    return QIcon(pixmap);
}

} // namespace

DeviceChooser::DeviceChooser(CaptureDevicesController *devices, QObject *parent)
    : QObject(parent)
    , m_devices(devices)
    , m_cameraMenu(std::make_unique<InputDeviceMenu>())
    , m_microphoneMenu(std::make_unique<InputDeviceMenu>())
{
    m_cameraMenu->setObjectName(QStringLiteral("cameraMenu"));
    m_microphoneMenu->setObjectName(QStringLiteral("microphoneMenu"));
}

DeviceChooser::~DeviceChooser()
{
    stopMonitoringMicrophone();
}

QVariantMap DeviceChooser::entryOf(const QAction *item)
{
    return item ? item->data().toMap() : QVariantMap();
}

QAction *DeviceChooser::addItem(
    InputDeviceMenu *menu, const QString &title, int glyph, Kind kind, const QVariantMap &entry, bool enabled)
{
    QAction *item = menu->insertItemWithTitle(title, nullptr, QKeySequence(), -1);
    if (glyph != kNoGlyph)
        item->setIcon(glyphIcon(glyph));
    item->setData(entry);
    item->setEnabled(enabled);
    item->setProperty("deviceKind", int(kind));
    if (kind == Kind::LocalCameraAndMicrophone || kind == Kind::ScreenCamera)
        item->setCheckable(true);
    if (kind != Kind::None)
        connect(item, &QAction::triggered, this, [this, item] { take(item); });
    return item;
}

void DeviceChooser::rebuild(Source source, const QVariantList &remoteCameras)
{
    for (QMenu *submenu : m_cameraMenu->findChildren<QMenu *>(QString(), Qt::FindDirectChildrenOnly))
        delete submenu;
    m_cameraMenu->clear();
    m_microphoneMenu->clear();

    const QList<CaptureDevicePtr> microphones = m_devices ? m_devices->microphones() : QList<CaptureDevicePtr>();
    const QList<CaptureDevicePtr> cameras = m_devices ? m_devices->cameras() : QList<CaptureDevicePtr>();
    const int microphoneGlyph = int(LXGlyphs::Glyph::Microphone);

    QList<QVariantMap> localMicrophones;
    for (const CaptureDevicePtr &device : microphones) {
        localMicrophones << localEntry(device);
        addItem(m_microphoneMenu.get(), device->localizedDisplayName(), microphoneGlyph, Kind::LocalMicrophone,
            localMicrophones.last());
    }
    if (source != Source::Screen) {
        if (!microphones.isEmpty() && !remoteCameras.isEmpty())
            m_microphoneMenu->insertItemWithTitle(InputDeviceMenu::kSeparatorItem, nullptr, QKeySequence(), -1);
        for (const QVariant &camera : remoteCameras) {
            const QVariantMap map = camera.toMap();
            addItem(m_microphoneMenu.get(), map.value(kName).toString(), microphoneGlyph, Kind::RemoteMicrophone, map,
                !isInUse(map));
        }
    }

    if (source == Source::Screen) {
        // The screen alone, or with this computer's camera beside it: the
        // lecturer and the slides in one recording.
        addItem(m_cameraMenu.get(), tr("No Camera"), kNoGlyph, Kind::ScreenCamera, QVariantMap());
        if (!cameras.isEmpty())
            m_cameraMenu->insertItemWithTitle(InputDeviceMenu::kSeparatorItem, nullptr, QKeySequence(), -1);
        for (const CaptureDevicePtr &device : cameras)
            addItem(m_cameraMenu.get(), device->localizedDisplayName(), int(LXGlyphs::Glyph::Camera),
                Kind::ScreenCamera, localEntry(device));
        return;
    }
    for (const CaptureDevicePtr &device : cameras) {
        const QVariantMap entry = localEntry(device);
        QAction *item = addItem(
            m_cameraMenu.get(), device->localizedDisplayName(), int(LXGlyphs::Glyph::Camera), Kind::None, entry);
        auto *submenu = new InputDeviceMenu(m_cameraMenu.get());
        for (const QVariantMap &microphone : std::as_const(localMicrophones))
            addItem(submenu, microphone.value(kName).toString(), microphoneGlyph, Kind::LocalCameraAndMicrophone,
                microphone);
        item->setMenu(submenu);
    }
    if (!cameras.isEmpty() && !remoteCameras.isEmpty())
        m_cameraMenu->insertItemWithTitle(InputDeviceMenu::kSeparatorItem, nullptr, QKeySequence(), -1);
    for (const QVariant &camera : remoteCameras) {
        const QVariantMap map = camera.toMap();
        addItem(m_cameraMenu.get(), map.value(kName).toString(), kNoGlyph, Kind::RemoteCamera, map, !isInUse(map));
    }
}

QAction *DeviceChooser::parentCameraItem(QAction *item) const
{
    for (QAction *camera : deviceItems(m_cameraMenu.get()))
        if (camera->menu() && camera->menu()->actions().contains(item))
            return camera;
    return nullptr;
}

void DeviceChooser::checkCameraMicrophone(QAction *item)
{
    for (QAction *camera : deviceItems(m_cameraMenu.get()))
        if (camera->menu())
            for (QAction *microphone : camera->menu()->actions())
                microphone->setChecked(microphone == item);
}

void DeviceChooser::take(QAction *item)
{
    if (m_microphoneMenu->actions().contains(item)) {
        emit chosenMicrophoneTitleChanged(item->text());
    } else if (QAction *camera = m_cameraMenu->actions().contains(item) ? item : parentCameraItem(item)) {
        emit chosenCameraTitleChanged(camera->text());
    }
    switch (Kind(item->property("deviceKind").toInt())) {
    case Kind::LocalMicrophone:
        emit localMicrophoneChosen(item);
        break;
    case Kind::RemoteMicrophone:
        emit remoteMicrophoneChosen(item);
        break;
    case Kind::RemoteCamera:
        emit remoteCameraChosen(item);
        break;
    case Kind::LocalCameraAndMicrophone:
        emit localCameraAndMicrophoneChosen(item);
        break;
    case Kind::ScreenCamera:
        for (QAction *other : deviceItems(m_cameraMenu.get()))
            other->setChecked(other == item);
        emit screenCameraChosen(item);
        break;
    case Kind::None:
        break;
    }
}

void DeviceChooser::selectAppropriateRecordingDevice(Source source, const QVariantMap &saved)
{
    const bool hasSaved = !saved.isEmpty();
    const bool savedIsLocal = saved.value(kIsLocalRecording).toBool();
    const QString savedCamera = saved.value(kCamera).toString();
    const QString savedMicrophone = saved.value(kMicrophone).toString();
    const QString defaultSoundName = defaultDeviceName(MediaType::Sound);
    InputDeviceMenu *microphones = m_microphoneMenu.get();
    QAction *candidate = nullptr;

    switch (source) {
    case Source::Video: {
        if (hasSaved && !savedIsLocal) {
            QAction *item = itemWithTitle(m_cameraMenu.get(), savedCamera);
            if (item && item->isEnabled())
                candidate = item;
        }
        if (!candidate && hasSaved) {
            for (QAction *camera : deviceItems(m_cameraMenu.get()))
                if (sameID(entryOf(camera).value(kUniqueID), savedCamera) && camera->menu())
                    if (QAction *microphone = lastItemWithUniqueID(camera->menu(), savedMicrophone))
                        candidate = microphone;
        }
        if (!candidate) {
            const QString defaultVideoName = defaultDeviceName(MediaType::Video);
            QAction *camera = defaultSoundName.isNull() ? nullptr : itemWithTitle(m_cameraMenu.get(), defaultVideoName);
            if (camera && camera->menu())
                candidate = itemWithTitle(camera->menu(), defaultSoundName);
        }
        if (!candidate) {
            const QList<QAction *> items = deviceItems(m_cameraMenu.get());
            if (!items.isEmpty() && items.first()->isEnabled())
                candidate = items.first()->menu() ? deviceItems(items.first()->menu()).value(0) : items.first();
        }
        break;
    }
    case Source::Audio:
        if (hasSaved && savedIsLocal)
            candidate = lastItemWithUniqueID(microphones, savedMicrophone);
        else if (hasSaved) {
            QAction *item = itemWithTitle(microphones, savedCamera);
            if (item && item->isEnabled())
                candidate = item;
        }
        if (!candidate)
            candidate = itemWithTitle(microphones, defaultSoundName);
        if (!candidate) {
            QAction *first = deviceItems(microphones).value(0);
            if (first && first->isEnabled())
                candidate = first;
        }
        break;
    case Source::Screen: {
        if (hasSaved)
            candidate = lastItemWithUniqueID(microphones, savedMicrophone);
        if (!candidate)
            candidate = itemWithTitle(microphones, defaultSoundName);
        if (!candidate)
            candidate = deviceItems(microphones).value(0);
        // The camera beside the screen is the one saved, or none.
        QAction *camera = lastItemWithUniqueID(m_cameraMenu.get(), savedCamera);
        if (candidate)
            take(candidate);
        take(camera ? camera : deviceItems(m_cameraMenu.get()).value(0));
        if (candidate)
            return;
        break;
    }
    case Source::None:
        return;
    }
    if (candidate) {
        take(candidate);
    } else {
        if (source != Source::Screen)
            emit chosenCameraTitleChanged(QString());
        emit chosenMicrophoneTitleChanged(QString());
        emit nothingChosen();
    }
}

void DeviceChooser::monitorMicrophone(const QString &uniqueID)
{
    stopMonitoringMicrophone();
    if (!m_devices)
        return;
    CaptureDevicePtr device;
    for (const CaptureDevicePtr &microphone : m_devices->microphones())
        if (!device && microphone->uniqueID() == uniqueID)
            device = microphone;
    // An open device is in the camera's session, whose meter already shows.
    if (!device || device->isOpen())
        return;
    Error error;
    if (!device->open(&error)) {
        Log::format(QStringLiteral("Cannot show the level of %@: %@"), { uniqueID, error.localizedDescription });
        return;
    }
    auto input = std::make_shared<CaptureDeviceInput>(device);
    CaptureConnectionPtr sound;
    for (const CaptureConnectionPtr &connection : input->connections()) {
        connection->setEnabled(connection->mediaType() == MediaType::Sound);
        if (connection->isEnabled())
            sound = connection;
    }
    auto session = std::make_shared<CaptureSession>();
    if (!sound || !session->addInput(input, &error)) {
        device->close();
        return;
    }
    session->startRunning();
    m_microphoneMonitor = session;
    emit microphoneLevelConnectionChanged(sound);
}

void DeviceChooser::stopMonitoringMicrophone()
{
    if (!m_microphoneMonitor)
        return;
    const std::shared_ptr<CaptureSession> session = std::move(m_microphoneMonitor);
    emit microphoneLevelConnectionChanged(nullptr);
    session->stopRunning();
    for (const CaptureInputPtr &input : session->inputs()) {
        session->removeInput(input);
        if (input->device()->isOpen())
            input->device()->close();
    }
}

void DeviceChooser::writeSelectionToDefaults(
    Source source, const QString &sourceName, bool local, const QVariantMap &camera, const QString &microphone)
{
    QVariantMap selection;
    auto put = [&selection](const QString &key, const QVariant &value) {
        if (!value.isNull())
            selection.insert(key, value);
    };
    if (source == Source::Video || source == Source::Audio) {
        selection.insert(kIsLocalRecording, local);
        if (!local)
            put(kCamera, camera.value(kName));
        else if (source == Source::Video)
            put(kCamera, camera.value(kUniqueID));
        if (local)
            put(kMicrophone, microphone);
    } else if (source == Source::Screen) {
        put(kMicrophone, microphone);
        put(kCamera, camera.value(kUniqueID));
    }
    LXUserDefaults &defaults = LXUserDefaults::standard();
    defaults.setValue(selection, LXDefaultsKeys::lastDeviceSelectionFor(sourceName));
    defaults.synchronize();
}
