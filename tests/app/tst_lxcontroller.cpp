#include "CameraConfigController.h"
#include "LXController.h"
#include "LXDefaultsKeys.h"
#include "LXMainWindow.h"
#include "LXNotificationCenter.h"
#include "LXProgressSpinner.h"
#include "LXUserDefaults.h"
#include "LXWorkflowMenu.h"
#include "LocalAgentTask.h"
#include "Log.h"
#include "PreferencesController.h"
#include "RecordingGuard.h"
#include "ReviewPlayer.h"
#include "TransfersController.h"

#include "SimSandbox.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

#include <pwd.h>
#include <unistd.h>

namespace {

using State = LXController::State;
using Mode = LXController::Mode;

// The message box currently shown on `parent`, if any.
QMessageBox *alertOn(QWidget *parent)
{
    for (QMessageBox *box : parent->findChildren<QMessageBox *>()) {
        if (box->isVisible())
            return box;
    }
    return nullptr;
}

// Counts paint events of a widget.
class PaintCounter final : public QObject
{
public:
    int paints = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

} // namespace

class TestLXController : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimSandbox> m_sim;
    std::unique_ptr<LXController> m_controller;

    void signIn(const QString &password)
    {
        LXUserLoginPanelController *panel = m_controller->loginPanel();
        QVERIFY(panel);
        QVERIFY(panel->loginPanel()->isVisible());
        panel->hostnameField()->setText(SimSandbox::kServerHost);
        panel->usernameField()->setText(QStringLiteral("demo"));
        QVERIFY(!panel->connectButton()->isEnabled()); // no password yet
        panel->passwordField()->setText(password);
        QVERIFY(panel->connectButton()->isEnabled());
        QTest::mouseClick(panel->connectButton(), Qt::LeftButton);
    }

    // A control of the main window, found as tests and screen readers find it.
    template<typename T = QWidget> T *child(const char *name) const
    {
        return m_controller->window()->findChild<T *>(QLatin1String(name));
    }

