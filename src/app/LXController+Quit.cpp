#include "LXController.h"

#include "LXMainWindow.h"
#include "Log.h"
#include "RecordingJournal.h"
#include "Sheets.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

bool LXController::applicationShouldTerminateAfterLastWindowClosed() const
{
    const bool panelVisible = m_loginPanel && m_loginPanel->loginPanel()->isVisible();
    return !panelVisible && !m_inBetweenMainWindowAndLoginPanel;
}

LXController::TerminateReply LXController::applicationShouldTerminate()
{
    if (!hasBegunRecording())
        return TerminateReply::Now;
    if (m_quitSheet)
        return TerminateReply::Later;
    QPushButton *quit = nullptr, *cancel = nullptr;
    QMessageBox *sheet = Sheets::deletionQuestion(
        m_window.get(), tr("Do you want to delete the recording and Quit?"), &quit, tr("Quit"), &cancel);
    m_quitSheet = sheet;
    cancel->setAccessibleDescription(tr("Keeps Lumex running with the recording"));
    quit->setAccessibleDescription(tr("Deletes the recording and quits Lumex"));
    sheet->setDefaultButton(cancel);
    connect(sheet, &QMessageBox::finished, this, [this, sheet, quit] {
        // The alternate button answers 0, as the platform's sheets did.
        quitWarningSheetDidEnd(sheet->clickedButton() == quit ? 0 : 1);
    });
    sheet->open();
    return TerminateReply::Later;
}

void LXController::quitWarningSheetDidEnd(int returnCode)
{
    if (returnCode != 0)
        return; // Cancel: keep running, the recording stays as it is
    m_journal->discard();
    if (!m_route) {
        emit terminateRequested();
        return;
    }
    // Ending the process at once would end the recording before the agent,
    // the recorder or the server heard of the cancel, leaving a recording
    // nobody owns; so the quit follows the cancel's answer, or a few seconds.
    auto done = std::make_shared<bool>(false);
    QPointer<LXController> self(this);
    auto finish = [self, done] {
        if (*done || !self)
            return;
        *done = true;
        emit self->terminateRequested();
    };
    m_route->discardForQuit([self, finish](const std::optional<Error> &error) {
        if (self && error)
            Log::format(
                QStringLiteral("Cancelling the recording while quitting failed: %@"), { describeError(*error) });
        finish();
    });
    QTimer::singleShot(kQuitCancelTimeoutMs, this, finish);
}

void LXController::requestQuit()
{
    if (applicationShouldTerminate() == TerminateReply::Now)
        emit terminateRequested();
}
