#pragma once

// Reads back a movie file the way a player would: GStreamer's discoverer for
// the tracks, then a full decode for the timestamps of every frame and sound
// buffer, so tests see what a viewer would see.

#include <gst/gst.h>
#include <gst/pbutils/pbutils.h>

#include <QFile>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <mutex>
#include <vector>

struct MovieInspection
{
    bool readable = false;
    QString videoCodec; // GStreamer caps name, e.g. "video/x-h264"
    int width = 0;
    int height = 0;
    QString audioCodec; // e.g. "audio/mpeg"
    int sampleRate = 0;
    int channels = 0;
    double containerDuration = 0; // seconds, as the file's header says
    // From decoding every frame and sound buffer:
    double videoEnd = 0; // seconds: last frame's time + its duration
    double audioEnd = 0;
    double largestVideoGap = 0; // seconds between consecutive frames
    double largestAudioGap = 0; // seconds between one buffer's end and the next start
    int videoFrames = 0;
    QStringList topLevelAtoms;
    qint64 fileSize = 0;
    qint64 mediaBytes = 0; // payload of the mdat atoms

    qint64 overheadBytes() const { return fileSize - mediaBytes; }
};

namespace MovieInspectionDetail {

struct Track
{
    std::mutex mutex;
    std::vector<std::pair<GstClockTime, GstClockTime>> buffers; // pts, duration
};

inline void onHandoff(GstElement *, GstBuffer *buffer, GstPad *, gpointer data)
{
    auto *track = static_cast<Track *>(data);
    std::lock_guard lock(track->mutex);
    track->buffers.emplace_back(GST_BUFFER_PTS(buffer), GST_BUFFER_DURATION(buffer));
}

struct Decode
{
    GstElement *pipeline = nullptr;
    Track video, audio;
};

inline void onPadAdded(GstElement *, GstPad *pad, gpointer data)
{
    auto *decode = static_cast<Decode *>(data);
    GstCaps *caps = gst_pad_get_current_caps(pad);
    if (!caps)
        caps = gst_pad_query_caps(pad, nullptr);
    const bool video = g_str_has_prefix(gst_structure_get_name(gst_caps_get_structure(caps, 0)), "video");
    gst_caps_unref(caps);
    GstElement *sink = gst_element_factory_make("fakesink", nullptr);
    g_object_set(sink, "signal-handoffs", TRUE, "sync", FALSE, nullptr);
    g_signal_connect(sink, "handoff", G_CALLBACK(onHandoff), video ? &decode->video : &decode->audio);
    gst_bin_add(GST_BIN(decode->pipeline), sink);
    gst_element_sync_state_with_parent(sink);
    GstPad *sinkPad = gst_element_get_static_pad(sink, "sink");
    gst_pad_link(pad, sinkPad);
    gst_object_unref(sinkPad);
}

inline void scanAtoms(const QString &path, MovieInspection &result)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    result.fileSize = file.size();
    qint64 offset = 0;
    while (offset + 8 <= result.fileSize) {
        file.seek(offset);
        const QByteArray header = file.read(16);
        quint64 size
            = (quint8(header[0]) << 24) | (quint8(header[1]) << 16) | (quint8(header[2]) << 8) | quint8(header[3]);
        qint64 headerSize = 8;
        if (size == 1 && header.size() >= 16) {
            size = 0;
            for (int i = 8; i < 16; ++i)
                size = (size << 8) | quint8(header[i]);
            headerSize = 16;
        } else if (size == 0) {
            size = quint64(result.fileSize - offset);
        }
        const QString type = QString::fromLatin1(header.mid(4, 4));
        result.topLevelAtoms << type;
        if (type == QLatin1String("mdat"))
            result.mediaBytes += qint64(size) - headerSize;
        if (size < 8)
            break;
        offset += qint64(size);
    }
}

inline double largestGap(Track &track, bool fromEnd)
{
    std::sort(track.buffers.begin(), track.buffers.end());
    double gap = 0;
    for (size_t i = 1; i < track.buffers.size(); ++i) {
        const auto &[pts, duration] = track.buffers[i - 1];
        const GstClockTime reference = fromEnd && GST_CLOCK_TIME_IS_VALID(duration) ? pts + duration : pts;
        const double g = (double(track.buffers[i].first) - double(reference)) / GST_SECOND;
        gap = std::max(gap, g);
    }
    return gap;
}

