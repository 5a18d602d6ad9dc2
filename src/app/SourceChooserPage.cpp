#include "SourceChooserPage.h"

#include "LXGlyphs.h"
#include "LXSourceTile.h"
#include "PageWidgets.h"

#include <QGridLayout>
#include <QVBoxLayout>

using namespace PageWidgets;

SourceChooserPage::SourceChooserPage(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("sourceChooserView"));
    auto *v = new QVBoxLayout(this);
    v->setContentsMargins(36, 30, 36, 30);
    v->setSpacing(10);
    v->addWidget(heading(tr("What would you like to record?"), this));
    v->addWidget(subtle(tr("Choose a source. Recordings go to the workflow you pick when you publish."), this));
    v->addSpacing(14);
    auto *grid = new QGridLayout;
    grid->setSpacing(14);
    const struct
    {
        Source source;
        LXGlyphs::Glyph glyph;
        QString title;
        QString toolTip;
        const char *name;
    } tiles[] = {
        { Source::Video, LXGlyphs::Glyph::Camera, tr("Video"),
            tr("Record from a camera in a lecture hall or from this computer's camera"), "videoTile" },
        { Source::Audio, LXGlyphs::Glyph::Microphone, tr("Audio"), tr("Record sound only"), "audioTile" },
        { Source::Screen, LXGlyphs::Glyph::Screen, tr("Screen"), tr("Record this computer's screen with narration"),
            "screenTile" },
        { Source::File, LXGlyphs::Glyph::Film, tr("Movie Files"), tr("Publish movie files you already have"),
            "fileTile" },
    };
    for (int i = 0; i < int(m_tiles.size()); ++i) {
        auto *tile = new LXSourceTile(tiles[i].glyph, tiles[i].title, this);
        tile->setObjectName(QLatin1String(tiles[i].name));
        tile->setToolTip(tiles[i].toolTip);
        tile->setAccessibleDescription(tiles[i].toolTip);
        tile->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        const Source source = tiles[i].source;
        connect(tile, &QAbstractButton::clicked, this, [this, source] { emit sourceClicked(source); });
        grid->addWidget(tile, 0, i);
        m_tiles[i] = tile;
    }
    v->addLayout(grid, 1);
    m_connectionStatus = subtle(QString(), this);
    m_connectionStatus->setObjectName(QStringLiteral("connectionStatus"));
    m_connectionStatus->setAccessibleDescription(tr("The server and account you are signed in with"));
    v->addWidget(m_connectionStatus);
}

void SourceChooserPage::setConnected(bool connected, const QString &user, const QString &host)
{
    for (LXSourceTile *tile : m_tiles)
        tile->setEnabled(connected);
    if (connected)
        m_connectionStatus->setText(tr("Signed in as %1 on %2.").arg(user, host));
    else
        m_connectionStatus->setText(tr("Not connected to a server yet. Choose Lumex ▸ Sign In… to connect."));
}
