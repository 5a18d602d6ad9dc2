#include "OrvaneServerInterface.h"

#include "Format.h"
#include "Log.h"
#include "OrvaneKeys.h"
#include "Paths.h"
#include "ProcessRunner.h"
#include "PropertyList.h"

namespace {

// The array under `key` of the property list in the tool's output; nullopt
// when the entry is missing or not an array.
std::optional<QVariantList> listEntry(const QVariant &root, const QString &key)
{
    const QVariant entry = root.toMap().value(key);
    if (entry.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    return entry.toList();
}

} // namespace

std::optional<QVariantList> OrvaneServerInterface::getWorkflowsError(Error *error)
{
    QString output, errorText;
    const int32_t status = launchCommand(QStringLiteral("--listworkflows"), std::nullopt, &output, &errorText);
    if (status != 0) {
        const Error e { kServerInterfaceErrorDomain, status,
            lxFormat(QStringLiteral("%@\n%@"), { output, errorText }) };
        if (error)
            *error = e;
        Log::format(QStringLiteral("OrvaneServerInterface error: %@"), { describeError(e) });
        return std::nullopt;
    }
    try {
        return listEntry(findPropertyList(output), OrvaneKeys::Workflows);
    } catch (const PropertyList::ParseError &e) {
        Log::format(QStringLiteral("OrvaneServerInterface error. Could not parse workflows plist data. Reason: %@"),
            { e.what() });
        return std::nullopt;
    }
}

std::optional<QVariantList> OrvaneServerInterface::getCamerasError(Error *error)
{
    QString output, errorText;
    const int32_t status = launchCommand(QStringLiteral("--listcameras"), std::nullopt, &output, &errorText);
    if (status != 0) {
        // Unlike the workflow query, the text is the error text alone, and
        // the log line shows that text rather than the error object.
        setError(error, kServerInterfaceErrorDomain, status, errorText);
        Log::format(QStringLiteral("OrvaneServerInterface error: %@"), { errorText });
        return std::nullopt;
    }
    try {
        return listEntry(findPropertyList(output), OrvaneKeys::Cameras);
    } catch (const PropertyList::ParseError &e) {
        Log::format(
            QStringLiteral("OrvaneServerInterface error. Could not parse camera plist data. Reason: %@"), { e.what() });
        return std::nullopt;
    }
}

void OrvaneServerInterface::getWorkflowsForDelegate(QObject *delegate, ListCallback didEnd)
{
    runListQueryInBackground(&OrvaneServerInterface::getWorkflowsError, delegate, std::move(didEnd));
}

void OrvaneServerInterface::getCamerasForDelegate(QObject *delegate, ListCallback didEnd)
{
    runListQueryInBackground(&OrvaneServerInterface::getCamerasError, delegate, std::move(didEnd));
}

void OrvaneServerInterface::runListQueryInBackground(ListQuery query, QObject *delegate, ListCallback didEnd)
{
    using Answer = std::pair<std::optional<QVariantList>, std::optional<Error>>;
    auto self = shared_from_this();
    runInBackground(
        delegate,
        [self, query] {
            Error error;
            std::optional<QVariantList> list = (self.get()->*query)(&error);
            return Answer { std::move(list), error.domain.isEmpty() ? std::nullopt : std::optional<Error>(error) };
        },
        [didEnd](const Answer &answer) { didEnd(answer.first, answer.second); },
        [](const QString &failure) {
            return Answer { std::nullopt, Error { kServerInterfaceErrorDomain, -1, failure } };
        });
}

void OrvaneServerInterface::requestPreviewUpdateForCameraName(const QString &cameraName)
{
    auto self = shared_from_this();
    runOnWorkerThread([self, cameraName] { self->requestPreviewUpdateInThreadForCamera(cameraName); });
}

void OrvaneServerInterface::requestPreviewUpdateInThreadForCamera(const QString &cameraName)
{
    QString output, errorText;
    const int32_t status = launchCommand(QStringLiteral("--status"),
        QStringList { cameraName, QStringLiteral("--update_preview") }, &output, &errorText);
    if (status != 0)
        Log::format(QStringLiteral("Error: return code %d when calling orvx --status %@ --update_preview"),
            { status, cameraName });
}

std::optional<OrvaneServerInterface::TransferStatuses> OrvaneServerInterface::transferStatuses()
{
    QByteArray output;
    const int32_t status = runExecutable(
        Paths::orvxexec(), QStringList { QStringLiteral("--list_uploads") }, QString(), &output, nullptr);
    if (status != 0) {
        Log::format(QStringLiteral("orvx --listuploads returned with code %d"), { status });
        return std::nullopt;
    }
    try {
        // Parsed as it came: a long queue's listing is large, and decoding
        // it to text first would only be undone by the parser.
        QStringList order;
        const QVariant root = findPropertyListInUtf8(output, &order);
        if (root.typeId() != QMetaType::QVariantMap)
            return std::nullopt;
        const QVariantMap records = root.toMap();
        TransferStatuses result;
        result.reserve(order.size());
        for (const QString &key : std::as_const(order))
            result.append({ key, records.value(key) });
        return result;
    } catch (const PropertyList::ParseError &e) {
        Log::format(QStringLiteral("OrvaneServerInterface error. Could not parse uploads plist data. Reason: %@"),
            { e.what() });
        return std::nullopt;
    }
}

void OrvaneServerInterface::clearCompletedTransferStatuses()
{
    const int32_t status = runExecutable(
        Paths::orvxexec(), QStringList { QStringLiteral("--clear_completed_uploads") }, QString(), nullptr, nullptr);
    if (status != 0)
        Log::format(QStringLiteral("'orvx --clear_completed_uploads' failed, return code %d"), { status });
}
