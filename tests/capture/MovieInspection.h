#pragma once

// Reads back a movie file the way a player would, decoding every frame and
// sound buffer, so tests see what a viewer would see.

#include <gst/gst.h>

#include <QFile>
#include <QStringList>
#include <QtEndian>

#include <algorithm>
#include <vector>

struct MovieInspection
{
    bool readable = false;
    QString videoCodec; // caps name of the stored track, e.g. "video/x-h264"
    int width = 0;
    int height = 0;
    QString audioCodec; // e.g. "audio/mpeg"
    int sampleRate = 0;
    int channels = 0;
    double containerDuration = 0; // seconds, as the demuxer reports it
    // From decoding every frame and sound buffer, in seconds:
    double videoEnd = 0; // last frame's time + its duration
    double audioEnd = 0;
    double largestVideoGap = 0; // between consecutive frames
    double largestAudioGap = 0; // between one buffer's end and the next start
    int videoFrames = 0;
    QStringList topLevelAtoms;
    qint64 overheadBytes = 0; // all but the payload of the mdat atoms
};

namespace MovieInspectionDetail {

// Buffers of one track as (pts, duration); each track has one streaming
// thread of its own.
using Track = std::vector<std::pair<GstClockTime, GstClockTime>>;

struct Decode
{
    GstElement *pipeline = nullptr;
    Track video = {}, audio = {};
    MovieInspection *result = nullptr;
    QString container = {}; // the first caps decodebin meets; the tracks' come next
};

inline gboolean onStreamFound(GstElement *, GstPad *, GstCaps *caps, gpointer data)
{
    auto *decode = static_cast<Decode *>(data);
    const QString name = QString::fromUtf8(gst_structure_get_name(gst_caps_get_structure(caps, 0)));
    QString &codec = name.startsWith(QLatin1String("video/")) ? decode->result->videoCodec : decode->result->audioCodec;
    if (decode->container.isEmpty())
        decode->container = name;
    else if (codec.isEmpty())
        codec = name;
    return TRUE;
}

inline void onPadAdded(GstElement *, GstPad *pad, gpointer data)
{
    auto *decode = static_cast<Decode *>(data);
    GstCaps *caps = gst_pad_get_current_caps(pad);
    const GstStructure *s = gst_caps_get_structure(caps, 0);
    const bool video = g_str_has_prefix(gst_structure_get_name(s), "video");
    MovieInspection &r = *decode->result;
    if (video)
        gst_structure_get(s, "width", G_TYPE_INT, &r.width, "height", G_TYPE_INT, &r.height, nullptr);
    else
        gst_structure_get(s, "rate", G_TYPE_INT, &r.sampleRate, "channels", G_TYPE_INT, &r.channels, nullptr);
    gst_caps_unref(caps);
    GstElement *sink = gst_element_factory_make("fakesink", nullptr);
    g_object_set(sink, "signal-handoffs", TRUE, "sync", FALSE, nullptr);
    g_signal_connect(sink, "handoff", G_CALLBACK(+[](GstElement *, GstBuffer *buffer, GstPad *, gpointer track) {
        static_cast<Track *>(track)->emplace_back(GST_BUFFER_PTS(buffer), GST_BUFFER_DURATION(buffer));
    }),
        video ? &decode->video : &decode->audio);
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
    result.overheadBytes = file.size();
    for (qint64 offset = 0; offset + 8 <= file.size();) {
        file.seek(offset);
        const QByteArray header = file.read(16);
        quint64 size = qFromBigEndian<quint32>(header.constData());
        qint64 headerSize = 8;
        if (size == 1 && header.size() >= 16)
            size = qFromBigEndian<quint64>(header.constData() + 8), headerSize = 16;
        else if (size == 0)
            size = quint64(file.size() - offset);
        result.topLevelAtoms << QString::fromLatin1(header.mid(4, 4));
        if (result.topLevelAtoms.last() == QLatin1String("mdat"))
            result.overheadBytes -= qint64(size) - headerSize;
        if (size < 8)
            break;
        offset += qint64(size);
    }
}

// The largest step from one buffer's start (or end) to the next start.
inline double largestGap(Track &track, bool fromEnd)
{
    std::sort(track.begin(), track.end());
    double gap = 0;
    for (size_t i = 1; i < track.size(); ++i) {
        const auto &[pts, duration] = track[i - 1];
        const GstClockTime reference = fromEnd && GST_CLOCK_TIME_IS_VALID(duration) ? pts + duration : pts;
        gap = std::max(gap, (double(track[i].first) - double(reference)) / GST_SECOND);
    }
    return gap;
}

inline double trackEnd(const Track &track)
{
    if (track.empty())
        return 0;
    const auto &[pts, duration] = track.back();
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

    Decode decode { .result = &result };
    const QByteArray description = "filesrc name=source ! decodebin name=decode";
    decode.pipeline = gst_parse_launch(description.constData(), nullptr);
    GstElement *source = gst_bin_get_by_name(GST_BIN(decode.pipeline), "source");
    GstElement *decodebin = gst_bin_get_by_name(GST_BIN(decode.pipeline), "decode");
    g_object_set(source, "location", path.toUtf8().constData(), nullptr);
    g_signal_connect(decodebin, "pad-added", G_CALLBACK(onPadAdded), &decode);
    g_signal_connect(decodebin, "autoplug-continue", G_CALLBACK(onStreamFound), &decode);
    gst_object_unref(source);
    gst_object_unref(decodebin);
    gst_element_set_state(decode.pipeline, GST_STATE_PLAYING);
    GstBus *bus = gst_element_get_bus(decode.pipeline);
    GstMessage *message
        = gst_bus_timed_pop_filtered(bus, 60 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    // A file cut off by a crash may end in an error after its last whole
    // fragment; what decoded up to there is what a viewer gets.
    result.readable = message != nullptr;
    gint64 duration = 0;
    if (gst_element_query_duration(decode.pipeline, GST_FORMAT_TIME, &duration))
        result.containerDuration = double(duration) / GST_SECOND;
    if (message)
        gst_message_unref(message);
    gst_object_unref(bus);
    gst_element_set_state(decode.pipeline, GST_STATE_NULL);
    gst_object_unref(decode.pipeline);

    result.videoFrames = int(decode.video.size());
    result.largestVideoGap = largestGap(decode.video, false);
    result.largestAudioGap = largestGap(decode.audio, true);
    result.videoEnd = trackEnd(decode.video);
    result.audioEnd = trackEnd(decode.audio);
    return result;
}

// The stored (encoded) pictures of a movie's video track, as their time in
// seconds and a hash of their bytes: a copy that was not re-encoded holds
// the same pictures, so a picture tells where in the original it came from.
using StoredPictures = std::vector<std::pair<double, size_t>>;
inline StoredPictures storedPictures(const QString &path)
{
    gst_init(nullptr, nullptr);
    StoredPictures pictures;
    GstElement *pipeline = gst_parse_launch("filesrc name=source ! qtdemux name=d d.video_0 ! fakesink name=sink "
                                            "signal-handoffs=true sync=false",
        nullptr);
    GstElement *source = gst_bin_get_by_name(GST_BIN(pipeline), "source");
    GstElement *sink = gst_bin_get_by_name(GST_BIN(pipeline), "sink");
    g_object_set(source, "location", path.toUtf8().constData(), nullptr);
    g_signal_connect(sink, "handoff", G_CALLBACK(+[](GstElement *, GstBuffer *buffer, GstPad *, gpointer data) {
        GstMapInfo map;
        if (!gst_buffer_map(buffer, &map, GST_MAP_READ))
            return;
        static_cast<StoredPictures *>(data)->emplace_back(double(GST_BUFFER_PTS(buffer)) / GST_SECOND,
            qHash(QByteArrayView(reinterpret_cast<const char *>(map.data), qsizetype(map.size))));
        gst_buffer_unmap(buffer, &map);
    }),
        &pictures);
    gst_object_unref(source);
    gst_object_unref(sink);
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    GstBus *bus = gst_element_get_bus(pipeline);
    if (GstMessage *message
        = gst_bus_timed_pop_filtered(bus, 60 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)))
        gst_message_unref(message);
    gst_object_unref(bus);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    return pictures;
}

// Where the first stored picture of `copy` stands in `original`, in
// seconds, or -1 when the original does not hold it.
inline double firstPictureTimeIn(const QString &copy, const QString &original)
{
    const auto copied = storedPictures(copy);
    if (copied.empty())
        return -1;
    for (const auto &[time, hash] : storedPictures(original))
        if (hash == copied.front().second)
            return time;
    return -1;
}
