// The camera configuration window on test devices against the simulator:
// preselection from the agent's configuration, what a selection writes, and
// binding through the helpers.

#include "CameraConfigController.h"
#include "CaptureDeviceRegistry.h"
#include "CaptureSession.h"
#include "PropertyList.h"

#include "SimSandbox.h"

#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>

class TestCameraConfig : public QObject
{
    Q_OBJECT

    SimSandbox m_sim;
    QVariantMap config() const { return PropertyList::readFile(m_sim.globalConfig()).toMap(); }
    void setConfig(const QVariantMap &values) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(m_sim.globalConfig()).path()));
        QVERIFY(PropertyList::writeFile(m_sim.globalConfig(), values, true));
    }

private slots:
    void initTestCase()
    {
        qputenv("LUMEX_CAPTURE_HARDWARE", "0");
        qputenv("LUMEX_TEST_DEVICES", "camera:cam1:Test Camera;microphone:mic1;muxed:dv1:Test Camcorder");
    }
    void init() { QVERIFY(m_sim.resetState()); }

    void preselectionAndPreview_data()
    {
        QTest::addColumn<QString>("configured");
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("inputs");
        QTest::addColumn<bool>("levelTimer");
        QTest::newRow("muxed for both, opened once") << QStringLiteral("test:dv1") << 3 << 1 << false;
        QTest::newRow("gone, so Automatic") << QStringLiteral("test:gone") << 0 << 2 << true;
    }
    void preselectionAndPreview()
    {
        QFETCH(QString, configured);
        QFETCH(int, index);
        QFETCH(int, inputs);
        QFETCH(bool, levelTimer);
        setConfig({ { "RecordingVideoInput", configured }, { "RecordingAudioInput", configured } });
        CameraConfigController controller;
        controller.window();
        QCOMPARE(controller.cameraList().size(), 4); // Automatic, separator, camera, camcorder
        QCOMPARE(controller.selectedCameraIndex(), index);
        QCOMPARE(controller.captureSession()->inputs().size(), inputs);
        QCOMPARE(controller.isLevelTimerRunning(), levelTimer);
    }

    void selectionWritesTheAgentConfigurationOnlyWhenUnlocked()
    {
        CameraConfigController controller;
        controller.window();
        controller.setSelectedCameraIndex(2);
        QCOMPARE(controller.captureSession()->inputs().first()->device()->uniqueID(), QStringLiteral("test:cam1"));
        QVERIFY(!config().contains("VideoDevice"));
        controller.unlock();
        QTRY_VERIFY(controller.isUnlocked());
        controller.setSelectedMicrophoneIndex(0);
        QTRY_COMPARE(config().value("AudioDevice"), QStringLiteral("Automatic"));
    }

    // A camera that fails to open still takes the microphone step, so the
    // level timer of the preview before stops.
    void aFailingCameraStopsTheLevelTimer()
    {
        CameraConfigController controller;
        controller.window();
        QVERIFY(controller.isLevelTimerRunning());
        QVERIFY(CaptureDeviceRegistry::instance().addTestDevice(QStringLiteral("broken:bad")));
        const QList<CameraConfigController::Entry> &cameras = controller.cameraList();
        const auto broken = std::find_if(cameras.cbegin(), cameras.cend(), [](const auto &entry) {
            const auto *device = std::get_if<CaptureDevicePtr>(&entry);
            return device && (*device)->uniqueID() == QLatin1String("test:bad");
        });
        Log::Capture log;
        controller.setSelectedCameraIndex(int(broken - cameras.cbegin()));
        QVERIFY(!controller.isLevelTimerRunning());
        QVERIFY(logHasPrefix(log, QStringLiteral("Error adding new audio input: ")));
        QVERIFY(logHasPrefix(log, QStringLiteral("Error setting up camera/microphone previews: ")));
        QVERIFY(CaptureDeviceRegistry::instance().removeTestDevice(QStringLiteral("test:bad")));
    }

    void bindStartsTheAgentAndClosesOrAlerts()
    {
        for (auto [fault, alert] :
            { std::pair { "--bind", "Binding failed" }, { "", "" }, { "--unbind", "Unbinding failed" } }) {
            *fault ? m_sim.setFault(fault, { { "status", 0 } }) : m_sim.clearFaults();
            CameraConfigController controller;
            QWidget *window = controller.window();
            window->show();
            controller.bindCameraToServer();
            QDialog *panel = controller.serverAuthPanel();
            panel->findChild<QLineEdit *>("serverField")->setText(SimSandbox::kServerHost);
            panel->findChild<QLineEdit *>("userField")->setText(SimSandbox::kUser);
            panel->findChild<QLineEdit *>("passwordField")->setText(SimSandbox::kPassword);
            controller.dismissBindAuthPanel(true);
            if (!*fault) {
                QTRY_VERIFY(!window->isVisible());
                QVERIFY(PropertyList::readFile(m_sim.state("agent.plist")).toMap().value("running").toBool());
            } else {
                QTRY_VERIFY(panel->findChild<QMessageBox *>());
                QCOMPARE(panel->findChild<QMessageBox *>()->text(), QLatin1String(alert));
                QVERIFY(panel->isVisible() && controller.notPerformingBind());
            }
        }
    }
};

QTEST_MAIN(TestCameraConfig)
#include "tst_cameraconfig.moc"
