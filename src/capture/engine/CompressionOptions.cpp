#include "CompressionOptions.h"

#include <gst/video/video.h>

#include "CaptureDevice.h"

#include <algorithm>

namespace {

QString availableEncoder(const QStringList &encoders)
{
    for (const QString &encoder : encoders)
        if (Gst::hasFactory(encoder.toUtf8().constData()))
            return encoder;
    return {};
}

} // namespace

CompressionOptions::CompressionOptions(
    QString identifier, QString mediaType, QStringList encoders, int maxWidth, int maxHeight, int bitrate)
    : m_identifier(std::move(identifier))
    , m_mediaType(std::move(mediaType))
    , m_encoders(std::move(encoders))
    , m_maxWidth(maxWidth)
    , m_maxHeight(maxHeight)
    , m_bitrate(bitrate)
{ }

// avenc_mpeg4 is left out on purpose: on this GStreamer it emits buffers
// without timestamps, which the muxer cannot place. The "MPEG4" name is the
// platform's; H.264 is MPEG-4 part 10 and every player reads it.

QStringList CompressionOptions::compressionOptionsIdentifiersForMediaType(const QString &mediaType)
{
    static const QStringList order { SD480SizeMPEG4Video, SD480SizeH264Video, Size240H264Video, HighQualityAACAudio,
        VoiceQualityAACAudio };
    QStringList result;
    for (const QString &identifier : order) {
        const auto options = compressionOptionsWithIdentifier(identifier);
        if (options && options->mediaType() == mediaType)
            result.append(identifier);
    }
    return result;
}

std::optional<CompressionOptions> CompressionOptions::compressionOptionsWithIdentifier(const QString &identifier)
{
    static const QStringList aac { QStringLiteral("voaacenc"), QStringLiteral("avenc_aac") };
    static const QStringList h264 { QStringLiteral("x264enc") };
    std::optional<CompressionOptions> options;
    if (identifier == SD480SizeMPEG4Video || identifier == SD480SizeH264Video)
        options = CompressionOptions(identifier, MediaType::Video, h264, 640, 480);
    else if (identifier == ScreenH264Video)
        options = CompressionOptions(identifier, MediaType::Video, h264, 1920, 1080);
    else if (identifier == Size240H264Video)
        options = CompressionOptions(identifier, MediaType::Video, h264, 320, 240);
    else if (identifier == HighQualityAACAudio)
        options = CompressionOptions(identifier, MediaType::Sound, aac, 0, 0, 192000);
    else if (identifier == VoiceQualityAACAudio)
        options = CompressionOptions(identifier, MediaType::Sound, aac, 0, 0, 64000);
    if (options && availableEncoder(options->m_encoders).isEmpty())
        return std::nullopt;
    return options;
}

CompressionOptions CompressionOptions::platformDefault(const QString &mediaType)
{
    if (mediaType == MediaType::Video)
        return CompressionOptions(QString(), mediaType, { QStringLiteral("x264enc"), QStringLiteral("jpegenc") });
    return CompressionOptions(QString(), mediaType, {});
}

