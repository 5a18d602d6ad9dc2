#include "InterruptedRecordings.h"

#include "Format.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Log.h"
#include "MovieRewriter.h"
#include "OrvaneKeys.h"
#include "OrvaneServerInterface.h"
#include "Threads.h"
#include "TrimmedUploads.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QtEndian>

#include <dirent.h>
#include <unistd.h>

namespace {

// The names the recorder and the capture agent give their movies.
const QStringList kMovieNames { QStringLiteral("LocalVideo-*.mov"), QStringLiteral("LocalAudio-*.mov"),
    QStringLiteral("ScreenCapture-*.mov") };

QString comparablePath(const QString &path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(QFileInfo(path).absoluteFilePath()) : canonical;
}

// Those of `paths` that some process has open: a recording still being
// written (by the capture agent, or another instance's recorder) is no
// interrupted one.
QSet<QString> heldOpen(const QSet<QString> &paths)
{
    QSet<QString> held;
    DIR *proc = ::opendir("/proc");
    if (!proc)
        return held;
    while (const dirent *process = ::readdir(proc)) {
        if (process->d_name[0] < '1' || process->d_name[0] > '9')
            continue;
        const QByteArray fdFolder = QByteArray("/proc/") + process->d_name + "/fd";
        DIR *fds = ::opendir(fdFolder.constData());
        if (!fds)
            continue;
        while (const dirent *fd = ::readdir(fds)) {
            char target[4096];
            const QByteArray link = fdFolder + '/' + fd->d_name;
            const ssize_t length = ::readlink(link.constData(), target, sizeof target);
            if (length <= 0 || target[0] != '/')
                continue;
            const QString path = QFile::decodeName(QByteArray(target, int(length)));
            if (paths.contains(path))
                held.insert(path);
        }
        ::closedir(fds);
    }
    ::closedir(proc);
    return held;
}

// The recorder writes a movie as fragments while it runs and joins them on
// a clean stop; a crash leaves the fragments, of which many players see only
// the first.
bool isFragmented(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    for (qint64 offset = 0; offset + 8 <= file.size();) {
        file.seek(offset);
        const QByteArray header = file.read(16);
        if (header.size() < 8)
            return false;
        if (header.mid(4, 4) == "moof")
            return true;
        quint64 size = qFromBigEndian<quint32>(header.constData());
        if (size == 1 && header.size() == 16)
            size = qFromBigEndian<quint64>(header.constData() + 8);
        if (size < 8)
            return false;
        offset += qint64(size);
    }
    return false;
}

// Runs on a worker thread: the movies of `spool` that belong to no upload,
// are not being written and are not in `known`, oldest first, the
// recorder's own fragmented ones rewritten as plain movies.
QStringList findInterruptedRecordings(const QString &spool, const QSet<QString> &known)
{
    QFileInfoList movies = QDir(spool).entryInfoList(kMovieNames, QDir::Files, QDir::Time | QDir::Reversed);
    QSet<QString> candidates;
    for (const QFileInfo &movie : std::as_const(movies))
        candidates.insert(comparablePath(movie.filePath()));
    candidates -= known;
    // Rewrites that a crash cut short leave their temporaries beside.
    MovieRewriter::removeStaleTemporaries(spool);
    const auto uploads = OrvaneServerInterface::transferStatuses();
    // A trimmed recording whose upload completed meanwhile is published:
    // its original goes now, and is not offered.
    TrimmedUploads::settle(spool, [&uploads](const QString &uuid) {
        for (const auto &[key, upload] : uploads.value_or(OrvaneServerInterface::TransferStatuses {})) {
            const QVariantMap record = upload.toMap();
            if (key == uuid || record.value(OrvaneKeys::Upload::UUID).toString() == uuid)
                return record.value(OrvaneKeys::Upload::Status).toString();
        }
        return QString();
    });
    for (auto it = candidates.begin(); it != candidates.end();)
        it = QFile::exists(*it) ? std::next(it) : candidates.erase(it);
    if (candidates.isEmpty())
        return {};
    if (uploads) {
        for (const auto &[key, upload] : *uploads) {
            for (const QVariant &path : upload.toMap().value(QStringLiteral("content_paths")).toList())
                candidates.remove(comparablePath(path.toString()));
        }
    }
    candidates -= heldOpen(candidates);

    QStringList found;
    for (const QFileInfo &movie : std::as_const(movies)) {
        const QString path = comparablePath(movie.filePath());
        if (!candidates.contains(path) || movie.size() == 0)
            continue;
        if (movie.fileName().startsWith(QLatin1String("LocalVideo-")) && isFragmented(path)) {
            const QDateTime modified = movie.lastModified();
            if (const std::optional<Error> failure = MovieRewriter::rewriteAsPlainMovie(path)) {
                Log::format(QStringLiteral("Keeping the interrupted recording %@ as it is: %@"),
                    { path, failure->localizedDescription });
            } else {
                // The new file keeps the time of the last recorded second,
                // which the user is asked about.
                QFile rewritten(path);
                if (rewritten.open(QIODevice::ReadWrite))
                    rewritten.setFileTime(modified, QFileDevice::FileModificationTime);
            }
        }
        found << path;
    }
    return found;
}

} // namespace

InterruptedRecordings::InterruptedRecordings(QWidget *window, std::function<bool()> mayAsk, QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_mayAsk(std::move(mayAsk))
{ }

void InterruptedRecordings::lookFor(
    const QStringList &inUse, const std::optional<QVariantMap> &journal, const QVariantList &remoteCameras)
{
    if (m_looking || m_question)
        return;
    if (journal && offerServerRecording(*journal, remoteCameras))
        return;
    m_looking = true;
    const QString spool = LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::LocalRecordSpoolPath);
    QSet<QString> known = m_answered;
    for (const QString &path : inUse)
        known.insert(comparablePath(path));
    const QPointer<QObject> context(this);
    auto deliver = [context, this](const QStringList &found) {
        // Runs only while `context`, this object, is alive.
        deliverOnMainThread(context, [this, found] { didFind(found); });
    };
    runOnWorkerThread([spool, known, deliver] { deliver(findInterruptedRecordings(spool, known)); },
        [deliver](const QString &) { deliver({}); });
}

