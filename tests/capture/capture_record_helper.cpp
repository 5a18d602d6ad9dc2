// A stand-in application: records the test devices through
// CaptureDevicesController into the spool folder given as its argument and
// prints the movie's path once recording has begun. It never stops on its
// own; tests end it with a signal.

#include "CaptureDevicesController.h"
#include "FakeApplicationController.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: capture_record_helper SPOOLFOLDER\n");
        return 2;
    }
    qputenv("LUMEX_CAPTURE_HARDWARE", "0");
    qputenv("LUMEX_TEST_DEVICES", "camera:cam1;microphone:mic1");
    LXUserDefaults::standard().setObject(QString::fromLocal8Bit(argv[1]), LXDefaultsKeys::LocalRecordSpoolPath.key);
    FakeApplicationController controller;
    CaptureDevicesController devices;
    devices.setController(&controller);
    devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:cam1"), QStringLiteral("test:mic1"));
    if (!devices.captureSession())
        return 1;
    devices.beginRecording();
    std::printf("%s\n", qPrintable(controller.theJob->movieFilePaths()->last()));
    std::fflush(stdout);
    return app.exec();
}
