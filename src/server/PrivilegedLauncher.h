#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

// Runs a helper with administrator rights over a two-way pipe: the caller's
// input is written to the helper, the writing direction is shut down, and
// everything the helper prints is read to end of file.
//
// The status is the launch's, in the codes callers know: 0 when the helper
// ran (its output then decides), kNotAuthorized, kCanceled, or kCannotLaunch.
class PrivilegedLauncher
{
public:
    static constexpr int32_t kInvalidAuthorization = -60002;
    static constexpr int32_t kNotAuthorized = -60005;
    static constexpr int32_t kCanceled = -60006;
    static constexpr int32_t kCannotLaunch = -60031;

    virtual ~PrivilegedLauncher() = default;

    // `input` null: nothing is written. `output` may be null to drop it.
    virtual int32_t execute(
        const QString &helper, const QStringList &arguments, const QByteArray *input, QByteArray *output)
        = 0;

    // pkexec for a person at a desktop; the direct launcher when
    // LUMEX_SYSROOT is set (tests, the simulator) or when already root.
    static std::shared_ptr<PrivilegedLauncher> standard();
};

// pkexec with a socketpair as the helper's standard input and output.
class PkexecLauncher final : public PrivilegedLauncher
{
public:
    // Tests give another path to see a pkexec that cannot be started.
    explicit PkexecLauncher(QString pkexecPath = QStringLiteral("/usr/bin/pkexec"));
    int32_t execute(
        const QString &helper, const QStringList &arguments, const QByteArray *input, QByteArray *output) override;

private:
    const QString m_pkexecPath;
};

// Runs the helper itself, marking the run as privileged in its environment.
class DirectLauncher final : public PrivilegedLauncher
{
public:
    int32_t execute(
        const QString &helper, const QStringList &arguments, const QByteArray *input, QByteArray *output) override;
};

// The stand-in for the platform's authorization handle: which launcher the
// privileged operations go through.
class Authorization final
{
public:
    explicit Authorization(std::shared_ptr<PrivilegedLauncher> launcher = PrivilegedLauncher::standard())
        : m_launcher(std::move(launcher))
    { }
    PrivilegedLauncher &launcher() const { return *m_launcher; }

private:
    std::shared_ptr<PrivilegedLauncher> m_launcher;
};
