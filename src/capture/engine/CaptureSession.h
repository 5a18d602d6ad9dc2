#pragma once

#include "CaptureDevice.h"

#include <QList>
#include <QObject>

#include <atomic>
#include <memory>

class CaptureDeviceInput;
class CaptureSession;
class GstBusReader;

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

private:
    CaptureDeviceInput *m_input;
    QString m_mediaType;
    const char *m_padName;
    bool m_enabled = true;
    std::atomic<float> m_averagePowerLevel { -700.0f };
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
    // The streams the output receives: the session's first enabled video and
    // sound connections.
    QList<CaptureConnectionPtr> connections() const;

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

    // The connections that feed outputs (see CaptureOutput::connections).
    QList<CaptureConnectionPtr> activeConnections() const;
    // The tee of an active connection, for outputs to branch from.
    GstElement *teeForConnection(const CaptureConnectionPtr &connection) const;
    GstElement *pipeline() const { return m_pipeline.element(); }
    // The pipeline's running time now, the clock that buffers are stamped in.
    GstClockTime runningTime() const;

signals:
    // A device or a converter failed, the pipeline could not start, or a
    // source ended (a device unplugged); the session has stopped. Outputs
    // were told first (CaptureOutput::sessionDidFail).
    void runtimeError(const Error &error);

private:
    struct Stream
    {
        CaptureConnectionPtr connection;
        GstElement *tee = nullptr;
        GstElement *level = nullptr;
    };

    bool buildPipeline(Error *error);
    // Tells the outputs, stops and reports: the one way a session fails.
    void fail(const Error &error);
    void handleMessage(GstMessage *message);
    bool addStream(GstPad *sourcePad, const CaptureConnectionPtr &connection, Error *error);

    QList<CaptureInputPtr> m_inputs;
    QList<CaptureOutputPtr> m_outputs;
    Gst::ElementRef m_pipeline;
    std::unique_ptr<GstBusReader> m_busReader;
    QList<Stream> m_streams;
};
