#pragma once

#include "GstHandles.h"

#include <QImage>
#include <QMutex>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <atomic>
#include <memory>

class GstBusReader;

// Plays one movie, or a screen movie with its camera movie in step, for the
// review before publishing: the pictures as images for a widget to draw,
// the sound through the desktop's sound server (silently when there is
// none), and for sound alone its level over the whole recording. Nothing
// here blocks the main thread: opening, seeking and the level scan finish
// on GStreamer's threads and report back through signals.
class MoviePlayer final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MoviePlayer)

public:
    explicit MoviePlayer(QObject *parent = nullptr);
    ~MoviePlayer() override;

    // The first file gives the picture and the sound; a second one gives
    // the inset picture, played in step. An empty list closes the files.
    // `knownDuration` stands in for the length of a movie that is still
    // being written, whose file does not tell it yet.
    void open(const QStringList &paths, qint64 knownDuration = -1);
    void close();
    QStringList paths() const { return m_paths; }

    void play();
    void pause();
    bool isPlaying() const { return m_playing; }
    // Nanoseconds from the start; shows the frame there, paused or not.
    void seek(qint64 position);
    qint64 position() const { return m_position; }
    // -1 until known.
    qint64 duration() const { return m_duration; }
    bool hasPicture() const { return m_hasPicture.load(); }

    QImage frame() const;
    QImage insetFrame() const;
    // Loudness over the whole recording, 0 (silence) to 1, one value per
    // tenth of a second; empty until scanned or for a movie with pictures.
    QVector<float> levels() const { return m_levels; }

    // Whether the sound can be heard here; false plays it to nowhere.
    static bool hasSoundServer();

    // Shared with the streaming threads that write the pictures.
    struct Frames;

signals:
    void frameChanged();
    void durationChanged(qint64 duration);
    void positionChanged(qint64 position);
    void playingChanged(bool playing);
    void levelsChanged();
    // Shown in place of the picture: what could not be played, in the
    // user's words.
    void failed(const QString &message);

private:
    void handleMessage(GstMessage *message);
    void addStream(GstPad *pad, int file);
    void scanLevels(const QString &path);
    void updatePosition();
    void setPlaying(bool playing);

    QStringList m_paths;
    Gst::ElementRef m_pipeline;
    std::unique_ptr<GstBusReader> m_busReader;
    std::shared_ptr<Frames> m_frames;
    QTimer m_positionTimer;
    qint64 m_position = 0;
    qint64 m_duration = -1;
    qint64 m_pendingSeek = -1;
    qint64 m_knownDuration = -1;
    bool m_playing = false;
    bool m_prerolled = false;
    std::atomic<bool> m_hasPicture { false }; // set on a streaming thread
    std::atomic<bool> m_hasSound { false };
    QVector<float> m_levels;
    int m_generation = 0; // drops the reports of files closed since
};