    void confirmQuit()
    {
        QVERIFY(m_controller->quitWarningSheet());
        for (QAbstractButton *b : m_controller->quitWarningSheet()->buttons()) {
            if (b->text() == QStringLiteral("Quit"))
                QTest::mouseClick(b, Qt::LeftButton);
        }
    }

private slots:
    void reviewMarksBelongToOneRecording()
    {
        ReviewPlayer review;
        const QStringList first { QStringLiteral("/nowhere/LocalVideo-1.mov") };
        review.open(first, true, 10'000'000'000);
        review.setMarks(2'000'000'000, 7'000'000'000);
        review.open(first, true, 12'000'000'000); // back to the recording and here again
        QCOMPARE(review.marks(), (std::pair<qint64, qint64> { 2'000'000'000, 7'000'000'000 }));
        review.open({ QStringLiteral("/nowhere/LocalVideo-2.mov") }, true, 10'000'000'000);
        QVERIFY(!review.marks());
        review.setMarks(1'000'000'000, 3'000'000'000);
        review.open(first, false); // not trimmable: published whole
        QVERIFY(!review.marks());
    }
    void initTestCase()
    {
        // The local agent records from a test microphone, never from hardware.
        qputenv("LUMEX_CAPTURE_HARDWARE", "0");
        qputenv("LUMEX_TEST_DEVICES", "microphone:mic1");
        m_sim = std::make_unique<SimSandbox>();
        QVERIFY(m_sim->installTools());
    }

    void init()
    {
        m_sim->clearFaults();
        LXUserDefaults::standard().removeObject(LXDefaultsKeys::PreviousWorkflowChosen.key);
        m_controller = std::make_unique<LXController>();
        m_controller->awakeFromNib();
    }

    void cleanup()
    {
        m_controller.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void startsIdleWithTheLoginPanelAndNoSource()
    {
        QCOMPARE(m_controller->state(), State::Idle);
        QCOMPARE(m_controller->mode(), Mode::NoSource);
        QCOMPARE(m_controller->currentModeString(), QStringLiteral(""));
        QCOMPARE(m_controller->window()->currentPage(), LXMainWindow::Page::SourceChooser);
        QVERIFY(m_controller->loginPanel()->loginPanel()->isVisible());
        QCOMPARE(LXUserDefaults::standard().integerForKey(LXDefaultsKeys::GlobalKeyCode.key), 120);
        QCOMPARE(LXUserDefaults::standard().integerForKey(LXDefaultsKeys::GlobalKeyModifiers.key), 0x100000);
    }

    void offersTheSystemLoginNameWhenNoneIsStored()
    {
        LXUserDefaults::standard().removeObject(LXDefaultsKeys::LoginPanelLastLoginUsername.key);
        const QByteArray user = qgetenv("USER");
        qunsetenv("USER"); // the name must come from the password database
        LXUserLoginPanelController panel;
        qputenv("USER", user);
        const passwd *entry = ::getpwuid(::getuid());
        QVERIFY(entry);
        QCOMPARE(panel.usernameField()->text(), QString::fromLocal8Bit(entry->pw_name));
        QVERIFY(panel.passwordField()->text().isEmpty());
        QVERIFY(!panel.connectButton()->isEnabled());
    }

    void goodLoginConnectsWithWorkflowsInServerOrder()
    {
        QVariantList notices;
        QObject observer;
        LXNotificationCenter::defaultCenter().addObserver(
            &observer, kUserDidConnectNotice, [&](const QVariant &o) { notices << o; });
        signIn(QStringLiteral("lumex"));
        // Posted once, and without the credentials: the password never travels in a notice.
        QTRY_COMPARE_WITH_TIMEOUT(notices.size(), 1, 10000);
        QVERIFY(!notices.first().isValid());
        QCOMPARE(m_controller->credentials().user, QStringLiteral("demo"));
        QVERIFY(!m_controller->loginPanel());

        // The simulator's own list, as the server keeps it.
        QStringList serverTitles;
        const QVariant seeded = PropertyList::readFile(m_sim->state(QStringLiteral("workflows.plist")));
        for (const QVariant &w : seeded.toMap().value(QStringLiteral("workflows")).toList())
            serverTitles << w.toMap().value(QStringLiteral("title")).toString();
        QVERIFY(serverTitles.size() >= 3);
        QStringList menuTitles;
        const QList<QAction *> items = child<QMenu>("workflowMenu")->actions();
        for (QAction *a : items)
            menuTitles << a->text();
        QStringList expected;
        for (const QString &t : serverTitles)
            expected << t.split(LXWorkflowMenu::kSeparator).first();
        QCOMPARE(menuTitles, expected); // server order, duplicates kept
        QVERIFY(expected.count(QStringLiteral("Publish to Course Site")) == 2);

        // A fresh job with the first workflow, the credentials kept, timers running.
        QCOMPARE(m_controller->job()->workflow().value(QStringLiteral("title")).toString(), serverTitles.first());
        QCOMPARE(m_controller->server()->job(), m_controller->job());
        items.last()->trigger(); // an item chooses the workflow at its place in the server's list
        QCOMPARE(m_controller->job()->workflow(), m_controller->workflows().last().toMap());
        QCOMPARE(child<QPushButton>("workflowPopUpButton")->text(), expected.last());
        QVERIFY(!m_controller->remoteCameras().isEmpty());
        QVERIFY(m_controller->remoteCameraSnapshotRefreshTimer());
        QVERIFY(m_controller->remoteCameraSnapshotRefreshTimer()->isActive());
        QCOMPARE(m_controller->selectedRemoteCameraPreviewUpdateTimer()->interval(), 5000);
        QVERIFY(child("videoTile")->isEnabled());
        QCOMPARE(LXUserDefaults::standard().stringForKey(LXDefaultsKeys::LoginPanelLastLoginHost.key),
            SimSandbox::kServerHost);
    }

    void wrongPasswordShowsAuthenticationFailedOnThePanel()
    {
        signIn(QStringLiteral("not-the-password"));
        LXUserLoginPanelController *panel = m_controller->loginPanel();
        QVERIFY(!panel->hostnameField()->isEnabled());
        QVERIFY(panel->progressIndicator()->isAnimating());
        QTRY_VERIFY_WITH_TIMEOUT(alertOn(panel->loginPanel()), 10000);
        QMessageBox *alert = alertOn(panel->loginPanel());
        QCOMPARE(alert->text(), QStringLiteral("Authentication Failed"));
        QVERIFY(alert->informativeText().startsWith(QStringLiteral("The username or password you entered")));
        QTest::mouseClick(alert->button(QMessageBox::Ok), Qt::LeftButton);
        QTRY_VERIFY(!alertOn(panel->loginPanel()));
        QVERIFY(panel->hostnameField()->isEnabled());
        QVERIFY(panel->passwordField()->isEnabled());
        QVERIFY(panel->connectButton()->isEnabled());
        QVERIFY(!panel->progressIndicator()->isAnimating());
        QVERIFY(panel->loginPanel()->isVisible());
    }

    void failingCameraQueryAlertsOnMainWindowWithoutConnecting()
    {
        m_sim->setFaults({ { QStringLiteral("--listcameras"),
            QVariantMap { { QStringLiteral("status"), 1 },
                { QStringLiteral("stderr"), QStringLiteral("camera registry offline") } } } });
        bool connected = false;
        QObject observer;
        LXNotificationCenter::defaultCenter().addObserver(
            &observer, kUserDidConnectNotice, [&](const QVariant &) { connected = true; });
        Log::Capture log;
        signIn(QStringLiteral("lumex"));
        QTRY_VERIFY_WITH_TIMEOUT(alertOn(m_controller->window()), 10000);
        QCOMPARE(alertOn(m_controller->window())->text(), QStringLiteral("Server communication error."));
        QVERIFY(!m_controller->loginPanel());
        QVERIFY(!connected);
        QVERIFY(!m_controller->remoteCameraSnapshotRefreshTimer());
        QVERIFY(log.contains(QStringLiteral("OrvaneServerInterface error: camera registry offline")));
    }

    void unreadableWorkflowListIsAFailureOfItsOwn()
    {
        m_sim->setFaults(
            { { QStringLiteral("--listworkflows"), QVariantMap { { QStringLiteral("no_plist"), true } } } });
        signIn(QStringLiteral("lumex"));
        LXUserLoginPanelController *panel = m_controller->loginPanel();
        QTRY_VERIFY_WITH_TIMEOUT(alertOn(panel->loginPanel()), 10000);
        QMessageBox *alert = alertOn(panel->loginPanel());
        QCOMPARE(alert->text(), QStringLiteral("Server communication error."));
        QCOMPARE(alert->detailedText(), QStringLiteral("The server's list of workflows could not be read."));
        alert->accept();
        QTRY_VERIFY(panel->connectButton()->isEnabled());
    }

    void hangingServerNeverFreezesTheWindowAndCancelCloses()
    {
        m_sim->setFaults({ { QStringLiteral("--listworkflows"), QVariantMap { { QStringLiteral("hang"), 10.0 } } } });
        LXUserLoginPanelController *panel = m_controller->loginPanel();
        PaintCounter counter;
        panel->loginPanel()->installEventFilter(&counter);
        int ticks = 0;
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, [&] { ++ticks; });
        ticker.start(50);
        signIn(QStringLiteral("lumex"));
        const int paintsBefore = counter.paints;
        for (int i = 0; i < 10; ++i) {
            panel->loginPanel()->update();
            QTest::qWait(100);
        }
        QVERIFY2(ticks >= 10, qPrintable(QStringLiteral("ticks: %1").arg(ticks)));
        QVERIFY(counter.paints > paintsBefore);
        QTest::mouseClick(panel->cancelButton(), Qt::LeftButton);
        QVERIFY(!panel->loginPanel()->isVisible());
        QVERIFY(panel->passwordField()->text().isEmpty());
    }

    void quitAsksOnlyOnceRecordingHasBegun_data()
    {
        QTest::addColumn<State>("state");
        QTest::addColumn<bool>("asks");
        QTest::newRow("idle") << State::Idle << false;
        QTest::newRow("starting") << State::Starting << true;
        QTest::newRow("recording") << State::Recording << true;
        QTest::newRow("paused") << State::Paused << true;
        QTest::newRow("submitted") << State::Submitted << false;
    }

    void quitAsksOnlyOnceRecordingHasBegun()
    {
        QFETCH(State, state);
        QFETCH(bool, asks);
        QSignalSpy terminate(m_controller.get(), &LXController::terminateRequested);
        m_controller->setState(state);
        m_controller->requestQuit();
        QCOMPARE(terminate.size(), asks ? 0 : 1);
        QCOMPARE(bool(m_controller->quitWarningSheet()), asks);
        if (!asks)
            return;
        QMessageBox *sheet = m_controller->quitWarningSheet();
        QCOMPARE(sheet->text(), QStringLiteral("Do you want to delete the recording and Quit?"));
        QVERIFY(!m_controller->canRecordOrPause()); // a sheet is attached
        // Cancel keeps everything as it was.
        QTest::mouseClick(sheet->defaultButton(), Qt::LeftButton);
        QTRY_VERIFY(!m_controller->quitWarningSheet());
        QCOMPARE(terminate.size(), 0);
        QCOMPARE(m_controller->state(), state);
        // Quit ends the application.
        m_controller->requestQuit();
        confirmQuit();
        // The quit waits for the cancel to be answered, then goes ahead once.
        QTRY_COMPARE_WITH_TIMEOUT(terminate.size(), 1, LXController::kQuitCancelTimeoutMs + 2000);
        QTest::qWait(100);
        QCOMPARE(terminate.size(), 1);
    }

    void quitCancelsTheRecordingBeforeTheProcessEnds_data()
    {
        QTest::addColumn<bool>("local");
        QTest::newRow("remote camera") << false;
        QTest::newRow("local agent") << true;
    }

    void quitCancelsTheRecordingBeforeTheProcessEnds()
    {
        QFETCH(bool, local);
        signIn(QStringLiteral("lumex"));
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->remoteCameraSnapshotRefreshTimer(), 10000);
        // Started through the server interface, so the simulator or the agent really records.
        const std::shared_ptr<PodcastJob> job = m_controller->job();
        const QString camera = QStringLiteral("Studio 2");
        m_controller->sourceClicked(local ? Mode::Audio : Mode::Video);
        m_controller->setLocalRecordingChosen(local);
        m_controller->setJobCamera({ { QStringLiteral("name"), camera } });
        m_controller->setJobLocalAudioDeviceName(QStringLiteral("test:mic1"));
        Error error;
        const auto start
            = local ? &OrvaneServerInterface::startLocalAudioJob : &OrvaneServerInterface::startRemoteVideoJob;
        QCOMPARE((m_controller->server().get()->*start)(job.get(), &error), 0);
        const std::shared_ptr<LocalAgentTask> agent = job->localAgentTask();
        // What the recording tool has heard of the recording.
        auto heard = [&] {
            if (!local) {
                const QVariant recordings = PropertyList::readFile(m_sim->state(QStringLiteral("recordings.plist")));
                return recordings.toMap().value(camera).toMap().value(QStringLiteral("state")).toString();
            }
            if (job->localAgentTask())
                return QString::fromLatin1(agent->isRunning() ? "recording" : "ended");
            return QString::fromLatin1(QFile::exists(job->movieFilePaths()->last()) ? "stopped" : "cancelled");
        };
        QCOMPARE(heard(), QStringLiteral("recording"));
        m_controller->setState(State::Recording);

        QString heardAtEnd;
        connect(m_controller.get(), &LXController::terminateRequested, this, [&] { heardAtEnd = heard(); });
        QSignalSpy terminate(m_controller.get(), &LXController::terminateRequested);
        Log::Capture log;
        m_controller->requestQuit();
        confirmQuit();
        QTRY_COMPARE_WITH_TIMEOUT(terminate.size(), 1, LXController::kQuitCancelTimeoutMs + 2000);
        QCOMPARE(heardAtEnd, local ? QStringLiteral("cancelled") : QStringLiteral("idle"));
        QVERIFY(log.lines().filter(QStringLiteral("while quitting failed")).isEmpty());
        if (local) { // only SIGTERM makes the agent finish with status 0
            QTRY_VERIFY_WITH_TIMEOUT(!agent->isRunning(), 20000);
            QCOMPARE(agent->terminationStatus(), 0);
        }
    }

    void closingTheWindowQuitsOnlyWithoutThePanel()
    {
        QSignalSpy terminate(m_controller.get(), &LXController::terminateRequested);
        QVERIFY(!m_controller->applicationShouldTerminateAfterLastWindowClosed()); // the panel is up
        m_controller->window()->close();
        QCOMPARE(terminate.size(), 0);
        m_controller->loginPanel()->doCancel();
        QVERIFY(m_controller->applicationShouldTerminateAfterLastWindowClosed());
        QTRY_COMPARE(terminate.size(), 1); // nothing is left on screen: the application ends
        terminate.clear();
        // With another window still open, closing the main window only hides it.
        m_controller->window()->show();
        m_controller->showTransfersWindow();
        m_controller->window()->close();
        QTest::qWait(50);
        QCOMPARE(terminate.size(), 0);
        QVERIFY(!m_controller->window()->isVisible());
        m_controller->transfersController()->window()->close();
        QTRY_COMPARE(terminate.size(), 1);
    }

    void alertsNameTheCause_data()
    {
        QTest::addColumn<QString>("domain");
        QTest::addColumn<qint64>("code");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("auth in any domain")
            << QStringLiteral("elsewhere") << qint64(26) << QString() << QStringLiteral("Authentication Failed");
        QTest::newRow("server failure") << kServerInterfaceErrorDomain << qint64(1) << QStringLiteral("x")
                                        << QStringLiteral("Server communication error.");
        QTest::newRow("local capture code 1")
            << kLumexErrorDomain << qint64(1) << QStringLiteral("x") << QStringLiteral("Server communication error.");
        QTest::newRow("capture layer") << QStringLiteral("gst-resource-error-quark") << qint64(3)
                                       << QStringLiteral("Could not open the camera.")
                                       << QStringLiteral("Could not open the camera.");
        QTest::newRow("capture layer, auth code") << QStringLiteral("gst-resource-error-quark") << qint64(26)
                                                  << QStringLiteral("busy") << QStringLiteral("Authentication Failed");
    }

    void alertsNameTheCause()
    {
        QFETCH(QString, domain);
        QFETCH(qint64, code);
        QFETCH(QString, text);
        QFETCH(QString, shown);
        m_controller->loginPanel()->doCancel();
        m_controller->showLoginPanel();
        // With a login panel the alert goes there; without one, to the window.
        m_controller->alertUserToError(Error { domain, code, text });
        QMessageBox *alert = alertOn(m_controller->loginPanel()->loginPanel());
        QVERIFY(alert);
        QCOMPARE(alert->text(), shown);
        QVERIFY(!alertOn(m_controller->window()));
    }

    void derivedPropertiesFollowStateAndMode()
    {
        // The dependency table: which announcements a change of each key makes (in name order).
        const QHash<QString, QStringList> dependents {
            { "state", { "canRecordOrPause", "hasBegunRecording", "recordOrPauseImage", "recordPauseMenuTitle" } },
            { "mode",
                { "audioModeIsSelected", "canBeginRecording", "canRecordOrPause", "isSmallerPreviewHidden",
                    "microphoneListShouldBeHidden", "recordOrPauseImage", "recordPauseMenuTitle",
                    "screenModeIsSelected", "videoModeIsSelected" } },
            { "localRecordingChosen", { "microphoneListShouldBeHidden" } },
        };
        LXController *c = m_controller.get();
        std::map<QString, std::unique_ptr<QSignalSpy>> spies; // every derived property appears in the table
        for (const QString &name : dependents.value("state") + dependents.value("mode")) {
            const QMetaProperty p = c->metaObject()->property(c->metaObject()->indexOfProperty(name.toLatin1()));
            spies[name] = std::make_unique<QSignalSpy>(c, p.notifySignal());
        }
        auto announced = [&] {
            QStringList names;
            for (auto &[name, spy] : spies) {
                if (!spy->isEmpty())
                    names << name;
                spy->clear();
            }
            return names;
        };

        const QList<State> states { State::Idle, State::Starting, State::Recording, State::Paused, State::Submitted };
        const QList<Mode> modes { Mode::Video, Mode::Audio, Mode::Screen, Mode::File, Mode::NoSource };
        for (Mode mode : modes) {
            c->setMode(mode);
            announced();
            for (State state : states) {
                if (c->state() != state) {
                    c->setState(state);
                    QCOMPARE(announced(), dependents.value("state"));
                }
                const bool running = state == State::Starting || state == State::Recording;
                const bool soundOrScreen = mode == Mode::Audio || mode == Mode::Screen;
                const char *image = mode == Mode::Audio ? "RecordAudio"
                    : soundOrScreen                     ? "RecordScreen"
                                                        : "RecordVideo";
                const char *title = state == State::Paused ? "Resume Recording" : "Record Podcast";
                QCOMPARE(c->hasBegunRecording(), running || state == State::Paused);
                QCOMPARE(c->recordPauseMenuTitle(), QString(running ? "Pause Recording" : title));
                QCOMPARE(c->recordOrPauseImage(), QString(running ? "PausedOff" : image));
                QCOMPARE(c->videoModeIsSelected(), mode == Mode::Video);
                QCOMPARE(c->audioModeIsSelected(), mode == Mode::Audio);
                QCOMPARE(c->screenModeIsSelected(), mode == Mode::Screen);
                QCOMPARE(c->isSmallerPreviewHidden(), soundOrScreen);
                QCOMPARE(c->microphoneListShouldBeHidden(), soundOrScreen);
                QVERIFY(!c->canRecordOrPause()); // the source chooser is the current page
            }
            c->setState(State::Idle);
            announced();
            const Mode next = modes.at((modes.indexOf(mode) + 1) % modes.size());
            c->setMode(next);
            QCOMPARE(announced(), dependents.value("mode"));
            c->setMode(mode);
            announced();

            const bool hiddenBefore = c->microphoneListShouldBeHidden();
            c->setLocalRecordingChosen(!c->localRecordingChosen());
            QCOMPARE(announced(), dependents.value("localRecordingChosen"));
            QCOMPARE(c->microphoneListShouldBeHidden(), hiddenBefore); // announced, yet unchanged
            c->setLocalRecordingChosen(false);
            announced();
        }

        // canBeginRecording follows the job's camera and audio device.
        c->setMode(Mode::Video);
        c->resetJobAndRecordingState();
        c->setMode(Mode::Video);
        QVERIFY(!c->canBeginRecording());
        announced();
        c->setJobCamera({ { QStringLiteral("name"), QStringLiteral("Studio 2") } });
        QCOMPARE(announced(), QStringList { "canBeginRecording" });
        QVERIFY(c->canBeginRecording());
        c->setMode(Mode::Audio);
        QVERIFY(c->canBeginRecording()); // remote audio uses the camera
        c->setLocalRecordingChosen(true);
        QVERIFY(!c->canBeginRecording());
        c->setJobLocalAudioDeviceName(QStringLiteral("mic-1"));
        QVERIFY(c->canBeginRecording());
        c->setMode(Mode::Screen);
        QVERIFY(c->canBeginRecording());
        c->setMode(Mode::File);
        QVERIFY(!c->canBeginRecording());
        announced();
        c->setJob(std::make_shared<PodcastJob>());
        QCOMPARE(announced(), QStringList { "canBeginRecording" });

        // On the record page, without a sheet, recording is possible except while starting.
        c->sourceClicked(Mode::Video);
        QVERIFY(c->canRecordOrPause());
        c->setState(State::Starting);
        QVERIFY(!c->canRecordOrPause());
    }

    void resetPicksTheRememberedWorkflowLastMatchWinning()
    {
        signIn(QStringLiteral("lumex"));
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->remoteCameraSnapshotRefreshTimer(), 10000);
        LXUserDefaults::standard().setObject(
            QStringLiteral("Publish to Course Site"), LXDefaultsKeys::PreviousWorkflowChosen.key);
        // A source tile opens the record page; Back returns without a source.
        QTest::mouseClick(child("videoTile"), Qt::LeftButton);
        QCOMPARE(m_controller->window()->currentPage(), LXMainWindow::Page::Record);
        QVERIFY(child<QAction>("recordPauseMenuItem")->isEnabled());
        QCOMPARE(child<QPushButton>("startOver")->text(), QStringLiteral("Back"));
        QTest::mouseClick(child("startOver"), Qt::LeftButton);
        QCOMPARE(m_controller->window()->currentPage(), LXMainWindow::Page::SourceChooser);
        QCOMPARE(m_controller->mode(), Mode::NoSource);
        QVERIFY(!child("recordPauseButton")->isVisibleTo(m_controller->window()));
        m_controller->resetJobAndRecordingState();
        QCOMPARE(
            m_controller->job()->workflow().value(QStringLiteral("name")).toString(), QStringLiteral("course-site-hd"));
        // What the pop-up shows is where the recording goes.
        QCOMPARE(child<QPushButton>("workflowPopUpButton")->text(), QStringLiteral("Publish to Course Site"));
        QVERIFY(!child<QAction>("signInMenuItem")->isEnabled()); // no second sign-in mid-session
        // A reset stops the camera timers until the next sign-in.
        QVERIFY(!m_controller->remoteCameraSnapshotRefreshTimer());
        LXUserDefaults::standard().setObject(
            QStringLiteral("No Such Workflow"), LXDefaultsKeys::PreviousWorkflowChosen.key);
        m_controller->resetJobAndRecordingState();
        QCOMPARE(m_controller->job()->workflow().value(QStringLiteral("name")).toString(),
            QStringLiteral("lecture-capture"));
    }

    void closedTransfersWindowCannotBeShownAgain()
    {
        m_controller->showTransfersWindow();
        QWidget *window = m_controller->transfersController()->window();
        QVERIFY(window->isVisible());
        window->close();
        QVERIFY(!m_controller->transfersController());
        m_controller->showTransfersWindow(); // goes to no one
        QVERIFY(!m_controller->transfersController());

        m_controller->showPreferencesWindow();
        QPointer<PreferencesController> prefs = m_controller->preferencesController();
        m_controller->showPreferencesWindow();
        QCOMPARE(m_controller->preferencesController(), prefs.data()); // kept for the run

        m_controller->configureLocalCamera();
        QVERIFY(m_controller->cameraConfigController());
        m_controller->cameraConfigController()->window()->close();
        QVERIFY(!m_controller->cameraConfigController());
    }

    // The guard's judgement over time, on counted streams. Each step is
    // "MS:STATE:DB:CLIPPED%:FRAME" (R recording, P paused, I no recording;
    // FRAME 1 for a new picture); the conditions raised after the last step.
    void guardJudgesEachStretchOfRecording_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QStringList>("raised");
        const QString quiet = "0:R:-60:0:1 5000:R:-60:0:1 ";
        QTest::newRow("quiet for less than 10 s") << quiet + "9750:R:-60:0:1" << QStringList();
        QTest::newRow("quiet for 10 s") << quiet + "10000:R:-60:0:1" << QStringList { "silence" };
        QTest::newRow("sound again clears") << quiet + "10000:R:-60:0:1 10250:R:-20:0:1" << QStringList();
        QTest::newRow("a pause is no silence")
            << quiet + "6000:P:-60:0:1 20000:P:-60:0:1 20250:R:-60:0:1 30000:R:-60:0:1" << QStringList();
        QTest::newRow("quiet 10 s after resuming")
            << quiet + "6000:P:-60:0:1 20250:R:-60:0:1 30250:R:-60:0:1" << QStringList { "silence" };
        QTest::newRow("sound clears while paused") << quiet + "10000:R:-60:0:1 11000:P:-20:0:1" << QStringList();
        QTest::newRow("clipping just under 1%") << "0:R:-10:0:1 1000:R:-10:0.9:1 2000:R:-10:0.9:1" << QStringList();
        QTest::newRow("clipping over 1%")
            << "0:R:-10:0:1 1000:R:-10:1.2:1 2000:R:-10:1.2:1" << QStringList { "clipping" };
        QTest::newRow("clipping ends with its window")
            << "0:R:-10:0:1 1000:R:-10:5:1 2000:R:-10:0:1 3250:R:-10:0:1" << QStringList();
        QTest::newRow("picture still for less than 3 s") << "0:R:-10:0:1 2750:R:-10:0:0" << QStringList();
        QTest::newRow("picture still for 3 s") << "0:R:-10:0:1 3000:R:-10:0:0" << QStringList { "frozen" };
        QTest::newRow("a new picture clears") << "0:R:-10:0:1 3000:R:-10:0:0 3250:R:-10:0:1" << QStringList();
        QTest::newRow("still since before the recording")
            << "0:I:-60:0:1 5000:R:-60:0:0 7750:R:-60:0:0 8000:R:-60:0:0" << QStringList { "frozen" };
        QTest::newRow("the recording's end clears all") << quiet + "10000:R:-60:5:0 11000:I:-60:0:0" << QStringList();
    }
    void guardJudgesEachStretchOfRecording()
    {
        QFETCH(QString, steps);
        QFETCH(QStringList, raised);
        RecordingGuard guard;
        RecordingGuard::Reading reading;
        reading.sound = std::make_shared<CaptureConnection>(nullptr, MediaType::Sound, "audio");
        reading.picture = std::make_shared<CaptureConnection>(nullptr, MediaType::Video, "video");
        qint64 last = 0;
        for (const QString &step : steps.split(' ')) {
            const QStringList f = step.split(':');
            const qint64 now = f[0].toLongLong();
            reading.begun = f[1] != "I";
            reading.recording = f[1] == "R";
            reading.sound->setAveragePowerLevel(f[2].toFloat());
            // Counted at 48,000 samples a second since the step before.
            const quint64 samples = quint64(now - last) * 48;
            reading.sound->health()->samples += samples;
            reading.sound->health()->clippedSamples += quint64(double(samples) * f[3].toDouble() / 100);
            if (f[4] == "1")
                reading.picture->health()->lastChangedFrameMs = now;
            guard.check(reading, now);
            last = now;
        }
        QStringList actual = guard.raisedConditions();
        actual.sort();
        QCOMPARE(actual, raised);
    }

    void workflowMenuSplitsTitleAndToolTip()
    {
        LXWorkflowMenu menu;
        QAction *plain = menu.insertItemWithTitle(QStringLiteral("Plain"), 0);
        QAction *split = menu.insertItemWithTitle(QStringLiteral("T\n$$$$\nD"), 0);
        QAction *nested = menu.insertItemWithTitle(QStringLiteral("A\n$$$$\nB\n$$$$\nC"), 0);
        QAction *first = menu.insertItemWithTitle(QStringLiteral("First"), 0);
        QCOMPARE(split->text(), QStringLiteral("T"));
        QCOMPARE(split->toolTip(), QStringLiteral("D"));
        QCOMPARE(nested->toolTip(), QStringLiteral("B"));
        // Items with the separator go to the end whatever index was asked.
        QCOMPARE(menu.actions(), (QList<QAction *> { first, plain, split, nested }));
    }
};

QTEST_MAIN(TestLXController)
#include "tst_lxcontroller.moc"
