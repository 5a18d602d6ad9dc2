#pragma once

#include <QWidget>

#include <array>

class QLabel;
class LXSourceTile;

// The first page: the four sources to record from, and who is signed in.
class SourceChooserPage final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SourceChooserPage)

public:
    enum class Source { Video, Audio, Screen, File };
    Q_ENUM(Source)

    explicit SourceChooserPage(QWidget *parent = nullptr);

    // Before a sign-in the tiles are off and the page says how to connect.
    void setConnected(bool connected, const QString &user = QString(), const QString &host = QString());
    const std::array<LXSourceTile *, 4> &tiles() const { return m_tiles; }

signals:
    void sourceClicked(SourceChooserPage::Source source);

private:
    std::array<LXSourceTile *, 4> m_tiles {};
    QLabel *m_connectionStatus = nullptr;
};
