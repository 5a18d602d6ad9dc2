#pragma once

#include "Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QtTest>

// A private HOME and LUMEX_SYSROOT for one test, so nothing it does reaches
// the real user's files. Set before the first use of any path that the
// process computes once.
class TestSandbox final
{
public:
    TestSandbox()
        : m_dir(tempBase() + QStringLiteral("/sandbox-XXXXXX"))
    {
        QDir().mkpath(home());
        QDir().mkpath(sysroot());
        qputenv("HOME", home().toUtf8());
        qputenv("LUMEX_SYSROOT", sysroot().toUtf8());
    }

    QString path() const { return m_dir.path(); }
    QString home() const { return m_dir.path() + QStringLiteral("/home"); }
    QString sysroot() const { return m_dir.path() + QStringLiteral("/root"); }

    static QString tempBase()
    {
        QString base = qEnvironmentVariable("LUMEX_TEST_TMP");
        if (base.isEmpty())
            base = QDir::tempPath();
        QDir().mkpath(base);
        return base;
    }

private:
    QTemporaryDir m_dir;
};

// A whole file's bytes; empty when it cannot be read.
inline QByteArray readBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
// Writes a whole file, making its folder first.
inline bool writeBytes(const QString &path, const QByteArray &contents)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(contents) == contents.size();
}

// Runs python3 with a script and standard input; returns its standard output.
inline QByteArray runPython(const QString &script, const QByteArray &input = {}, int *exitCode = nullptr)
{
    QProcess python;
    python.start(QStringLiteral("python3"), { QStringLiteral("-c"), script });
    python.waitForStarted();
    python.write(input);
    python.closeWriteChannel();
    python.waitForFinished(30000);
    if (exitCode)
        *exitCode = python.exitCode();
    const QByteArray err = python.readAllStandardError();
    if (!err.isEmpty())
        qWarning("python3: %s", err.constData());
    return python.readAllStandardOutput();
}

// True when a captured line starts with `prefix` (for lines that end in a
// system's own reason text).
inline bool logHasPrefix(const Log::Capture &log, const QString &prefix)
{
    const QStringList lines = log.lines();
    return std::any_of(lines.cbegin(), lines.cend(), [&](const QString &line) { return line.startsWith(prefix); });
}

// What a failed log assertion prints.
#define LOG_LINES(log) qPrintable((log).lines().join(QLatin1Char('|')))
