#pragma once

#include "GstHandles.h"

#include <QString>
#include <QStringList>

#include <optional>

// A named encoding for one media type, as the platform's compression
// options were. An identifier exists "on the platform" when the encoder it
// needs is in the GStreamer registry.
class CompressionOptions final
{
public:
    static inline const QString SD480SizeMPEG4Video = QStringLiteral("QTCompressionOptionsSD480SizeMPEG4Video");
    static inline const QString SD480SizeH264Video = QStringLiteral("QTCompressionOptionsSD480SizeH264Video");
    static inline const QString Size240H264Video = QStringLiteral("QTCompressionOptions240SizeH264Video");
    static inline const QString HighQualityAACAudio = QStringLiteral("QTCompressionOptionsHighQualityAACAudio");
    static inline const QString VoiceQualityAACAudio = QStringLiteral("QTCompressionOptionsVoiceQualityAACAudio");
    // Ours: a screen fitted to 1920x1080, H.264 tuned for still content
    // with a key frame every second.
    static inline const QString ScreenH264Video = QStringLiteral("LumexScreenH264Video");

    static QStringList compressionOptionsIdentifiersForMediaType(const QString &mediaType);
    static std::optional<CompressionOptions> compressionOptionsWithIdentifier(const QString &identifier);
    // What a connection gets when nobody chose: H.264 at the source's size
    // for video (Motion JPEG without x264), 16-bit PCM for sound.
    static CompressionOptions platformDefault(const QString &mediaType);

    QString identifier() const { return m_identifier; }
    QString mediaType() const { return m_mediaType; }
    // Largest frame for video (0: the source's size), kept in proportion.
    int maxWidth() const { return m_maxWidth; }
    int maxHeight() const { return m_maxHeight; }

    // A bin from raw media to the encoded stream, with ghost pads "sink" and
    // "src". For video its capsfilter is named "size"; set its caps with
    // videoCapsForSource() once the source's caps are known.
    Gst::ElementRef createEncoderBin(Error *error) const;
    // The I420 caps the encoder gets for a source of that size.
    Gst::CapsPtr videoCapsForSource(int width, int height, int parNumerator, int parDenominator) const;

private:
    CompressionOptions(QString identifier, QString mediaType, QStringList encoders, int maxWidth = 0, int maxHeight = 0,
        int bitrate = 0);

    QString m_identifier;
    QString m_mediaType;
    QStringList m_encoders; // the first one in the registry is used
    int m_maxWidth = 0;
    int m_maxHeight = 0;
    int m_bitrate = 0; // bits per second; 0 keeps the encoder's default

    static void forceKeyFramesEverySecond(GstElement *encoderBin);
};
