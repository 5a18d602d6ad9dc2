#include "AudioLevelMeter.h"
#include "CaptureDeviceRegistry.h"
#include "CaptureVideoPreviewWidget.h"
#include "GLScreenGrabController.h"
#include "InputDeviceMenu.h"
#include "LXApplication.h"
#include "LXController.h"
#include "LXDefaultsKeys.h"
#include "LXMainWindow.h"
#include "LXUserDefaults.h"
#include "RecordPage.h"
#include "VKPopUpButton.h"

#include "SimSandbox.h"
#include "app/SignIn.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QLabel>
#include <QLineEdit>
#include <QLocalServer>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>

namespace {

using Mode = LXController::Mode;
const QString kDevices
    = QStringLiteral("camera:cam1:Cam One;camera:cam2:Cam Two;microphone:mic1:Mic One;microphone:mic2:Mic Two");
const QString kRemote = QStringLiteral("Lecture Hall A|Studio 2|Seminar Room");

// A menu as text: titles in order, "-" for a separator, " (busy)" after a
// disabled item.
QString layout(const QMenu *menu)
{
    QStringList items;
    for (const QAction *item : menu->actions())
        items << (item->isSeparator() ? QStringLiteral("-") : item->text() + (item->isEnabled() ? "" : " (busy)"));
    return items.join(QLatin1Char('|'));
}

QString keysAndValues(const QVariantMap &map)
{
    QStringList pairs;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        pairs << it.key() + QLatin1Char('=') + it.value().toString();
    return pairs.join(QLatin1Char(','));
}

} // namespace

class TestSources : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimSandbox> m_sim;
    std::unique_ptr<LXController> m_controller;
    QStringList m_devices;

    template<typename T = QWidget> T *child(const char *name) const
    {
        return m_controller->window()->findChild<T *>(QLatin1String(name));
    }

    // Adds the test devices, then signs in as the demo user: the cameras
    // come from the simulator's state.
    void signIn(const QString &devices = QString())
    {
        for (const QString &entry : devices.split(QLatin1Char(';'), Qt::SkipEmptyParts))
            m_devices << CaptureDeviceRegistry::instance().addTestDevice(entry)->uniqueID();
        m_controller = std::make_unique<LXController>();
        m_controller->awakeFromNib();
        signInAsDemo(m_controller->loginPanel());
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->remoteCameraSnapshotRefreshTimer(), 10000);
    }

