#include "LXController.h"

#include "CaptureDeviceRegistry.h"
#include "DisplaySession.h"
#include "LXDefaultsKeys.h"
#include "LXGlyphs.h"
#include "LXMainWindow.h"
#include "LXShortcutKeys.h"
#include "LXUserDefaults.h"
#include "Log.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QPainter>

namespace {

const QString kName = QStringLiteral("name");
const QString kUniqueID = QStringLiteral("uniqueID");
const QString kIsLocalDevice = QStringLiteral("isLocalDevice");
const QString kIsLocalRecording = QStringLiteral("isLocalRecording");
const QString kCamera = QStringLiteral("camera");
const QString kMicrophone = QStringLiteral("microphone");
constexpr int kNoGlyph = -1;

int pushDuration(Qt::KeyboardModifiers modifiers)
{
    return modifiers.testFlag(Qt::ShiftModifier) ? 2000 : 400;
}

QVariantMap localEntry(const CaptureDevicePtr &device)
{
    return { { kName, device->localizedDisplayName() }, { kUniqueID, device->uniqueID() }, { kIsLocalDevice, true } };
}

bool isInUse(const QVariantMap &camera)
{
    return camera.value(QStringLiteral("in_use")).toString() == QLatin1String("true");
}

QVariantMap entryOf(const QAction *item)
{
    return item ? item->data().toMap() : QVariantMap();
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
        if (sameID(entryOf(item).value(kUniqueID), uniqueID))
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

// The picture of the audio source: a large microphone on the dark stage.
QImage audioPreviewImage()
{
    QImage image(640, 400, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(8, 8, 10));
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QRadialGradient glow(QPointF(320, 200), 220);
    glow.setColorAt(0, QColor(60, 62, 72));
    glow.setColorAt(1, QColor(8, 8, 10));
    p.fillRect(image.rect(), glow);
    LXGlyphs::draw(p, LXGlyphs::Glyph::Microphone, QRectF(230, 110, 180, 180), QColor(235, 235, 240));
    return image;
}

} // namespace

void LXController::sourceClicked(Mode mode, Qt::KeyboardModifiers modifiers)
{
    if (mode == Mode::File) {
        setMode(Mode::File);
        if (!m_window)
            return;
        delete m_openPanel;
        m_openPanel = new QFileDialog(m_window.get(), tr("Choose Movie Files"), QDir::homePath());
        m_openPanel->setObjectName(QStringLiteral("openPanel"));
        m_openPanel->setFileMode(QFileDialog::ExistingFiles);
        m_openPanel->setWindowModality(Qt::WindowModal);
        m_openPanel->resize(m_openPanel->width(), 435);
        connect(m_openPanel, &QDialog::finished, this, &LXController::openPanelDidEnd);
        m_openPanel->open();
        return;
    }
    if (mode != Mode::Video && mode != Mode::Audio && mode != Mode::Screen)
        return;

    setMode(mode);
    if (m_window) {
        if (mode == Mode::Video) {
            m_window->setRemotePreview(QImage());
            m_window->setScreenPreviewImage(QImage());
            m_window->setHotkeySuggestion(QString());
        } else if (mode == Mode::Audio) {
            m_window->setScreenPreviewImage(audioPreviewImage());
            m_window->setHotkeySuggestion(QString());
        } else {
            setLocalRecordingChosen(true);
            m_window->setScreenPreviewImage(QImage());
            // In a Wayland session the desktop may first ask the user whether
            // to share the screen: the picture comes when it is answered.
            m_screenGrabController->grab(this, [this](const QImage &image, const std::optional<Error> &error) {
                if (m_mode != Mode::Screen || !m_window)
                    return;
                m_window->setScreenPreviewImage(image);
                if (error)
                    alertUserToError(*error);
            });
            if (DisplaySession::isWayland()) {
                m_window->setHotkeySuggestion(tr("Use the Recording menu to start or pause recording: this "
                                                 "desktop offers no key that works in any application."));
            } else {
                LXUserDefaults &defaults = LXUserDefaults::standard();
                const QString key
                    = LXShortcutDisplayString(int(defaults.valueForLumexKey(LXDefaultsKeys::GlobalKeyCode)),
                        quint32(defaults.valueForLumexKey(LXDefaultsKeys::GlobalKeyModifiers)));
                m_window->setHotkeySuggestion(tr("Press %1 in any application to start or pause recording.").arg(key));
            }
        }
        m_window->showRecordPage(pushDuration(modifiers));
    }
    rebuildInputDevicesList();
}

void LXController::backClicked(Qt::KeyboardModifiers modifiers)
{
    setMode(Mode::NoSource);
    if (m_window)
        m_window->showSourceChooser(pushDuration(modifiers));
    tearDownLocalCameraAndMicrophone();
}

void LXController::openPanelDidEnd(int returnCode)
{
    const QStringList files = m_openPanel ? m_openPanel->selectedFiles() : QStringList();
    if (m_openPanel)
        m_openPanel->deleteLater();
    if (returnCode == QDialog::Accepted)
        prepareToSubmitFiles(files);
}

void LXController::prepareToSubmitFiles(const QStringList &paths)
{
    setMode(Mode::File);
    if (m_job)
        m_job->setMovieFilePaths(paths);
    if (m_window)
        m_window->showMetadataPageForFiles(paths);
}

bool LXController::applicationOpenFile(const QString &path)
{
    if (m_state != State::Idle)
        return false;
    prepareToSubmitFiles({ path });
    return true;
}

void LXController::applicationOpenFiles(const QStringList &paths)
{
    if (m_state == State::Idle)
        prepareToSubmitFiles(paths);
}

void LXController::openFilesFromDesktop(const QStringList &paths)
{
    if (m_window) {
        m_window->show();
        m_window->raise();
        m_window->activateWindow();
    }
    if (paths.size() == 1)
        applicationOpenFile(paths.first());
    else if (!paths.isEmpty())
        applicationOpenFiles(paths);
}

QAction *LXController::addDeviceItem(
    InputDeviceMenu *menu, const QString &title, int glyph, DeviceAction action, const QVariantMap &entry, bool enabled)
{
    QAction *item = menu->insertItemWithTitle(title, nullptr, QKeySequence(), -1);
    if (glyph != kNoGlyph)
        item->setIcon(glyphIcon(glyph));
    item->setData(entry);
    item->setEnabled(enabled);
    item->setProperty("deviceAction", int(action));
    if (action == DeviceAction::LocalCameraAndMicrophone)
        item->setCheckable(true);
    if (action != DeviceAction::None)
        connect(item, &QAction::triggered, this, [this, item] { takeDeviceItem(item); });
    return item;
}

void LXController::rebuildInputDevicesList()
{
    if (!m_cameraMenu) {
        m_cameraMenu = std::make_unique<InputDeviceMenu>();
        m_cameraMenu->setObjectName(QStringLiteral("cameraMenu"));
        m_microphoneMenu = std::make_unique<InputDeviceMenu>();
        m_microphoneMenu->setObjectName(QStringLiteral("microphoneMenu"));
    }
    if (m_window)
        m_window->setDeviceMenus(m_cameraMenu.get(), m_microphoneMenu.get());
    for (QMenu *submenu : m_cameraMenu->findChildren<QMenu *>(QString(), Qt::FindDirectChildrenOnly))
        delete submenu;
    m_cameraMenu->clear();
    m_microphoneMenu->clear();

    const QList<CaptureDevicePtr> microphones
        = m_captureDevicesController ? m_captureDevicesController->microphones() : QList<CaptureDevicePtr>();
    const QList<CaptureDevicePtr> cameras
        = m_captureDevicesController ? m_captureDevicesController->cameras() : QList<CaptureDevicePtr>();
    const int microphoneGlyph = int(LXGlyphs::Glyph::Microphone);

    QList<QVariantMap> localMicrophones;
    for (const CaptureDevicePtr &device : microphones) {
        localMicrophones << localEntry(device);
        addDeviceItem(m_microphoneMenu.get(), device->localizedDisplayName(), microphoneGlyph,
            DeviceAction::LocalMicrophone, localMicrophones.last());
    }
    // The screen is recorded here, so a camera of the server cannot be its
    // microphone.
    if (m_mode != Mode::Screen) {
        if (!microphones.isEmpty() && !m_remoteCameras.isEmpty())
            m_microphoneMenu->insertItemWithTitle(InputDeviceMenu::kSeparatorItem, nullptr, QKeySequence(), -1);
        for (const QVariant &camera : std::as_const(m_remoteCameras)) {
            const QVariantMap map = camera.toMap();
            addDeviceItem(m_microphoneMenu.get(), map.value(kName).toString(), microphoneGlyph,
                DeviceAction::RemoteMicrophone, map, !isInUse(map));
        }
    }

    QVariantList cameraList;
    for (const CaptureDevicePtr &device : cameras) {
        const QVariantMap entry = localEntry(device);
        QAction *item = addDeviceItem(m_cameraMenu.get(), device->localizedDisplayName(), int(LXGlyphs::Glyph::Camera),
            DeviceAction::None, entry);
        auto *submenu = new InputDeviceMenu(m_cameraMenu.get());
        for (const QVariantMap &microphone : std::as_const(localMicrophones))
            addDeviceItem(submenu, microphone.value(kName).toString(), microphoneGlyph,
                DeviceAction::LocalCameraAndMicrophone, microphone);
        item->setMenu(submenu);
        cameraList << entry;
    }
    if (!cameras.isEmpty() && !m_remoteCameras.isEmpty())
        m_cameraMenu->insertItemWithTitle(InputDeviceMenu::kSeparatorItem, nullptr, QKeySequence(), -1);
    for (const QVariant &camera : std::as_const(m_remoteCameras)) {
        const QVariantMap map = camera.toMap();
        addDeviceItem(
            m_cameraMenu.get(), map.value(kName).toString(), kNoGlyph, DeviceAction::RemoteCamera, map, !isInUse(map));
        cameraList << map;
    }
    m_currentCredentials.insert(QStringLiteral("cameras"), cameraList);

    if (m_mode != Mode::NoSource)
        selectAppropriateRecordingDevice();
    updateBoundControls();
}

QAction *LXController::parentCameraItem(QAction *submenuItem) const
{
    for (QAction *camera : deviceItems(m_cameraMenu.get()))
        if (camera->menu() && camera->menu()->actions().contains(submenuItem))
            return camera;
    return nullptr;
}

void LXController::takeDeviceItem(QAction *item)
{
    if (!m_window)
        return sendDeviceAction(item);
    if (m_microphoneMenu && m_microphoneMenu->actions().contains(item)) {
        m_window->setChosenMicrophone(item->text());
    } else {
        QAction *camera = m_cameraMenu->actions().contains(item) ? item : parentCameraItem(item);
        if (camera)
            m_window->setChosenCamera(camera->text());
    }
    sendDeviceAction(item);
}

void LXController::sendDeviceAction(QAction *item)
{
    switch (DeviceAction(item->property("deviceAction").toInt())) {
    case DeviceAction::LocalMicrophone:
        localMicrophoneSelected(item);
        break;
    case DeviceAction::RemoteMicrophone:
        remoteMicrophoneSelected(item);
        break;
    case DeviceAction::RemoteCamera:
        remoteCameraSelected(item);
        break;
    case DeviceAction::LocalCameraAndMicrophone:
        localCameraAndMicrophoneSelected(item);
        break;
    case DeviceAction::None:
        break;
    }
}

void LXController::clearChosenDevices()
{
    setJobCamera(QVariantMap());
    setJobLocalAudioDeviceName(QString());
    if (m_window) {
        m_window->setChosenCamera(QString());
        m_window->setChosenMicrophone(QString());
    }
}

void LXController::selectAppropriateRecordingDevice()
{
    const QVariantMap saved
        = LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::lastDeviceSelectionFor(currentModeString()));
    const bool hasSaved = !saved.isEmpty();
    const bool savedIsLocal = saved.value(kIsLocalRecording).toBool();
    const QString savedCamera = saved.value(kCamera).toString();
    const QString savedMicrophone = saved.value(kMicrophone).toString();
    const QString defaultSoundName = defaultDeviceName(MediaType::Sound);
    InputDeviceMenu *microphones = m_microphoneMenu.get();
    QAction *candidate = nullptr;

