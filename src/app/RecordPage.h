#pragma once

#include "CaptureSession.h"

#include <QWidget>

class AudioLevelMeter;
class CaptureVideoPreviewWidget;
class QImage;
class QLabel;
class QMenu;
class VKPopUpButton;

// The second page: the chosen source's picture (a server camera's snapshot,
// this computer's camera live, the screen, or the picture of sound), the
// device pop-ups with the microphone's level, and the recording's state and
// time.
class RecordPage final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RecordPage)

public:
    explicit RecordPage(QWidget *parent = nullptr);

    // The device menus the pop-up buttons offer (the device chooser keeps
    // them) and the title each button shows for the chosen device.
    void setDeviceMenus(QMenu *cameras, QMenu *microphones);
    void setChosenCamera(const QString &title);
    void setChosenMicrophone(const QString &title);
    // An empty menu offers nothing to choose, so its pop-up stays hidden
    // whatever is asked here.
    void setDevicePopUpsHidden(bool microphones, bool cameras);
    QWidget *cameraPopUp() const;
    QWidget *microphonePopUp() const;

    // The snapshot of the chosen server camera; a null image hides it.
    void setRemotePreview(const QImage &image);
    // The screen or audio picture; null hides it.
    void setScreenPreviewImage(const QImage &image);
    void setHotkeySuggestion(const QString &text);
    // The key that records or pauses from any application, or where a
    // desktop offers none, the menu to use instead.
    void suggestRecordPauseKey();
    // The picture of sound: a large microphone on the dark stage.
    void showSoundPicture();
    // A local camera's live picture over the preview; null ends it.
    void showLocalPreview(const std::shared_ptr<CaptureSession> &session);
    // This computer's camera and microphone live: the picture and the level
    // of the session's sound.
    void showCaptureSession(const std::shared_ptr<CaptureSession> &session, bool inset = false);
    // A chosen microphone's level beside the devices; null hides the meter.
    void setMicrophoneLevelConnection(const CaptureConnectionPtr &connection);
    CaptureConnectionPtr microphoneLevelConnection() const;

    // A warning over the page while its cause lasts (a silent microphone, a
    // disk filling up), read out by screen readers as it appears; each kind
    // of warning is known by `id`, shown once, cleared by clearBanner.
    void showBanner(const QString &id, const QString &text);
    void clearBanner(const QString &id);
    QString bannerText(const QString &id) const;
    // How much more this disk holds ("About 3 hours of recording left…");
    // an empty text hides the line.
    void setTimeLeftText(const QString &text);

    void setRecordingStateText(const QString &text);
    // Hiding `animated` fades the text out first.
    void setRecordingStateVisible(bool visible, bool animated = false);
    // A null text shows a zero time.
    void setTimerText(const QString &text);
    // The time keeps its place while hidden, so the page does not jump.
    void setTimerTextHidden(bool hidden);

private:
    VKPopUpButton *m_cameras = nullptr;
    VKPopUpButton *m_microphones = nullptr;
    AudioLevelMeter *m_levelMeter = nullptr;
    QLabel *m_previewImage = nullptr;
    QLabel *m_screenPreviewImage = nullptr;
    CaptureVideoPreviewWidget *m_localPreview = nullptr;
    class QGridLayout *m_stage = nullptr;
    QLabel *m_recordingState = nullptr;
    QLabel *m_hotkeySuggestion = nullptr;
    QLabel *m_timer = nullptr;
    QLabel *m_timeLeft = nullptr;
    QWidget *m_banners = nullptr;
};
