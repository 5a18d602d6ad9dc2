#include "RecordPage.h"

#include "AudioLevelMeter.h"
#include "CaptureVideoPreviewWidget.h"
#include "DisplaySession.h"
#include "LXDefaultsKeys.h"
#include "LXGlyphs.h"
#include "LXShortcutKeys.h"
#include "LXTimerBackgroundView.h"
#include "LXUserDefaults.h"
#include "PageWidgets.h"
#include "VKPopUpButton.h"

#include <QAccessible>
#include <QFontDatabase>
#include <QGraphicsOpacityEffect>
#include <QGridLayout>
#include <QImage>
#include <QPainter>
#include <QPropertyAnimation>
#include <QVBoxLayout>

using namespace PageWidgets;

RecordPage::RecordPage(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("previewRecordView"));
    auto *v = new QVBoxLayout(this);
    v->setContentsMargins(24, 18, 24, 18);
    v->setSpacing(10);

    m_banners = new QWidget(this);
    m_banners->setObjectName(QStringLiteral("banners"));
    auto *bannerLayout = new QVBoxLayout(m_banners);
    bannerLayout->setContentsMargins(0, 0, 0, 0);
    bannerLayout->setSpacing(6);
    m_banners->hide();
    v->addWidget(m_banners);

    auto *devices = new QHBoxLayout;
    m_cameras = named(new VKPopUpButton(this), "camerasPopUpButton", tr("Camera"));
    m_microphones = named(new VKPopUpButton(this), "microphonesPopUpButton", tr("Microphone"));
    devices->addWidget(m_cameras);
    devices->addWidget(m_microphones);
    m_levelMeter = named(new AudioLevelMeter(this), "microphoneLevelMeter", tr("Microphone level"));
    m_levelMeter->setFixedWidth(140);
    m_levelMeter->hide();
    devices->addWidget(m_levelMeter, 0, Qt::AlignVCenter);
    devices->addStretch(1);
    v->addLayout(devices);

    auto *stage = new QGridLayout;
    m_previewImage = named(new QLabel(this), "previewImage", tr("Preview"));
    m_previewImage->setAlignment(Qt::AlignCenter);
    m_previewImage->setMinimumSize(320, 200);
    m_previewImage->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_previewImage->setStyleSheet(
        QStringLiteral("background: #050506; border: 1px solid #2a2a2f; border-radius: 8px; color: #80808a;"));
    m_previewImage->setText(tr("No preview yet"));
    m_screenPreviewImage = named(new QLabel(this), "screenPreviewImage", tr("Screen preview"));
    m_screenPreviewImage->setAlignment(Qt::AlignCenter);
    m_screenPreviewImage->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_screenPreviewImage->hide();
    stage->addWidget(m_previewImage, 0, 0);
    stage->addWidget(m_screenPreviewImage, 0, 0);
    m_localPreview = named(new CaptureVideoPreviewWidget(this), "localVideoCaptureView", tr("Camera preview"));
    m_localPreview->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_localPreview->hide();
    stage->addWidget(m_localPreview, 0, 0);
    m_stage = stage;
    v->addLayout(stage, 1);

    auto *status = new QHBoxLayout;
    m_recordingState = named(new QLabel(this), "recordingState", QString());
    m_recordingState->setStyleSheet(QStringLiteral("color: #ff8a80; font-weight: 600;"));
    m_recordingState->hide();
    m_hotkeySuggestion = named(subtle(QString(), this), "hotkeySuggestion", QString());
    status->addWidget(m_recordingState);
    status->addWidget(m_hotkeySuggestion, 1);
    m_timeLeft = named(subtle(QString(), this), "timeLeft", QString());
    m_timeLeft->setWordWrap(false);
    m_timeLeft->hide();
    status->addWidget(m_timeLeft);
    auto *timerBox = new LXTimerBackgroundView(this);
    auto *timerLayout = new QHBoxLayout(timerBox);
    timerLayout->setContentsMargins(14, 4, 14, 4);
    // A label that shows a changing value is read by that value: a fixed
    // name would hide it, and the description says what it is.
    m_timer = named(new QLabel(QStringLiteral("00:00:00"), timerBox), "recordingTimer", QString());
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    mono.setPointSizeF(font().pointSizeF() * 1.6);
    m_timer->setFont(mono);
    m_timer->setStyleSheet(QStringLiteral("color: #f4f4f6;"));
    timerLayout->addWidget(m_timer);
    status->addWidget(timerBox);
    v->addLayout(status);

    describe(this,
        {
            { "camerasPopUpButton", tr("The camera to record from") },
            { "microphonesPopUpButton", tr("The microphone to record from") },
            { "microphoneLevelMeter", tr("How loud the chosen microphone is") },
            { "previewImage", tr("A recent picture from the remote camera") },
            { "screenPreviewImage", tr("A picture of the screen that is recorded") },
            { "localVideoCaptureView", tr("The live picture of the chosen camera") },
            { "recordingState", tr("Whether a recording is running or paused") },
            { "hotkeySuggestion", tr("The key that starts or pauses a recording from any application") },
            { "recordingTimer", tr("How long the recording has run") },
            { "timeLeft", tr("How much longer this disk can record") },
        });
}

