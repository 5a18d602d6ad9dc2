#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class QObject;

// polkit's answer to "may the user do this action?": status 0 yes;
// otherwise pkcheck's exit status (a refusal, a dismissed dialog) or the
// number of the signal that ended it, or kCannotLaunch with the reason when
// pkcheck could not be run.
struct ActionRight
{
    int32_t status = 0;
    QString reason;
    bool granted() const { return status == 0; }
};

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

    // Asks whether the user may perform the polkit action `actionId`, with
    // polkit's dialog where it needs one, on a worker thread; `done` gets
    // the answer on the main thread unless `context` is gone by then. The
    // end of `context` also ends the question, and with it the dialog.
    // Call it on the main thread.
    void askRightToPerform(
        QObject *context, const QString &actionId, std::function<void(const ActionRight &right)> done) const;

    // pkexec for a person at a desktop; the direct launcher when
    // LUMEX_SYSROOT is set (tests, the simulator) or when already root.
    static std::shared_ptr<PrivilegedLauncher> standard();

protected:
    // The command that answers for `actionId` by its exit status; nullopt
    // when the launcher needs nobody's leave.
    virtual std::optional<QStringList> rightsCheckCommand(const QString &actionId) const = 0;
};

// pkexec with a socketpair as the helper's standard input and output;
// pkcheck for the rights of an action.
class PkexecLauncher final : public PrivilegedLauncher
{
public:
    // Tests give other paths to see a pkexec or pkcheck that cannot be
    // started.
    explicit PkexecLauncher(QString pkexecPath = QStringLiteral("/usr/bin/pkexec"),
        QString pkcheckPath = QStringLiteral("/usr/bin/pkcheck"));
    int32_t execute(
        const QString &helper, const QStringList &arguments, const QByteArray *input, QByteArray *output) override;

protected:
    std::optional<QStringList> rightsCheckCommand(const QString &actionId) const override;

private:
    const QString m_pkexecPath;
    const QString m_pkcheckPath;
};

// Runs the helper itself, marking the run as privileged in its environment;
// every action is allowed without asking polkit.
class DirectLauncher final : public PrivilegedLauncher
{
public:
    int32_t execute(
        const QString &helper, const QStringList &arguments, const QByteArray *input, QByteArray *output) override;

protected:
    std::optional<QStringList> rightsCheckCommand(const QString &) const override { return std::nullopt; }
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
