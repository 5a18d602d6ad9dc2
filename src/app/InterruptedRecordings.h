#pragma once

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QStringList>
#include <QVariantMap>

#include <optional>

#include <functional>

class QMessageBox;
class QWidget;

// Recordings that a crash of Lumex or of the computer left in the spool
// folder: looked for off the main thread after a sign-in, rewritten into
// plain movies where they were left as fragments, and offered one by one,
// oldest first, as a question on the main window.
class InterruptedRecordings final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(InterruptedRecordings)

public:
    // Questions are asked on `window`, and only while `mayAsk` says so.
    InterruptedRecordings(QWidget *window, std::function<bool()> mayAsk, QObject *parent = nullptr);

    // First offers the server camera that `journal` (the recording journal
    // of this user on this server, if any) left recording or paused, when
    // `remoteCameras` still shows it in use; then looks for movies that no
    // upload holds, no process writes and that are not among `inUse`, and
    // offers them when found.
    void lookFor(const QStringList &inUse, const std::optional<QVariantMap> &journal = std::nullopt,
        const QVariantList &remoteCameras = {});
    bool isLooking() const { return m_looking; }
    QMessageBox *question() const { return m_question; }
    // Offers the next recording found, if any, and if the user may be asked.
    void offerNext();

signals:
    // The user chose to publish the recording at `paths` (the screen's and
    // the camera's movie of a recording that made both, otherwise one): it
    // was started at `started` (null when its name does not tell) and
    // interrupted at `interrupted`.
    void publishRequested(const QStringList &paths, const QDateTime &started, const QDateTime &interrupted);
    // The journal's server camera is to record on (or be published) from
    // where it is, or to be cancelled.
    void continueRequested(const QVariantMap &journal, bool publish);
    void discardRequested(const QVariantMap &journal);

private:
    void didFind(const QStringList &paths);
    // Asks about a server camera still recording; false when there is none.
    bool offerServerRecording(const QVariantMap &journal, const QVariantList &remoteCameras);
    void questionDidEnd(const QStringList &paths, bool publish);

    QWidget *m_window;
    std::function<bool()> m_mayAsk;
    QStringList m_found;
    // Asked about in this run, whatever the answer.
    QSet<QString> m_answered;
    QPointer<QMessageBox> m_question;
    bool m_looking = false;
};
