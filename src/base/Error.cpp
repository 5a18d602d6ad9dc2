#include "Error.h"

#include "Format.h"

QString describeError(const Error &error)
{
    return lxFormat(
        QStringLiteral("Error Domain=%@ Code=%d \"%@\""), { error.domain, error.code, error.localizedDescription });
}