private slots:
    void initTestCase()
    {
        qputenv(CaptureDeviceRegistry::kHardwareVariable, "0");
        qputenv(CaptureDeviceRegistry::kTestDevicesVariable, "");
        m_sim = std::make_unique<SimSandbox>();
        qputenv("XDG_RUNTIME_DIR", m_sim->path().toUtf8()); // this test's own instance socket
    }

    void init() { QVERIFY(m_sim->resetState()); }

    void cleanup()
    {
        if (m_controller)
            m_controller->tearDownLocalCameraAndMicrophone();
        m_controller.reset();
        for (const QString &id : std::as_const(m_devices))
            CaptureDeviceRegistry::instance().removeTestDevice(id);
        m_devices.clear();
        for (const char *mode : { "Video", "Audio", "Screen" })
            LXUserDefaults::standard().removeObject(LXDefaultsKeys::lastDeviceSelectionFor(mode).key);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void choosesTheDevice_data()
    {
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<QString>("devices");
        QTest::addColumn<QString>("busy"); // a camera the simulator records with; "-": the server has none
        QTest::addColumn<QVariantMap>("saved");
        // The camera menu in Video mode, else the microphone menu; the camera's uniqueID or name and the
        // microphone chosen; the saved choice written.
        QTest::addColumn<QStringList>("expected");
        const QVariantMap none;
        auto remote = [](const char *name) {
            return QVariantMap { { "isLocalRecording", false }, { "camera", name } };
        };
        const QString busyFirst = QStringLiteral("Lecture Hall A (busy)|Studio 2|Seminar Room");
        const QString local = QStringLiteral("Cam One|Cam Two|-|");

        QTest::newRow("nothing at all") << Mode::Video << QString() << QStringLiteral("-") << none
                                        << QStringList { "", "|", "isLocalRecording=false" };
        QTest::newRow("remembered remote camera now in use: the defaults")
            << Mode::Video << kDevices << QStringLiteral("Studio 2") << remote("Studio 2")
            << QStringList { local + "Lecture Hall A|Studio 2 (busy)|Seminar Room", "test:cam1|test:mic1",
                   "camera=test:cam1,isLocalRecording=true,microphone=test:mic1" };
        QTest::newRow("local pair by uniqueID")
            << Mode::Video << kDevices << QString()
            << QVariantMap { { "isLocalRecording", true }, { "camera", "test:cam2" }, { "microphone", "test:mic2" } }
            << QStringList { local + kRemote, "test:cam2|test:mic2",
                   "camera=test:cam2,isLocalRecording=true,microphone=test:mic2" };
        QTest::newRow("free remote camera by name")
            << Mode::Video << kDevices << QString() << remote("Seminar Room")
            << QStringList { local + kRemote, "Seminar Room|", "camera=Seminar Room,isLocalRecording=false" };
        QTest::newRow("first item busy: nothing") << Mode::Video << QString() << QStringLiteral("Lecture Hall A")
                                                  << none << QStringList { busyFirst, "|", "isLocalRecording=false" };
        QTest::newRow("screen offers local microphones only")
            << Mode::Screen << kDevices << QString() << none
            << QStringList { "Mic One|Mic Two", "|test:mic1", "microphone=test:mic1" };
        QTest::newRow("screen remembers its microphone")
            << Mode::Screen << kDevices << QString() << QVariantMap { { "microphone", "test:mic2" } }
            << QStringList { "Mic One|Mic Two", "|test:mic2", "microphone=test:mic2" };
        QTest::newRow("audio from a remote camera")
            << Mode::Audio << QStringLiteral("microphone:mic1:Mic One") << QString() << remote("Seminar Room")
            << QStringList { "Mic One|-|" + kRemote, "Seminar Room|", "camera=Seminar Room,isLocalRecording=false" };
        QTest::newRow("audio: remembered microphone gone, the default")
            << Mode::Audio << kDevices << QString()
            << QVariantMap { { "isLocalRecording", true }, { "microphone", "x" } }
            << QStringList { "Mic One|Mic Two|-|" + kRemote, "|test:mic1",
                   "isLocalRecording=true,microphone=test:mic1" };
        QTest::newRow("audio: first remote busy, nothing")
            << Mode::Audio << QString() << QStringLiteral("Lecture Hall A") << none
            << QStringList { busyFirst, "|", "isLocalRecording=false" };
    }

    void choosesTheDevice()
    {
        QFETCH(Mode, mode);
        QFETCH(QString, devices);
        QFETCH(QString, busy);
        QFETCH(QVariantMap, saved);
        QFETCH(QStringList, expected);
        if (busy == QLatin1String("-"))
            SimSandbox::writePlist(
                m_sim->state(QStringLiteral("cameras.plist")), QVariantMap { { "cameras", QVariantList() } });
        else if (!busy.isEmpty())
            QCOMPARE(m_sim->server({ QStringLiteral("--start"), busy }).status, 0);
        const char *modeNames[] = { "Video", "Audio", "Screen" };
        LXUserDefaults::standard().setValue(saved, LXDefaultsKeys::lastDeviceSelectionFor(modeNames[int(mode)]));
        signIn(devices);
        m_controller->sourceClicked(mode);
        m_controller->rebuildInputDevicesList(); // as when the server's list is refreshed: the same choice

        QCOMPARE(
            layout(mode == Mode::Video ? m_controller->cameraMenu() : m_controller->microphoneMenu()), expected[0]);
        const QVariantMap camera = m_controller->job()->camera();
        const QString cameraID = camera.value(camera.contains("uniqueID") ? "uniqueID" : "name").toString();
        const QString microphone = m_controller->job()->localAudioDeviceName();
        QCOMPARE(cameraID + QLatin1Char('|') + microphone, expected[1]);
        QCOMPARE(m_controller->canBeginRecording(), !cameraID.isEmpty() || !microphone.isEmpty());
        // Nothing that can record, no record button: the countdown would run for nothing.
        QCOMPARE(child("recordPauseButton")->isEnabled(), m_controller->canBeginRecording());
        QCOMPARE(child<QAction>("recordPauseMenuItem")->isEnabled(), m_controller->canBeginRecording());
        if (!microphone.isEmpty()) // the chosen microphone is heard before recording
            QTRY_VERIFY_WITH_TIMEOUT(child<AudioLevelMeter>("microphoneLevelMeter")->fraction() > 0, 10000);
        if (camera.contains("uniqueID"))
            QTRY_VERIFY_WITH_TIMEOUT(
                !child<CaptureVideoPreviewWidget>("localVideoCaptureView")->currentFrame().isNull(), 10000);
        m_controller->writeSelectedDevicesToDefaults();
        QCOMPARE(keysAndValues(LXUserDefaults::standard().valueForLumexKey(
                     LXDefaultsKeys::lastDeviceSelectionFor(m_controller->currentModeString()))),
            expected[2]);
    }

    void laterDeviceOfTheSameUniqueIDWins()
    {
        signIn();
        auto device = [](const char *name) {
            return std::make_shared<CaptureDevice>(CaptureDevice::Kind::TestMicrophone, "test:same", name);
        };
        m_controller->captureDevicesController()->setMicrophones({ device("First"), device("Second") });
        LXUserDefaults::standard().setValue(
            QVariantMap { { "microphone", "test:same" } }, LXDefaultsKeys::lastDeviceSelectionFor("Screen"));
        m_controller->sourceClicked(Mode::Screen);
        QCOMPARE(child<VKPopUpButton>("microphonesPopUpButton")->title(), QStringLiteral("Second"));
        QVERIFY(!child<QLabel>("hotkeySuggestion")->text().isEmpty());
    }

    // In a Wayland session the screen beside a camera is the desktop's to
    // share: nothing records until it answers, and when it shares nothing
    // the screen is recorded alone, and the page says why.
    void waylandScreenWithACameraWaitsForTheDesktop()
    {
        qputenv("WAYLAND_DISPLAY", "wayland-lumex-test");
        const auto leave = qScopeGuard([] { qunsetenv("WAYLAND_DISPLAY"); });
        LXUserDefaults::standard().setValue(QVariantMap { { "camera", "test:cam2" }, { "microphone", "test:mic1" } },
            LXDefaultsKeys::lastDeviceSelectionFor("Screen"));
        signIn(kDevices);
        m_controller->screenGrabController()->setPortalBus(
            QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent"), QStringLiteral("no portal")));
        m_controller->sourceClicked(Mode::Screen);
        QCOMPARE(layout(m_controller->cameraMenu()), QStringLiteral("No Camera|-|Cam One|Cam Two"));
        QCOMPARE(m_controller->job()->camera().value("uniqueID").toString(), QStringLiteral("test:cam2"));
        QVERIFY(!m_controller->canBeginRecording());
        QVERIFY(!child("recordPauseButton")->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->canBeginRecording(), 10000);
        QVERIFY(m_controller->job()->camera().isEmpty());
        QCOMPARE(child<VKPopUpButton>("camerasPopUpButton")->title(), QStringLiteral("No Camera"));
        // The preview asked too, and its alert says why; one alert, not two.
        const QList<QMessageBox *> alerts = m_controller->window()->findChildren<QMessageBox *>();
        QCOMPARE(alerts.size(), 1);
        QTest::mouseClick(alerts[0]->button(QMessageBox::Ok), Qt::LeftButton);
        QTRY_VERIFY(child("recordPauseButton")->isEnabled());
        QVERIFY(m_controller->window()
                    ->recordPage()
                    ->bannerText("screen-share")
                    .startsWith(QStringLiteral(
                        "The screen is recorded without the camera. Lumex cannot see the screen: this desktop")));
        m_controller->backClicked(Qt::NoModifier);
        QVERIFY(m_controller->window()->recordPage()->bannerText("screen-share").isEmpty());
    }

    void keyboardReachesEveryNamedControl()
    {
        signIn(kDevices);
        m_controller->window()->show();
        QVERIFY(QTest::qWaitForWindowActive(m_controller->window()));
        QWidgetList reached;
        auto tabRound = [&reached](QWidget *w) { // once round the Tab chain
            for (w->setFocus(); w && !reached.contains(w); w = QApplication::focusWidget()) {
                QVERIFY2(w->isVisible() && !w->accessibleName().isEmpty() && !w->accessibleDescription().isEmpty(),
                    qPrintable(w->objectName()));
                reached << w;
                QTest::keyClick(w, Qt::Key_Tab);
            }
        };
        tabRound(child("videoTile"));
        QCOMPARE(reached.size(), 4); // the tiles
        QTest::keyClick(child("audioTile"), Qt::Key_Space);
        QCOMPARE(m_controller->mode(), Mode::Audio);
        tabRound(child("microphonesPopUpButton"));
        QVERIFY(reached.contains(child("recordPauseButton")));
    }

    void devicePopUpsAreReadAndChosenFromTheKeyboard()
    {
        QCOMPARE(m_sim->server({ QStringLiteral("--start"), QStringLiteral("Lecture Hall A") }).status, 0);
        signIn(kDevices);
        m_controller->sourceClicked(Mode::Video);
        auto *popUp = child<VKPopUpButton>("camerasPopUpButton");
        // Every item as a screen reader reads it, open or closed: its name, " (busy)" when it cannot be chosen.
        QStringList read;
        std::function<void(QAccessibleInterface *)> walk = [&](QAccessibleInterface *node) {
            for (int i = 0; node && i < node->childCount(); ++i) {
                QAccessibleInterface *item = node->child(i);
                if (item && (item->role() == QAccessible::ListItem || item->role() == QAccessible::Cell))
                    read << item->text(QAccessible::Name)
                            + (item->text(QAccessible::Description).isEmpty() ? "" : " (busy)");
                walk(item);
            }
        };
        QAccessibleInterface *button = QAccessible::queryAccessibleInterface(popUp);
        walk(button);
        QCOMPARE(read.join('|'),
            QStringLiteral("Cam One — Mic One|Cam One — Mic Two|Cam Two — Mic One|Cam Two — Mic Two|"
                           "Lecture Hall A (busy)|Studio 2|Seminar Room"));
        // On Linux a combo box is read by its choice, then what it is for.
        QCOMPARE(button->text(QAccessible::Value), QStringLiteral("Cam One — Mic One"));
        QCOMPARE(button->text(QAccessible::Description), QStringLiteral("The camera to record from"));
        // The arrow keys choose as a click does; an item in use is passed over.
        popUp->setFocus();
        QTest::keyClick(popUp, Qt::Key_Down);
        QCOMPARE(m_controller->job()->localAudioDeviceName(), QStringLiteral("test:mic2"));
        QCOMPARE(button->text(QAccessible::Value), QStringLiteral("Cam One — Mic Two"));
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(popUp, Qt::Key_Down);
        QCOMPARE(m_controller->job()->camera().value("name").toString(), QStringLiteral("Studio 2"));
        QVERIFY(!m_controller->localRecordingChosen());
        QCOMPARE(button->text(QAccessible::Value), QStringLiteral("Studio 2"));
    }

    void textStandsOutFromItsBackground()
    {
        auto luminance = [](const QColor &c) {
            auto linear = [](float v) { return v <= 0.04045f ? v / 12.92f : std::pow((v + 0.055f) / 1.055f, 2.4f); };
            return 0.2126f * linear(c.redF()) + 0.7152f * linear(c.greenF()) + 0.0722f * linear(c.blueF());
        };
        LXApplication::applyLook(*qApp);
        const QPalette p = QApplication::palette();
        using R = QPalette::ColorRole;
        for (auto [text, background] : { std::pair { R::WindowText, R::Window }, { R::Text, R::Base },
                 { R::PlaceholderText, R::Base }, { R::PlaceholderText, R::Window }, { R::ButtonText, R::Button },
                 { R::ToolTipText, R::ToolTipBase }, { R::HighlightedText, R::Highlight }, { R::Link, R::Window } })
            QVERIFY2((luminance(p.color(text)) + 0.05f) / (luminance(p.color(background)) + 0.05f) >= 4.5f, // WCAG AA
                qPrintable(QString::number(text)));
    }

    void filesDroppedOrHandedOverOnlyWhileIdle()
    {
        signIn();
        const QStringList files { m_sim->path() + "/one.mov", m_sim->path() + "/two.mov" };
        QMimeData data;
        data.setUrls({ QUrl::fromLocalFile(files[0]), QUrl::fromLocalFile(files[1]) });
        auto drop = [&] {
            QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(m_controller->window(), &enter);
            QDropEvent dropped(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(m_controller->window(), &dropped);
            return enter.isAccepted() && dropped.isAccepted();
        };
        m_controller->setState(LXController::State::Recording);
        QVERIFY(!drop());
        QVERIFY(!m_controller->applicationOpenFile(files[0]));
        QCOMPARE(m_controller->mode(), Mode::NoSource);
        m_controller->setState(LXController::State::Idle);
        QVERIFY(drop());
        QCOMPARE(m_controller->mode(), Mode::File);
        QCOMPARE(m_controller->job()->movieFilePaths().value_or(QStringList()), files);
        QCOMPARE(m_controller->window()->currentPage(), LXMainWindow::Page::Metadata);

        // A second launch hands its files to this one and ends.
        m_controller->resetJobAndRecordingState();
        QLocalServer *server = LXApplication::listenForOtherInstances(
            this, [this](const QStringList &handed) { m_controller->openFilesFromDesktop(handed); });
        QVERIFY(server);
        QProcess second;
        second.setWorkingDirectory(m_sim->path());
        second.start(QStringLiteral(LUMEX_APP), { QStringLiteral("one.mov") });
        QTRY_COMPARE_WITH_TIMEOUT(second.state(), QProcess::NotRunning, 20000);
        QCOMPARE(second.exitCode(), 0);
        QTRY_COMPARE(m_controller->job()->movieFilePaths().value_or(QStringList()), QStringList { files[0] });
        delete server;
    }
};

QTEST_MAIN(TestSources)
#include "tst_sources.moc"