    switch (m_mode) {
    case Mode::Video: {
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
    case Mode::Audio:
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
    case Mode::Screen:
        if (hasSaved)
            candidate = lastItemWithUniqueID(microphones, savedMicrophone);
        if (!candidate)
            candidate = itemWithTitle(microphones, defaultSoundName);
        if (!candidate)
            candidate = deviceItems(microphones).value(0);
        break;
    case Mode::File:
    case Mode::NoSource:
        return;
    }
    if (candidate)
        takeDeviceItem(candidate);
    else
        clearChosenDevices();
}

void LXController::localMicrophoneSelected(QAction *item)
{
    setLocalRecordingChosen(true);
    const QString uniqueID = entryOf(item).value(kUniqueID).toString();
    setJobLocalAudioDeviceName(uniqueID);
    monitorMicrophone(uniqueID);
}

void LXController::remoteMicrophoneSelected(QAction *item)
{
    setLocalRecordingChosen(false);
    stopMonitoringMicrophone();
    // The server's camera records the sound.
    setJobCamera(entryOf(item));
}

void LXController::remoteCameraSelected(QAction *item)
{
    setLocalRecordingChosen(false);
    tearDownLocalCameraAndMicrophone();
    setJobCamera(entryOf(item));
    for (QAction *camera : deviceItems(m_cameraMenu.get()))
        if (camera->menu())
            for (QAction *microphone : camera->menu()->actions())
                microphone->setChecked(false);
}

void LXController::localCameraAndMicrophoneSelected(QAction *item)
{
    tearDownLocalCameraAndMicrophone();
    QAction *camera = parentCameraItem(item);
    const QString microphoneID = entryOf(item).value(kUniqueID).toString();
    setJobLocalAudioDeviceName(microphoneID);
    setJobCamera(entryOf(camera));
    setLocalRecordingChosen(true);
    for (QAction *other : deviceItems(m_cameraMenu.get()))
        if (other->menu())
            for (QAction *microphone : other->menu()->actions())
                microphone->setChecked(microphone == item);
    if (m_window && camera)
        m_window->setChosenCamera(camera->text());
    if (!m_captureDevicesController)
        return;
    m_captureDevicesController->setupRecordingForVideoDeviceUniqueID(
        entryOf(camera).value(kUniqueID).toString(), microphoneID);
    const std::shared_ptr<CaptureSession> session = m_captureDevicesController->captureSession();
    if (!m_window || !session)
        return;
    m_window->showLocalPreview(session);
    for (const CaptureInputPtr &input : session->inputs())
        for (const CaptureConnectionPtr &connection : input->connections())
            if (connection->mediaType() == MediaType::Sound && connection->isEnabled())
                m_window->setMicrophoneLevelConnection(connection);
}

void LXController::tearDownLocalCameraAndMicrophone()
{
    if (m_window) {
        m_window->showLocalPreview(nullptr);
        m_window->setMicrophoneLevelConnection(nullptr);
    }
    stopMonitoringMicrophone();
    if (m_captureDevicesController)
        m_captureDevicesController->teardown();
}

void LXController::monitorMicrophone(const QString &uniqueID)
{
    stopMonitoringMicrophone();
    if (!m_captureDevicesController || !m_window)
        return;
    CaptureDevicePtr device;
    for (const CaptureDevicePtr &microphone : m_captureDevicesController->microphones())
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
    m_window->setMicrophoneLevelConnection(sound);
}

void LXController::stopMonitoringMicrophone()
{
    if (!m_microphoneMonitor)
        return;
    const std::shared_ptr<CaptureSession> session = std::move(m_microphoneMonitor);
    if (m_window)
        m_window->setMicrophoneLevelConnection(nullptr);
    session->stopRunning();
    for (const CaptureInputPtr &input : session->inputs()) {
        session->removeInput(input);
        if (input->device()->isOpen())
            input->device()->close();
    }
}

void LXController::writeSelectedDevicesToDefaults()
{
    QVariantMap selection;
    const QVariantMap camera = m_job ? m_job->camera() : QVariantMap();
    const QString microphone = m_job ? m_job->localAudioDeviceName() : QString();
    auto put = [&selection](const QString &key, const QVariant &value) {
        if (!value.isNull())
            selection.insert(key, value);
    };
    switch (m_mode) {
    case Mode::Video:
    case Mode::Audio:
        selection.insert(kIsLocalRecording, m_localRecordingChosen);
        if (m_localRecordingChosen) {
            if (m_mode == Mode::Video)
                put(kCamera, camera.value(kUniqueID));
            put(kMicrophone, microphone);
        } else {
            put(kCamera, camera.value(kName));
        }
        break;
    case Mode::Screen:
        put(kMicrophone, microphone);
        break;
    case Mode::File:
    case Mode::NoSource:
        break;
    }
    LXUserDefaults &defaults = LXUserDefaults::standard();
    defaults.setValue(selection, LXDefaultsKeys::lastDeviceSelectionFor(currentModeString()));
    defaults.synchronize();
}
