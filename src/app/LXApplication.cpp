#include "LXApplication.h"

#include "GlobalHotKey.h"
#include "LXNotificationCenter.h"
#include "Log.h"

#include <QLocale>
#include <QPalette>
#include <QStyleFactory>
#include <QTranslator>

#include <exception>

LXApplication::LXApplication(int &argc, char **argv)
    : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("Lumex"));
    setApplicationDisplayName(QStringLiteral("Lumex"));
    setOrganizationDomain(QStringLiteral("tarn.com"));
    setDesktopFileName(QStringLiteral("com.tarn.Lumex"));
    setQuitOnLastWindowClosed(false); // the controller decides
    applyLook(*this);
    // The English texts are the keys and the fallback; a table for the
    // user's language replaces what it translates.
    auto *translator = new QTranslator(this);
    if (translator->load(QLocale(), QStringLiteral("lumex"), QStringLiteral("_"), QStringLiteral(":/translations")))
        installTranslator(translator);
    installNativeEventFilter(this);
}

bool LXApplication::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (GlobalHotKey::instance().hotKeyForNativeEvent(eventType, message) == GlobalHotKey::kRecordPauseHotKeyID)
        LXNotificationCenter::defaultCenter().post(
            kRecordPauseKeyShortcutTriggered, QVariant::fromValue<QObject *>(this));
    // The event goes on to its normal handling either way.
    return false;
}

bool LXApplication::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception &e) {
        Log::format(QStringLiteral("Uncaught exception in event handling: %@"), { QString::fromLocal8Bit(e.what()) });
    } catch (...) {
        Log::write(QStringLiteral("Uncaught exception in event handling"));
    }
    return false;
}

void LXApplication::applyLook(QApplication &app)
{
    app.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette p;
    const QColor window(38, 39, 44);
    const QColor base(26, 26, 30);
    const QColor text(232, 232, 236);
    const QColor accent(224, 62, 52);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::ToolTipBase, QColor(20, 20, 24));
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, QColor(140, 140, 148));
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, QColor(52, 53, 60));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, Qt::white);
    p.setColor(QPalette::Highlight, accent);
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(255, 120, 100));
    for (QPalette::ColorRole role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        p.setColor(QPalette::Disabled, role, QColor(120, 120, 128));
    app.setPalette(p);
}
