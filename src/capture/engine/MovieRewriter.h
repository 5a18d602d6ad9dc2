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

    // Appended to a movie's path for the rewrite's temporary file.
    static constexpr const char *kTemporarySuffix = ".remux";
};
