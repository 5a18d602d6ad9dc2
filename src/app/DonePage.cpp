#include "DonePage.h"

#include "PageWidgets.h"
#include "VKMetalButton.h"

#include <QVBoxLayout>

using namespace PageWidgets;

DonePage::DonePage(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("doneView"));
    auto *v = new QVBoxLayout(this);
    v->setContentsMargins(36, 30, 36, 30);
    v->addStretch(1);
    // Read by its value; the description says what it is.
    m_submittedStatus = named(heading(QString(), this, 1.3), "submittedStatus", QString());
    m_submittedStatus->setAlignment(Qt::AlignCenter);
    m_submittedStatus->setWordWrap(true);
    v->addWidget(m_submittedStatus);
    v->addSpacing(16);
    m_newPodcast = named(new VKMetalButton(tr("New Recording"), this), "newPodcastButton", tr("New Recording"));
    connect(m_newPodcast, &QPushButton::clicked, this, &DonePage::newPodcastClicked);
    v->addWidget(m_newPodcast, 0, Qt::AlignHCenter);
    v->addStretch(1);
    describe(this,
        {
            { "submittedStatus", tr("Whether the recording was handed to the server") },
            { "newPodcastButton", tr("Starts a new recording") },
        });
}

void DonePage::setSubmittedStatus(const QString &text)
{
    m_submittedStatus->setText(text);
}

void DonePage::setNewPodcastButtonVisible(bool visible)
{
    m_newPodcast->setVisible(visible);
}