void RecordPage::setDeviceMenus(QMenu *cameras, QMenu *microphones)
{
    m_cameras->setMenu(cameras);
    m_microphones->setMenu(microphones);
}

void RecordPage::setChosenCamera(const QString &title)
{
    m_cameras->setTitle(title);
}

void RecordPage::setChosenMicrophone(const QString &title)
{
    m_microphones->setTitle(title);
}

void RecordPage::setDevicePopUpsHidden(bool microphones, bool cameras)
{
    for (auto [popUp, hidden] : { std::pair { m_microphones, microphones }, std::pair { m_cameras, cameras } })
        popUp->setHidden(hidden || !popUp->menu() || popUp->menu()->isEmpty());
}

QWidget *RecordPage::cameraPopUp() const
{
    return m_cameras;
}

QWidget *RecordPage::microphonePopUp() const
{
    return m_microphones;
}

void RecordPage::setRemotePreview(const QImage &image)
{
    // The snapshot takes the place of the smaller preview, which video mode
    // otherwise hides; without one (a local device, a failed download)
    // nothing stale is left on the page.
    if (image.isNull()) {
        m_previewImage->setPixmap(QPixmap());
        m_previewImage->hide();
        return;
    }
    m_previewImage->show();
    const qreal ratio = m_previewImage->devicePixelRatioF();
    const QSize box = m_previewImage->contentsRect().size() * ratio;
    QPixmap pixmap = QPixmap::fromImage(image);
    if (!box.isEmpty())
        pixmap = pixmap.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    pixmap.setDevicePixelRatio(ratio);
    m_previewImage->setPixmap(pixmap);
}

