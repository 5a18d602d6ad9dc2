#pragma once

#include <QString>
#include <QtGlobal>

// A failure as the user and the callers see it: a domain, a code within it and
// a text already translated for the user.
struct Error
{
    QString domain;
    qint64 code = 0;
    QString localizedDescription;

    bool operator==(const Error &other) const = default;
};

// The domain of every failure of the server interface. The misspelling is the
// system's own and must match letter for letter.
inline const QString kServerInterfaceErrorDomain = QStringLiteral("PodcastServerInteraceErrorDomain");

// The domain of local capture errors raised by the application itself.
inline const QString kLumexErrorDomain = QStringLiteral("com.tarn.Lumex");

// Stores an error in an optional out-parameter.
inline void setError(Error *out, const QString &domain, qint64 code, const QString &text)
{
    if (out)
        *out = Error { domain, code, text };
}

// "%@" of an error, as it appears in log lines.
QString describeError(const Error &error);

// File-system failures, with errno as the code.
inline const QString kPosixErrorDomain = QStringLiteral("NSPOSIXErrorDomain");
