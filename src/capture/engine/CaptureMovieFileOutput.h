#pragma once

#include "CaptureSession.h"
#include "CompressionOptions.h"

#include <QHash>
#include <QUrl>

#include <chrono>
#include <optional>

class CaptureMovieFileOutput;

// Told when a movie file output stops writing a file. Both calls arrive on
// the main thread, queued: never from inside the call that caused them.
class CaptureFileOutputDelegate
{
public:
    virtual ~CaptureFileOutputDelegate() = default;
    // The output has stopped taking media for the file; it is being closed.
    virtual void captureOutputWillFinishRecording(CaptureMovieFileOutput *output, const QUrl &url,
        const QList<CaptureConnectionPtr> &connections, const std::optional<Error> &error)
        = 0;
    // The file is complete (or, with an error, as complete as it got).
    virtual void captureOutputDidFinishRecording(CaptureMovieFileOutput *output, const QUrl &url,
        const QList<CaptureConnectionPtr> &connections, const std::optional<Error> &error)
        = 0;
};

// Writes the session's media into QuickTime movie files.
//
// Crash safety: while recording, the muxer writes a fragmented movie (a
// header, then a fragment with its own index every half second), so a file cut
// off by a crash or kill -9 plays up to its last complete fragment, however
// long the recording ran. A clean finish rewrites the fragments into a plain
// movie (MovieRewriter: a copy of the samples, a few seconds per hour
// of recording) and replaces the file with it, so the finished file carries
// a single index and no padding. Should that rewrite fail, the fragmented
// file stays: it plays everywhere, it only has a larger index.
//
// Pause drops media at the entry of the file's branch and shifts every
// later timestamp back by the paused time, on the video and the sound stream
// alike, so the file has no gap and stays in sync.
class CaptureMovieFileOutput final : public CaptureOutput
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CaptureMovieFileOutput)

public:
    CaptureMovieFileOutput();
    ~CaptureMovieFileOutput() override;

    void setDelegate(CaptureFileOutputDelegate *delegate) { m_delegate = delegate; }
    CaptureFileOutputDelegate *delegate() const { return m_delegate; }

    // What becomes of the file being finished: kept files are rewritten as a
    // plain movie; a file about to be deleted is only closed.
    enum class FinishMode { Keep, Discard };

    // Starts writing to a local file URL, finishing the file being written
    // first; an empty URL only finishes the current file. A URL given while
    // the session is not running waits for it; finishing such a recording
    // (or a failure of the session) reports it finished with an error.
    void recordToOutputFileURL(const QUrl &url, FinishMode current = FinishMode::Keep);
    QUrl outputFileURL() const;
    bool isRecording() const { return bool(m_current); }
    void pauseRecording();
    void resumeRecording();
    bool isRecordingPaused() const;
    // Recorded time of the current file, without its pauses.
    std::chrono::nanoseconds recordedDuration() const;

    // Encoding of a connection; connections without one get the platform
    // default (CompressionOptions::platformDefault).
    void setCompressionOptions(
        const std::optional<CompressionOptions> &options, const CaptureConnectionPtr &connection);
    std::optional<CompressionOptions> compressionOptionsForConnection(const CaptureConnectionPtr &connection) const;

    // The running time that starting, pausing, resuming and finishing act
    // at, instead of the moment of the call: outputs of one session given
    // one time cut their files at the same instant. Null for the moment of
    // each call.
    void setActionTime(std::optional<GstClockTime> time) { m_actionTime = time; }

    // Sound from the session's shared encoder (see
    // CaptureSession::teeForRecording) instead of an encoder of the
    // file's own: outputs that record one microphone into two movies.
    void setSharesSoundEncoding(bool shares) { m_sharesSoundEncoding = shares; }

    // How much a crash may lose at most. Shorter fragments cost a larger
    // index while recording, nothing after a clean finish.
    void setFragmentDuration(std::chrono::milliseconds duration) { m_fragmentDuration = duration; }

signals:
    // The first buffer of a file's stream reached the muxer, at `monotonicNs`
    // on CLOCK_MONOTONIC (the clock every process shares), read on the
    // streaming thread; delivered queued, once per stream and file.
    void firstSampleRecorded(const QString &mediaType, qint64 monotonicNs);

protected:
    void sessionDidStartRunning() override;
    void sessionWillStopRunning() override;
    void sessionDidFail(const Error &error) override;
    bool handleBusMessage(GstMessage *message) override;

private:
    struct Recording;
    using RecordingPtr = std::shared_ptr<Recording>;

    void startRecording(const QUrl &url);
    // The recording's bin, not yet in the pipeline, and its tee branches.
    bool buildRecordingBin(const RecordingPtr &recording, Error *error);
    void watchFirstSample(GstPad *muxPad, const QString &mediaType);
    void finishRecording(const RecordingPtr &recording);
    void finishUnstartedRecording(const QUrl &url, const Error &error);
    void abandonRecording(const RecordingPtr &recording, const Error &error);
    void endOfStream(const RecordingPtr &recording);
    void completeRecording(const RecordingPtr &recording, bool remux);
    void releaseFromSession(const RecordingPtr &recording);
    bool handleRecordingMessage(const RecordingPtr &recording, GstMessage *message);
    void removeBin(const RecordingPtr &recording);
    void deliverWillFinish(const RecordingPtr &recording);
    void deliverDidFinish(const RecordingPtr &recording);
    RecordingPtr recordingForMessageSource(GstObject *source) const;
    // The running time the timeline acts at now (see setActionTime).
    qint64 now() const;

    CaptureFileOutputDelegate *m_delegate = nullptr;
    RecordingPtr m_current;
    QList<RecordingPtr> m_finishing;
    QUrl m_pendingURL;
    std::optional<Error> m_sessionFailure;
    QHash<CaptureConnection *, std::optional<CompressionOptions>> m_options;
    std::chrono::milliseconds m_fragmentDuration { 500 };
    std::optional<GstClockTime> m_actionTime;
    bool m_sharesSoundEncoding = false;
};
