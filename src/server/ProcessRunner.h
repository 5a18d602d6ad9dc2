#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "Process.h"

#include <cstdint>
#include <optional>

// Runs `launchPath` as a child and collects what it prints.
//
// - `arguments` (nullopt or empty: none) follow the program name.
// - `input`: a non-null string is written to the child's standard input in
//   one piece, with no line end, and the pipe is closed; a null string gives
//   the child "/dev/null".
// - `output` / `error`: where standard output (raw bytes) and standard error
//   (UTF-8 text) go; a stream with no place given goes to "/dev/null".
// - `environment` (nullopt: inherit ours) becomes the child's whole
//   environment, as "NAME=value" entries.
//
// Both streams are drained at once, so a child that fills one pipe while the
// other is being read cannot deadlock; the results are those of reading one
// after the other. Returns the exit status, the number of the signal that
// killed the child (never 0 for a crash), or -1 when `launchPath` is null or
// not executable.
int32_t runExecutable(const QString &launchPath, const std::optional<QStringList> &arguments, const QString &input,
    QByteArray *output, QString *error, const std::optional<QStringList> &environment = std::nullopt);

// True when `path` names a file this process may execute.
bool isExecutableFile(const QString &path);
