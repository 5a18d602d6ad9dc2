#pragma once

#include <QString>

// An exclusive flock on the state folder's lock file for as long as it
// lives. Several tool processes run at once (a queue poll during a
// submission, a preview request during a start), and every read-modify-write
// of the state happens under it.
class StateLock final
{
public:
    explicit StateLock(const QString &lockFile);
    ~StateLock();
    StateLock(const StateLock &) = delete;
    StateLock &operator=(const StateLock &) = delete;

private:
    int m_fd = -1;
};