Gst::CapsPtr CompressionOptions::videoCapsForSource(int width, int height, int parN, int parD) const
{
    // Square pixels out, so the stored size is the displayed size.
    double displayWidth = width;
    if (parN > 0 && parD > 0)
        displayWidth = double(width) * parN / parD;
    double scale = 1.0;
    if (m_maxWidth > 0 && m_maxHeight > 0)
        scale = std::min({ 1.0, m_maxWidth / displayWidth, m_maxHeight / double(height) });
    // Even sizes: 4:2:0 chroma needs them.
    const int outWidth = std::max(2, int(displayWidth * scale) & ~1);
    const int outHeight = std::max(2, int(height * scale) & ~1);
    return Gst::CapsPtr(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "I420", "width", G_TYPE_INT,
        outWidth, "height", G_TYPE_INT, outHeight, "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1, nullptr));
}

Gst::ElementRef CompressionOptions::createEncoderBin(Error *error) const
{
    QByteArray description;
    const QString encoder = availableEncoder(m_encoders);
    if (m_mediaType == MediaType::Video) {
        // The I420 filter matters: x264 would otherwise keep 4:4:4 from some
        // sources, which most players cannot decode.
        description = "videoconvert name=first ! videoscale ! capsfilter name=size caps=video/x-raw,format=I420 ! ";
        // Key frames come at each whole second of the pipeline's running
        // time (see forceKeyFramesEverySecond) and nowhere else, so that a
        // trim, which cuts at key frames, lands within a second of its mark
        // and cuts the two movies of a screen and its camera alike. The
        // encoder's own limit is a fallback only.
        if (encoder == QLatin1String("x264enc") && m_identifier == ScreenH264Video)
            description += "x264enc tune=zerolatency+stillimage speed-preset=veryfast key-int-max=150 "
                           "option-string=scenecut=0 name=last";
        else if (encoder == QLatin1String("x264enc"))
            description += "x264enc tune=zerolatency speed-preset=veryfast key-int-max=300 "
                           "option-string=scenecut=0 name=last";
        else if (encoder == QLatin1String("jpegenc"))
            description += "jpegenc name=last";
        else {
            if (error)
                *error
                    = Gst::coreError(GST_CORE_ERROR_MISSING_PLUGIN, QStringLiteral("No video encoder is installed."));
            return {};
        }
    } else {
        description = "audioconvert name=first ! audioresample ! ";
        if (encoder.isEmpty()) {
            description += "audio/x-raw,format=S16LE ! identity name=last";
        } else {
            description += "audio/x-raw,rate=48000,channels=2 ! " + encoder.toUtf8() + " name=last";
            if (m_bitrate > 0)
                description += " bitrate=" + QByteArray::number(m_bitrate);
        }
    }
    Gst::ElementRef bin = Gst::parseBin(description, false, error);
    if (bin
        && (!Gst::addGhostPad(bin.element(), "first", "sink", "sink")
            || !Gst::addGhostPad(bin.element(), "last", "src", "src"))) {
        if (error)
            *error = Gst::coreError(GST_CORE_ERROR_PAD, QStringLiteral("The encoder has no way in or out."));
        return {};
    }
    if (bin && encoder == QLatin1String("x264enc"))
        forceKeyFramesEverySecond(bin.element());
    return bin;
}

void CompressionOptions::forceKeyFramesEverySecond(GstElement *encoderBin)
{
    Gst::ElementRef encoder(gst_bin_get_by_name(GST_BIN(encoderBin), "last"), Gst::Ref::Adopt);
    Gst::PadRef sink(encoder ? gst_element_get_static_pad(encoder.element(), "sink") : nullptr, Gst::Ref::Adopt);
    if (!sink)
        return;
    // The first picture at or after each whole second becomes a key frame;
    // the request goes ahead of it into the encoder.
    gst_pad_add_probe(
        sink.get(), GST_PAD_PROBE_TYPE_BUFFER,
        [](GstPad *pad, GstPadProbeInfo *info, gpointer data) {
            auto *nextSecond = static_cast<GstClockTime *>(data);
            GstBuffer *buffer = GST_PAD_PROBE_INFO_BUFFER(info);
            Gst::EventPtr sticky(gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0));
            if (!sticky || !GST_BUFFER_PTS_IS_VALID(buffer))
                return GST_PAD_PROBE_OK;
            const GstSegment *segment = nullptr;
            gst_event_parse_segment(sticky.get(), &segment);
            const GstClockTime running = gst_segment_to_running_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
            if (!GST_CLOCK_TIME_IS_VALID(running) || running < *nextSecond)
                return GST_PAD_PROBE_OK;
            *nextSecond = (running / GST_SECOND + 1) * GST_SECOND;
            // For the picture that follows at once: the encoder counts
            // times of its own once the movie's timeline has restamped them.
            gst_pad_send_event(pad,
                gst_video_event_new_downstream_force_key_unit(
                    GST_CLOCK_TIME_NONE, GST_CLOCK_TIME_NONE, GST_CLOCK_TIME_NONE, FALSE, 0));
            return GST_PAD_PROBE_OK;
        },
        new GstClockTime(0), [](gpointer data) { delete static_cast<GstClockTime *>(data); });
}