void RecordPage::setScreenPreviewImage(const QImage &image)
{
    if (image.isNull()) {
        m_screenPreviewImage->clear();
        m_screenPreviewImage->hide();
        return;
    }
    const QSize room = size().expandedTo(QSize(480, 300)) * 0.9;
    m_screenPreviewImage->setPixmap(
        QPixmap::fromImage(image.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    m_screenPreviewImage->show();
}

void RecordPage::setHotkeySuggestion(const QString &text)
{
    m_hotkeySuggestion->setText(text);
}

void RecordPage::showLocalPreview(const std::shared_ptr<CaptureSession> &session)
{
    m_localPreview->setCaptureSession(session);
    m_localPreview->setVisible(bool(session));
    if (session)
        m_localPreview->raise();
}

void RecordPage::setMicrophoneLevelConnection(const CaptureConnectionPtr &connection)
{
    m_levelMeter->setConnection(connection);
    m_levelMeter->setVisible(bool(connection));
}

CaptureConnectionPtr RecordPage::microphoneLevelConnection() const
{
    return m_levelMeter->connection();
}

void RecordPage::setRecordingStateText(const QString &text)
{
    m_recordingState->setText(text);
}

void RecordPage::setRecordingStateVisible(bool visible, bool animated)
{
    auto *effect = qobject_cast<QGraphicsOpacityEffect *>(m_recordingState->graphicsEffect());
    if (visible || !animated || !m_recordingState->isVisible()) {
        if (effect)
            m_recordingState->setGraphicsEffect(nullptr);
        m_recordingState->setVisible(visible);
        return;
    }
    if (effect)
        return; // already fading
    effect = new QGraphicsOpacityEffect(m_recordingState);
    m_recordingState->setGraphicsEffect(effect);
    auto *fade = new QPropertyAnimation(effect, "opacity", effect);
    fade->setDuration(250);
    fade->setStartValue(1.0);
    fade->setEndValue(0.0);
    connect(fade, &QPropertyAnimation::finished, this, [this] {
        m_recordingState->hide();
        m_recordingState->setGraphicsEffect(nullptr);
    });
    fade->start();
}

void RecordPage::setTimerText(const QString &text)
{
    m_timer->setText(text.isNull() ? QStringLiteral("00:00:00") : text);
}

void RecordPage::setTimerTextHidden(bool hidden)
{
    m_timer->setStyleSheet(hidden ? QStringLiteral("color: transparent;") : QStringLiteral("color: #f4f4f6;"));
}

void RecordPage::suggestRecordPauseKey()
{
    if (DisplaySession::isWayland()) {
        setHotkeySuggestion(tr("Use the Recording menu to start or pause recording: this "
                               "desktop offers no key that works in any application."));
        return;
    }
    LXUserDefaults &defaults = LXUserDefaults::standard();
    const QString key = LXShortcutDisplayString(int(defaults.valueForLumexKey(LXDefaultsKeys::GlobalKeyCode)),
        quint32(defaults.valueForLumexKey(LXDefaultsKeys::GlobalKeyModifiers)));
    setHotkeySuggestion(tr("Press %1 in any application to start or pause recording.").arg(key));
}

void RecordPage::showSoundPicture()
{
    QImage image(640, 400, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(8, 8, 10));
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QRadialGradient glow(QPointF(320, 200), 220);
    glow.setColorAt(0, QColor(60, 62, 72));
    glow.setColorAt(1, QColor(8, 8, 10));
    p.fillRect(image.rect(), glow);
    LXGlyphs::draw(p, LXGlyphs::Glyph::Microphone, QRectF(230, 110, 180, 180), QColor(235, 235, 240));
    p.end();
    setScreenPreviewImage(image);
}

void RecordPage::showCaptureSession(const std::shared_ptr<CaptureSession> &session, bool inset)
{
    // Inset: the camera in a corner of the screen's picture, as the
    // recording's two movies will be shown side by side.
    if (inset) {
        m_localPreview->setFixedSize(224, 168);
        m_stage->setAlignment(m_localPreview, Qt::AlignRight | Qt::AlignBottom);
        m_localPreview->setContentsMargins(0, 0, 12, 12);
    } else {
        m_localPreview->setMinimumSize(0, 0);
        m_localPreview->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        m_stage->setAlignment(m_localPreview, Qt::Alignment());
    }
    showLocalPreview(session);
    for (const CaptureInputPtr &input : session->inputs())
        for (const CaptureConnectionPtr &connection : input->connections())
            if (connection->mediaType() == MediaType::Sound && connection->isEnabled())
                setMicrophoneLevelConnection(connection);
}

void RecordPage::showBanner(const QString &id, const QString &text)
{
    const QString name = QStringLiteral("banner-") + id;
    auto *banner = m_banners->findChild<QLabel *>(name);
    if (banner && banner->text() == text)
        return;
    if (!banner) {
        banner = new QLabel(m_banners);
        banner->setObjectName(name);
        banner->setWordWrap(true);
        banner->setTextInteractionFlags(Qt::TextSelectableByMouse);
        // Dark text on amber: 9.6:1, a warning that does not look like an error.
        banner->setStyleSheet(QStringLiteral(
            "background: #f5b942; color: #1b1400; border-radius: 6px; padding: 6px 10px; font-weight: 600;"));
        m_banners->layout()->addWidget(banner);
    }
    banner->setText(text);
    banner->setAccessibleName(text);
    banner->setAccessibleDescription(tr("A warning about the recording"));
    m_banners->show();
    // Screen readers announce an alert as it appears, wherever the focus is.
    QAccessibleEvent alert(banner, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void RecordPage::clearBanner(const QString &id)
{
    delete m_banners->findChild<QLabel *>(QStringLiteral("banner-") + id);
    m_banners->setVisible(!m_banners->findChildren<QLabel *>().isEmpty());
}

QString RecordPage::bannerText(const QString &id) const
{
    const auto *banner = m_banners->findChild<QLabel *>(QStringLiteral("banner-") + id);
    return banner ? banner->text() : QString();
}

void RecordPage::setTimeLeftText(const QString &text)
{
    m_timeLeft->setText(text);
    m_timeLeft->setVisible(!text.isEmpty());
}
