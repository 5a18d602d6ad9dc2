#pragma once

#include "Error.h"

#include <QString>

#include <optional>

// Turns a finished fragmented movie into a plain one in place, copying the
// samples without re-encoding, so the file carries a single index and no
// padding.
class MovieRewriter final
{
public:
    // The original stays when the rewrite fails, takes too long for the
    // file's size, comes out shorter, or when another file (or none) stands
    // at `path` by the time the rewrite is done. Blocking; safe on any
    // thread.
    static std::optional<Error> rewriteAsPlainMovie(const QString &path);

    // Deletes what crashed rewrites left in `folder`: temporary files that
    // no rewrite of this process is writing and that no other process (the
    // capture agent shares the spool folder) has touched for a minute.
    static void removeStaleTemporaries(const QString &folder);

    // Copies the part of the movie at `source` from `in` to `out` (times in
    // the movie) into a new plain movie at `destination`, without
    // re-encoding: the copy starts at the key frame at or before `in`, so
    // nothing between the marks is lost, and ends at `out`. An `out` of
    // zero or past the end keeps everything after `in`. Only QuickTime and
    // MPEG-4 movies can be trimmed; `destination` never holds a partial
    // copy. Blocking; safe on any thread.
    static std::optional<Error> trimMovie(
        const QString &source, const QString &destination, qint64 inNanoseconds, qint64 outNanoseconds);

    // Whether trimMovie can cut the file: a QuickTime or MPEG-4 movie.
    static bool canTrim(const QString &path);

    // Appended to a movie's path for the rewrite's temporary file.
    static constexpr const char *kTemporarySuffix = ".remux";
};
