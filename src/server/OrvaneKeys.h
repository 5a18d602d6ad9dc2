#pragma once

#include <QString>

// The keys both ends of the server tool's protocol and of the capture
// agent's configuration spell, declared once for the client, the agent and
// the simulator, so a key cannot drift on one side only.
namespace OrvaneKeys {

// The credentials dictionary of a sign-in.
namespace Credentials {
inline const QString User = QStringLiteral("user");
inline const QString Password = QStringLiteral("password");
inline const QString Server = QStringLiteral("server");
} // namespace Credentials

// The root entries of "--listworkflows" and "--listcameras".
inline const QString Workflows = QStringLiteral("workflows");
inline const QString Cameras = QStringLiteral("cameras");

// Of a workflow or a camera record: what goes back to the tool as
// "--workflow" or as the camera argument.
inline const QString Name = QStringLiteral("name");

namespace Workflow {
inline const QString Title = QStringLiteral("title");
inline const QString Description = QStringLiteral("description");
inline const QString UUID = QStringLiteral("uuid");
} // namespace Workflow

namespace Camera {
inline const QString UUID = QStringLiteral("uuid");
inline const QString Status = QStringLiteral("status");
inline const QString PreviewURL = QStringLiteral("preview_url");
// The text "true" while the camera is busy.
inline const QString InUse = QStringLiteral("in_use");
} // namespace Camera

// A record of "--list_uploads".
namespace Upload {
inline const QString UUID = QStringLiteral("upload_uuid");
inline const QString Status = QStringLiteral("status");
inline const QString PercentDone = QStringLiteral("percent_done");
inline const QString EstimatedTimeLeft = QStringLiteral("estimated_time_left");
inline const QString User = QStringLiteral("user");
inline const QString Server = QStringLiteral("server");
inline const QString CachedMetadataFile = QStringLiteral("cached_metadata_file");
inline const QString ContentPaths = QStringLiteral("content_paths");
inline const QString Workflow = QStringLiteral("workflow");
inline const QString SubmittedAt = QStringLiteral("submitted_at");
inline const QString TotalBytes = QStringLiteral("total_bytes");
// Added by the client to its rows: the dictionary read from
// CachedMetadataFile.
inline const QString Metadata = QStringLiteral("metadata");
} // namespace Upload

// The values of Upload::Status.
namespace UploadStatus {
inline const QString Pending = QStringLiteral("pending");
inline const QString Uploading = QStringLiteral("uploading");
inline const QString Completed = QStringLiteral("completed");
inline const QString Error = QStringLiteral("error");
} // namespace UploadStatus

// Of a submission's metadata file. A listed upload's title is its Title,
// or failing that its UserMetadataTitle.
namespace Metadata {
inline const QString Author = QStringLiteral("Author");
inline const QString Title = QStringLiteral("Title");
inline const QString Description = QStringLiteral("Description");
inline const QString RecordingStartedAt = QStringLiteral("Recording Started At");
inline const QString RecordingStoppedAt = QStringLiteral("Recording Stopped At");
inline const QString UserMetadataTitle = QStringLiteral("UserMetadata_Title");
} // namespace Metadata

// The capture agent's configuration, machine-wide and per user.
namespace Agent {
inline const QString CameraName = QStringLiteral("CameraName");
inline const QString TunnelHost = QStringLiteral("TunnelHost");
inline const QString RecordingVideoInput = QStringLiteral("RecordingVideoInput");
inline const QString RecordingAudioInput = QStringLiteral("RecordingAudioInput");
inline const QString VideoDevice = QStringLiteral("VideoDevice");
inline const QString AudioDevice = QStringLiteral("AudioDevice");
// "Video:", "Audio:" or "Screen:" followed by a preset.
inline const QString Capture = QStringLiteral("Capture");
inline const QString RecordingCapturePreset = QStringLiteral("RecordingCapturePreset");
inline const QString RecordingDiskSpaceCutoffInMB = QStringLiteral("RecordingDiskSpaceCutoffInMB");
// The device value that lets the agent choose.
inline const QString Automatic = QStringLiteral("Automatic");
} // namespace Agent

} // namespace OrvaneKeys
