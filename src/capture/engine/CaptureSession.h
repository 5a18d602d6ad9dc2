#pragma once

#include "CaptureDevice.h"

#include <QList>
#include <QObject>

#include <atomic>
#include <memory>

class CaptureDeviceInput;
class CaptureSession;
class GstBusReader;

// What flows through a stream while its session runs, counted by the
// streaming thread for whoever watches a recording's health: a microphone
// that clips, a camera whose picture stopped. Times are
// std::chrono::steady_clock milliseconds.
struct StreamHealth
{
    // Sound: samples seen (all channels), and those at full scale.
    std::atomic<quint64> samples { 0 };
    std::atomic<quint64> clippedSamples { 0 };
    // Video: frames seen, and when the last one that differed from the one
    // before it arrived; -1 before the first.
    std::atomic<quint64> frames { 0 };
    std::atomic<qint64> lastChangedFrameMs { -1 };
    std::atomic<quint64> lastSignature { 0 };

    static qint64 nowMs();
};

// One stream of an input: video or sound. A disabled connection's stream is
// dropped at the source. The sound connection carries the current audio
// level, for the level meter.
class CaptureConnection final
{
public:
    CaptureConnection(CaptureDeviceInput *input, QString mediaType, const char *padName)
        : m_input(input)
        , m_mediaType(std::move(mediaType))
        , m_padName(padName)
    { }

    QString mediaType() const { return m_mediaType; }
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }
    CaptureDeviceInput *input() const { return m_input; }
    const char *padName() const { return m_padName; }

    // The average power of all channels over the last tenth of a second, in
    // decibels (0 is full scale; -700 when silent or not running).
    float averagePowerLevel() const { return m_averagePowerLevel.load(); }
    void setAveragePowerLevel(float level) { m_averagePowerLevel.store(level); }
    // Shared with the probe that counts it, which may outlive a session.
    const std::shared_ptr<StreamHealth> &health() const { return m_health; }

private:
    CaptureDeviceInput *m_input;
    QString m_mediaType;
    const char *m_padName;
    bool m_enabled = true;
    std::atomic<float> m_averagePowerLevel { -700.0f };
    std::shared_ptr<StreamHealth> m_health = std::make_shared<StreamHealth>();
};

using CaptureConnectionPtr = std::shared_ptr<CaptureConnection>;

// A device as an input of a session, with one connection per stream.
class CaptureDeviceInput final
{
public:
    explicit CaptureDeviceInput(CaptureDevicePtr device);
    CaptureDeviceInput(const CaptureDeviceInput &) = delete;
    CaptureDeviceInput &operator=(const CaptureDeviceInput &) = delete;

    CaptureDevicePtr device() const { return m_device; }
    QList<CaptureConnectionPtr> connections() const { return m_connections; }

private:
    CaptureDevicePtr m_device;
    QList<CaptureConnectionPtr> m_connections;
};

using CaptureInputPtr = std::shared_ptr<CaptureDeviceInput>;

// Something a session feeds: the movie file output, the preview. An output
// attaches its own branch to the session's streams while the session runs.
class CaptureOutput : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CaptureOutput)

public:
    CaptureOutput() = default;
    ~CaptureOutput() override = default;

    CaptureSession *session() const { return m_session; }
    // The streams the output receives: the session's first active video and
    // sound connections, or those of `chosen` that are active.
    QList<CaptureConnectionPtr> connections() const;
    void setConnections(const QList<CaptureConnectionPtr> &chosen) { m_chosen = chosen; }

protected:
    friend class CaptureSession;
    // The pipeline plays: attach branches.
    virtual void sessionDidStartRunning() { }
    // The pipeline is about to stop: finish and detach branches now.
    virtual void sessionWillStopRunning() { }
    // A source failed; the session stops right after this.
    virtual void sessionDidFail(const Error &error) { }
    // A message from the pipeline; true when the output has handled it.
    virtual bool handleBusMessage(GstMessage *message) { return false; }

private:
    CaptureSession *m_session = nullptr;
    QList<CaptureConnectionPtr> m_chosen;
};

using CaptureOutputPtr = std::shared_ptr<CaptureOutput>;

// Inputs and outputs joined in one GStreamer pipeline. Each active stream
// (the first enabled video and sound connection) ends in a tee that outputs
// branch from; sources, converters and the tees run from startRunning() to
// stopRunning(). Main thread only; the pipeline's bus is read there.
class CaptureSession final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CaptureSession)