bool InterruptedRecordings::offerServerRecording(const QVariantMap &journal, const QVariantList &remoteCameras)
{
    const QString camera = journal.value(QStringLiteral("Camera")).toMap().value(QStringLiteral("name")).toString();
    const int state = journal.value(QStringLiteral("State")).toInt();
    // Starting, Recording or Paused: the server's camera was left with it.
    const bool begun = state >= 1 && state <= 3;
    bool inUse = false;
    for (const QVariant &entry : remoteCameras)
        inUse = inUse
            || (entry.toMap().value(QStringLiteral("name")).toString() == camera
                && entry.toMap().value(QStringLiteral("in_use")).toString() == QLatin1String("true"));
    if (!journal.value(QStringLiteral("Route")).toString().startsWith(QLatin1String("server camera")) || !begun
        || camera.isEmpty())
        return false;
    if (!inUse || !m_mayAsk()) {
        // The room stopped by itself meanwhile: nothing is left to take up.
        if (!inUse)
            emit discardRequested(journal);
        return false;
    }
    auto *question = new QMessageBox(m_window);
    m_question = question;
    question->setObjectName(QStringLiteral("serverRecordingQuestion"));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setWindowModality(Qt::WindowModal);
    question->setIcon(QMessageBox::Question);
    question->setText(tr("“%1” is still recording. Continue, publish or discard it?").arg(camera));
    question->setInformativeText(tr("Lumex ended while this camera was recording for you; it has gone on since."));
    QPushButton *goOn = question->addButton(tr("Continue"), QMessageBox::AcceptRole);
    QPushButton *publish = question->addButton(tr("Publish…"), QMessageBox::ActionRole);
    QPushButton *discard = question->addButton(tr("Discard"), QMessageBox::DestructiveRole);
    question->setDefaultButton(goOn);
    question->setEscapeButton(goOn);
    question->setAccessibleName(question->text());
    question->setAccessibleDescription(question->informativeText());
    connect(question, &QMessageBox::finished, this, [this, question, journal, publish, discard] {
        m_question = nullptr;
        if (question->clickedButton() == discard)
            emit discardRequested(journal);
        else
            emit continueRequested(journal, question->clickedButton() == publish);
    });
    question->open();
    return true;
}

void InterruptedRecordings::didFind(const QStringList &paths)
{
    m_looking = false;
    m_found = paths;
    offerNext();
}

void InterruptedRecordings::offerNext()
{
    // Whatever the user began meanwhile goes first; the rest is offered
    // after the next sign-in.
    while (!m_found.isEmpty() && !m_question && m_mayAsk()) {
        const QString path = m_found.takeFirst();
        const QFileInfo movie(path);
        if (!movie.isFile() || m_answered.contains(path))
            continue;
        // The screen's and the camera's movie of one recording share their
        // time stamp: one recording to the user, offered once.
        QStringList paths { path };
        const QString name = movie.fileName();
        const QString screen = QStringLiteral("ScreenCapture-"), camera = QStringLiteral("LocalVideo-");
        // The screen's movie first, as the recording handed them over.
        if (name.startsWith(screen)) {
            if (const QString partner = movie.dir().filePath(camera + name.mid(screen.size()));
                m_found.removeAll(partner) > 0)
                paths.append(partner);
        } else if (name.startsWith(camera)) {
            if (const QString partner = movie.dir().filePath(screen + name.mid(camera.size()));
                m_found.removeAll(partner) > 0)
                paths.prepend(partner);
        }

        auto *question = new QMessageBox(m_window);
        m_question = question;
        question->setAttribute(Qt::WA_DeleteOnClose);
        question->setWindowModality(Qt::WindowModal);
        question->setIcon(QMessageBox::Question);
        question->setText(lxFormat(tr("Publish the recording interrupted on %@?"),
            { QLocale().toString(movie.lastModified(), QLocale::ShortFormat) }));
        question->setInformativeText(
            lxFormat(tr("Lumex or the computer stopped while this recording was made. If you do not publish it now, "
                        "it stays in %@."),
                { QDir::toNativeSeparators(movie.absolutePath()) }));
        QPushButton *publish = question->addButton(tr("Publish…"), QMessageBox::AcceptRole);
        question->setEscapeButton(question->addButton(tr("Not Now"), QMessageBox::RejectRole));
        question->setDefaultButton(publish);
        connect(question, &QMessageBox::finished, this,
            [this, question, publish, paths] { questionDidEnd(paths, question->clickedButton() == publish); });
        question->open();
        return;
    }
}

void InterruptedRecordings::questionDidEnd(const QStringList &paths, bool publish)
{
    m_question = nullptr; // closed, and deleted once its signal is done
    for (const QString &path : paths)
        m_answered.insert(path);
    const QString &path = paths.first();
    if (!publish) {
        // The file stays where it is; the next run asks again.
        offerNext();
        return;
    }
    m_found.clear();
    const QFileInfo movie(path);
    if (!movie.isFile() || !m_mayAsk())
        return;
    // What is known of the recording's time travels with it: its name holds
    // the start, its last write the interruption.
    const QDateTime started = QDateTime::fromString(
        movie.completeBaseName().section(QLatin1Char('-'), 1), QStringLiteral("yyyy-MM-dd-HHmmss"));
    emit publishRequested(paths, started, movie.lastModified());
}