inline double end(const Track &track)
{
    if (track.buffers.empty())
        return 0;
    const auto &[pts, duration] = track.buffers.back();
    return double(pts + (GST_CLOCK_TIME_IS_VALID(duration) ? duration : 0)) / GST_SECOND;
}

} // namespace MovieInspectionDetail

inline MovieInspection inspectMovie(const QString &path)
{
    using namespace MovieInspectionDetail;
    gst_init(nullptr, nullptr);
    MovieInspection result;
    if (!QFile::exists(path))
        return result;
    scanAtoms(path, result);

    GstDiscoverer *discoverer = gst_discoverer_new(20 * GST_SECOND, nullptr);
    gchar *uri = gst_filename_to_uri(path.toUtf8().constData(), nullptr);
    GstDiscovererInfo *info = gst_discoverer_discover_uri(discoverer, uri, nullptr);
    g_free(uri);
    if (info && gst_discoverer_info_get_result(info) == GST_DISCOVERER_OK) {
        result.containerDuration = double(gst_discoverer_info_get_duration(info)) / GST_SECOND;
        GList *videos = gst_discoverer_info_get_video_streams(info);
        if (videos) {
            auto *v = GST_DISCOVERER_VIDEO_INFO(videos->data);
            result.width = int(gst_discoverer_video_info_get_width(v));
            result.height = int(gst_discoverer_video_info_get_height(v));
            GstCaps *caps = gst_discoverer_stream_info_get_caps(GST_DISCOVERER_STREAM_INFO(v));
            result.videoCodec = QString::fromUtf8(gst_structure_get_name(gst_caps_get_structure(caps, 0)));
            gst_caps_unref(caps);
        }
        gst_discoverer_stream_info_list_free(videos);
        GList *audios = gst_discoverer_info_get_audio_streams(info);
        if (audios) {
            auto *a = GST_DISCOVERER_AUDIO_INFO(audios->data);
            result.sampleRate = int(gst_discoverer_audio_info_get_sample_rate(a));
            result.channels = int(gst_discoverer_audio_info_get_channels(a));
            GstCaps *caps = gst_discoverer_stream_info_get_caps(GST_DISCOVERER_STREAM_INFO(a));
            result.audioCodec = QString::fromUtf8(gst_structure_get_name(gst_caps_get_structure(caps, 0)));
            gst_caps_unref(caps);
        }
        gst_discoverer_stream_info_list_free(audios);
    }
    if (info)
        g_object_unref(info);
    g_object_unref(discoverer);

    Decode decode;
    decode.pipeline = gst_pipeline_new(nullptr);
    GstElement *source = gst_element_factory_make("filesrc", nullptr);
    GstElement *decodebin = gst_element_factory_make("decodebin", nullptr);
    g_object_set(source, "location", path.toUtf8().constData(), nullptr);
    gst_bin_add_many(GST_BIN(decode.pipeline), source, decodebin, nullptr);
    gst_element_link(source, decodebin);
    g_signal_connect(decodebin, "pad-added", G_CALLBACK(onPadAdded), &decode);
    gst_element_set_state(decode.pipeline, GST_STATE_PLAYING);
    GstBus *bus = gst_element_get_bus(decode.pipeline);
    GstMessage *message
        = gst_bus_timed_pop_filtered(bus, 60 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    // A file cut off by a crash may end in an error after its last whole
    // fragment; what decoded up to there is what a viewer gets.
    result.readable = message != nullptr;
    if (message)
        gst_message_unref(message);
    gst_object_unref(bus);
    gst_element_set_state(decode.pipeline, GST_STATE_NULL);
    gst_object_unref(decode.pipeline);

    result.videoFrames = int(decode.video.buffers.size());
    result.largestVideoGap = largestGap(decode.video, false);
    result.largestAudioGap = largestGap(decode.audio, true);
    result.videoEnd = end(decode.video);
    result.audioEnd = end(decode.audio);
    return result;
}
