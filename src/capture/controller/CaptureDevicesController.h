#pragma once

#include "CaptureDevicesControllerDelegate.h"
#include "CaptureMovieFileOutput.h"
#include "CaptureSession.h"

#include <QList>
#include <QObject>

#include <stdexcept>

// Raised when the movie file output cannot join the session; it is not
// caught on the way up, as a broken capture stack is a programming error.
class InitOutputFileError final : public std::runtime_error
{
public:
    explicit InitOutputFileError(const QString &reason)
        : std::runtime_error(reason.toStdString())
        , m_reason(reason)
    { }
    static QString name() { return QStringLiteral("initOutputFile Error"); }
    QString reason() const { return m_reason; }

private:
    QString m_reason;
};

// The application's own recorder for local camera recordings: the lists of
// cameras and microphones the user may choose from (without the devices the
// camera agent uses), a capture session from one chosen pair, and its movie
// file in the local spool folder. Main thread only.
class CaptureDevicesController final : public QObject, public CaptureFileOutputDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CaptureDevicesController)

public:
    // `Now` refreshes the device lists at once, before any controller is
    // set. `Later` leaves them empty until refreshDevices(): starting
    // GStreamer and asking every device provider takes longer than showing
    // a window, which a person waits for.
    enum class FirstRefresh { Now, Later };
    explicit CaptureDevicesController(QObject *parent = nullptr, FirstRefresh first = FirstRefresh::Now);
    ~CaptureDevicesController() override;

    CaptureDevicesControllerDelegate *controller() const { return m_controller; }
    void setController(CaptureDevicesControllerDelegate *controller) { m_controller = controller; }
    QList<CaptureDevicePtr> cameras() const { return m_cameras; }
    void setCameras(const QList<CaptureDevicePtr> &cameras) { m_cameras = cameras; }
    QList<CaptureDevicePtr> microphones() const { return m_microphones; }
    void setMicrophones(const QList<CaptureDevicePtr> &microphones) { m_microphones = microphones; }
    // Present while a camera and microphone are set up; the live preview
    // attaches to it.
    std::shared_ptr<CaptureSession> captureSession() const { return m_captureSession; }
    void setCaptureSession(const std::shared_ptr<CaptureSession> &session) { m_captureSession = session; }
    // The outputs that write the job's movies, in the order of its files.
    QList<std::shared_ptr<CaptureMovieFileOutput>> movieFileOutputs() const
    {
        QList<std::shared_ptr<CaptureMovieFileOutput>> outputs;
        for (const auto &output : { m_screenFileOutput, m_movieFileOutput })
            if (output)
                outputs << output;
        return outputs;
    }
    bool deleteMovieFileWhenItFinishesRecording() const { return m_deleteMovieFileWhenItFinishesRecording; }

    void refreshDevices();
    // Whether the lists have been filled at least once.
    bool hasRefreshed() const { return m_watchingDevices; }
    void setupRecordingForVideoDeviceUniqueID(const QString &videoID, const QString &audioID);
    // The screen beside the camera: the same session records `screen` too,
    // on the same clock, into a movie of its own with the microphone's
    // sound. The job's movie files are then the screen's and the camera's
    // ("ScreenCapture-…" and "LocalVideo-…", one time stamp), and every
    // recording call below acts on both at once.
    void setupRecordingForScreenWithVideoDeviceUniqueID(
        const CaptureDevicePtr &screen, const QString &videoID, const QString &audioID);
    std::optional<Error> initAudioDevice(const CaptureDevicePtr &audioDevice, const CaptureDevicePtr &videoDevice);
    // Throws InitOutputFileError.
    void initOutputFile();
    void beginRecording();
    void pauseRecording();
    void resumeRecording();
    void stopRecording();
    void cancelRecording();
    void teardown();
    // A movie is being written, or finished: recordingFinished follows.
    bool isRecording() const;

    void captureOutputWillFinishRecording(CaptureMovieFileOutput *output, const QUrl &url,
        const QList<CaptureConnectionPtr> &connections, const std::optional<Error> &error) override;
    void captureOutputDidFinishRecording(CaptureMovieFileOutput *output, const QUrl &url,
        const QList<CaptureConnectionPtr> &connections, const std::optional<Error> &error) override;

signals:
    // The movie is finished, or deleted when the recording was cancelled.
    void recordingFinished();
    // A device of the recording was unplugged (or failed); the recording
    // goes on without it: black where it gave the picture, and the sound
    // from the microphone named `standIn`, or silence when that is empty.
    void recordingDeviceLost(const QString &name, bool gavePicture, const QString &standIn);

private:
    // While it lives, the movie outputs act at the running time of its
    // making.
    class SameInstant
    {
    public:
        explicit SameInstant(CaptureDevicesController *controller);
        ~SameInstant();
        SameInstant(const SameInstant &) = delete;
        SameInstant &operator=(const SameInstant &) = delete;

    private:
        std::shared_ptr<CaptureMovieFileOutput> m_outputs[2];
    };

    void finishMovies(CaptureMovieFileOutput::FinishMode mode);
    static QList<CaptureDevicePtr> unboundDevicesWithMediaTypes(const QStringList &mediaTypes);

    CaptureDevicesControllerDelegate *m_controller = nullptr;
    QList<CaptureDevicePtr> m_cameras;
    QList<CaptureDevicePtr> m_microphones;
    std::shared_ptr<CaptureSession> m_captureSession;
    std::shared_ptr<CaptureMovieFileOutput> m_movieFileOutput;
    std::shared_ptr<CaptureMovieFileOutput> m_screenFileOutput;
    // Movies still being finished; the recording is over when none is.
    int m_unfinishedMovies = 0;
    std::optional<Error> m_firstFinishError;
    bool m_deleteMovieFileWhenItFinishesRecording = false;
    bool m_finishing = false;
    bool m_watchingDevices = false;
};
