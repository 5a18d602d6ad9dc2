#include "StateLock.h"

#include "ToolFailure.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

StateLock::StateLock(const QString &lockFile)
{
    m_fd = ::open(QFile::encodeName(lockFile).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (m_fd < 0)
        throw ToolFailure(ToolFailure::kRefused,
            QStringLiteral("Error: cannot open the state lock %1: %2\n")
                .arg(lockFile, QString::fromLocal8Bit(std::strerror(errno))));
    while (::flock(m_fd, LOCK_EX) != 0) {
        if (errno != EINTR) {
            ::close(m_fd);
            m_fd = -1;
            throw ToolFailure(ToolFailure::kRefused, QStringLiteral("Error: cannot lock %1\n").arg(lockFile));
        }
    }
}

StateLock::~StateLock()
{
    if (m_fd >= 0)
        ::close(m_fd); // closing drops the lock
}