public:
    CaptureSession();
    ~CaptureSession() override;

    // Fails when the device is not open or the input is already present.
    bool addInput(const CaptureInputPtr &input, Error *error);
    void removeInput(const CaptureInputPtr &input);
    QList<CaptureInputPtr> inputs() const { return m_inputs; }

    // Fails when the output belongs to a session already.
    bool addOutput(const CaptureOutputPtr &output, Error *error);
    void removeOutput(const CaptureOutputPtr &output);
    QList<CaptureOutputPtr> outputs() const { return m_outputs; }

    void startRunning();
    void stopRunning();
    bool isRunning() const { return bool(m_pipeline); }

    // The connections that feed outputs (see CaptureOutput::connections):
    // the first enabled video and sound connection, or with
    // setStreamsEveryVideo every enabled video connection and the first
    // sound one (a screen and a camera recorded side by side).
    QList<CaptureConnectionPtr> activeConnections() const;
    void setStreamsEveryVideo(bool every) { m_streamsEveryVideo = every; }
    // The active video connection; null for none.
    CaptureConnectionPtr videoConnection() const;
    // The tee of an active connection, for outputs to branch from.
    GstElement *teeForConnection(const CaptureConnectionPtr &connection) const;
    // The tee a recording branches from: the connection's own, or with
    // `encodedAs` a tee of its media encoded so, made on first use while the
    // session runs, whose branches share one encoder (the same sound in the
    // screen's and the camera's movie). Null with `error` set when the
    // session has no such stream.
    GstElement *teeForRecording(
        const CaptureConnectionPtr &connection, const class CompressionOptions *encodedAs, Error *error);
    GstElement *pipeline() const { return m_pipeline.element(); }
    // The pipeline's running time now, the clock that buffers are stamped in.
    GstClockTime runningTime() const;

    // While set, a device that fails while the session runs (unplugged,
    // most often) is taken out and its streams go on without it: silence
    // for sound, black for pictures, in the same format and on the same
    // clock, so that a recording stays one playable file. inputLost tells.
    // Otherwise a failing device stops the session (runtimeError).
    void setContinuesWithoutFailedDevices(bool continues) { m_continuesWithoutFailedDevices = continues; }

    // Whether sessions started from now on count their streams' health;
    // always, but for a benchmark that measures what the counting costs.
    static void setCountsStreamHealth(bool counts);

signals:
    // A device or a converter failed, the pipeline could not start, or a
    // source ended (a device unplugged); the session has stopped. Outputs
    // were told first (CaptureOutput::sessionDidFail).
    void runtimeError(const Error &error);
    // A device failed while the session ran and was replaced (see
    // setContinuesWithoutFailedDevices): a lost microphone by the default
    // one when it is free (`standIn`), otherwise by silence.
    void inputLost(const CaptureDevicePtr &device, const CaptureDevicePtr &standIn, const Error &error);

private:
    struct Stream
    {
        CaptureConnectionPtr connection;
        GstElement *head = nullptr;
        GstElement *tee = nullptr;
        GstElement *level = nullptr;
        // The shared encoder's branch and its tee, once made.
        std::shared_ptr<class TeeBranch> encodedBranch;
        GstElement *encodedTee = nullptr;
    };

    bool buildPipeline(Error *error);
    // Tells the outputs, stops and reports: the one way a session fails.
    void fail(const Error &error);
    void handleMessage(GstMessage *message);
    bool addStream(GstPad *sourcePad, const CaptureConnectionPtr &connection, Error *error);
    // Replaces the input whose source posted `failed`, if any, by silence
    // and black; true when it did.
    bool continueWithout(GstObject *failed, const Error &error);
    CaptureDevicePtr openStandInMicrophone(const CaptureDevicePtr &lost);
    // Feeds `sink` from `microphone`, or from silence or black when null,
    // in the `caps` it had.
    bool linkStandIn(GstPad *sink, GstCaps *caps, bool sound, const CaptureDevicePtr &microphone, Error *error);

    QList<CaptureInputPtr> m_inputs;
    QList<CaptureOutputPtr> m_outputs;
    Gst::ElementRef m_pipeline;
    std::unique_ptr<GstBusReader> m_busReader;
    QList<Stream> m_streams;
    QList<CaptureDevicePtr> m_standIns;
    bool m_continuesWithoutFailedDevices = false;
    bool m_streamsEveryVideo = false;
};
