#include "SeedData.h"

#include "OrvaneKeys.h"
#include "UserDirectory.h"

#include <QVariantList>

namespace {

QVariantMap workflow(const char *name, const QString &title, const char *description, const char *uuid)
{
    return {
        { OrvaneKeys::Name, QString::fromLatin1(name) },
        { OrvaneKeys::Workflow::Title, title },
        { OrvaneKeys::Workflow::Description, QString::fromUtf8(description) },
        { OrvaneKeys::Workflow::UUID, QString::fromLatin1(uuid) },
    };
}

QVariantMap camera(const char *name, const char *location)
{
    return {
        { OrvaneKeys::Name, QString::fromUtf8(name) },
        { QStringLiteral("location"), QString::fromUtf8(location) },
    };
}

} // namespace

QVariantMap SeedData::users()
{
    return {
        { QStringLiteral("demo"), UserDirectory::makeAccount("lumex", QStringLiteral("Demo User")) },
        { QStringLiteral("lecturer"), UserDirectory::makeAccount("chalkboard", QStringLiteral("Dr. Ada Lecturer")) },
    };
}

QVariantMap SeedData::workflows()
{
    const QVariantList list {
        workflow("lecture-capture", QStringLiteral("Lecture Capture"),
            "Encodes the recording for streaming and posts it to the course page.",
            "6F1C2A8E-3B4D-4E5F-9A0B-1C2D3E4F5A61"),
        workflow("podcast-publishing",
            QStringLiteral(
                "Podcast\n$$$$\nEncodes audio and video for the podcast feed and publishes the episode at once."),
            "Publishes to the public podcast feed.", "A7B8C9D0-E1F2-4A3B-8C4D-5E6F7A8B9C02"),
        workflow("archive-only", QStringLiteral("Archive Only"),
            "Keeps the original files in the media archive without publishing them.",
            "0D9E8F7A-6B5C-4D3E-A2F1-0E9D8C7B6A53"),
        workflow("course-site-sd", QStringLiteral("Publish to Course Site"),
            "Standard definition, for slow connections.", "3C4D5E6F-7A8B-4C9D-B0E1-F2A3B4C5D6E4"),
        workflow("course-site-hd", QStringLiteral("Publish to Course Site"), "High definition with chapter markers.",
            "9E8D7C6B-5A4F-4E3D-C2B1-A0F9E8D7C6B5"),
    };
    return { { OrvaneKeys::Workflows, list } };
}

QVariantMap SeedData::cameras()
{
    const QVariantList list {
        camera("Lecture Hall A", "Main building, ground floor"),
        camera("Studio 2", "Media centre"),
        camera("Seminar Room", "Library, second floor"),
    };
    return { { OrvaneKeys::Cameras, list } };
}
