#include "MetadataPage.h"

#include "LXPlaceholderLineEdit.h"
#include "LXWorkflowMenu.h"
#include "PageWidgets.h"
#include "ReviewPlayer.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace PageWidgets;

namespace {

// A plain-text field has no maximum length of its own; typing past it is cut
// off, keeping the cursor where it was.
void limitLength(QPlainTextEdit *field, int maximum)
{
    QObject::connect(field, &QPlainTextEdit::textChanged, field, [field, maximum] {
        const QString text = field->toPlainText();
        if (text.size() <= maximum)
            return;
        QTextCursor cursor = field->textCursor();
        const int position = qMin(cursor.position(), maximum);
        QSignalBlocker blocker(field);
        field->setPlainText(text.left(maximum));
        cursor = field->textCursor();
        cursor.setPosition(position);
        field->setTextCursor(cursor);
    });
}

} // namespace

MetadataPage::MetadataPage(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("metadataEntryView"));
    // The fields need a visible edge on the dark page.
    setStyleSheet(QStringLiteral("QLineEdit, QPlainTextEdit { background: #101013; color: #f2f2f5; "
                                 "border: 1px solid #3c3c44; border-radius: 5px; padding: 4px; }"
                                 "QLineEdit:focus, QPlainTextEdit:focus { border-color: #6b6b78; }"));
    auto *v = new QVBoxLayout(this);
    v->setContentsMargins(36, 26, 36, 22);
    v->setSpacing(8);
    v->addWidget(heading(tr("Describe your recording"), this));
    m_helpText = named(subtle(tr("Give the recording a title and a description, then choose where it goes."), this),
        "helpTextField", tr("Help"));
    v->addWidget(m_helpText);
    m_chosenFiles = named(subtle(QString(), this), "chosenFiles", QString());
    m_chosenFiles->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_chosenFiles->hide();
    v->addWidget(m_chosenFiles);
    m_review = new ReviewPlayer(this);
    v->addWidget(m_review, 4);
    v->addSpacing(8);
    auto *titleLabel = fieldLabel(tr("Title"), this);
    m_title = named(new LXPlaceholderLineEdit(this), "title", tr("Title"));
    m_title->setPlaceholderText(tr("Title of the recording"));
    connect(m_title, &QLineEdit::textChanged, this, &MetadataPage::titleEdited);
    titleLabel->setBuddy(m_title);
    auto *descriptionLabel = fieldLabel(tr("Description"), this);
    m_description = named(new QPlainTextEdit(this), "descriptionField", tr("Description"));
    m_description->setPlaceholderText(tr("What is it about?"));
    m_description->setTabChangesFocus(true);
    connect(m_description, &QPlainTextEdit::textChanged, this,
        [this] { emit descriptionEdited(m_description->toPlainText()); });
    auto *workflowLabel = fieldLabel(tr("Workflow"), this);
    m_workflowButton = named(new QPushButton(this), "workflowPopUpButton", tr("Workflow"));
    m_workflowMenu = new LXWorkflowMenu(m_workflowButton);
    m_workflowMenu->setObjectName(QStringLiteral("workflowMenu"));
    m_workflowButton->setMenu(m_workflowMenu);
    v->addWidget(titleLabel);
    v->addWidget(m_title);
    v->addWidget(descriptionLabel);
    // A few lines for the description; the review, when shown, takes most
    // of the rest.
    m_description->setMinimumHeight(48);
    v->addWidget(m_description, 1);
    v->addWidget(workflowLabel);
    v->addWidget(m_workflowButton, 0, Qt::AlignLeft);

    // The server takes titles of up to 220 characters and descriptions of
    // up to 1000.
    setLengthLimits(220, 1000);
    describe(this,
        {
            { "helpTextField", tr("What to fill in before publishing") },
            { "chosenFiles", tr("The movie files that are published") },
            { "title", tr("The title the recording is published with") },
            { "descriptionField", tr("A description published with the recording") },
            { "workflowPopUpButton", tr("The server workflow that processes the recording") },
        });
}

void MetadataPage::showChosenFiles(const QStringList &paths)
{
    QStringList names;
    for (const QString &path : paths)
        names << path.toHtmlEscaped();
    m_chosenFiles->setText(tr("Files to publish:") + QStringLiteral("<br>") + names.join(QStringLiteral("<br>")));
    m_chosenFiles->setVisible(!paths.isEmpty());
    m_helpText->setVisible(paths.isEmpty());
}

void MetadataPage::setWorkflows(const QVariantList &workflows)
{
    m_workflowMenu->clear();
    for (int i = 0; i < workflows.size(); ++i) {
        const QString title = workflows.at(i).toMap().value(QStringLiteral("titleAndDescription")).toString();
        QAction *item = m_workflowMenu->insertItemWithTitle(title, i);
        connect(item, &QAction::triggered, this, [this, i] { emit workflowChosen(i); });
    }
}

void MetadataPage::setChosenWorkflowTitle(const QString &title)
{
    m_workflowButton->setText(title.split(LXWorkflowMenu::kSeparator).first());
}

void MetadataPage::setLengthLimits(int title, int description)
{
    m_title->setMaxLength(title);
    limitLength(m_description, description);
}

void MetadataPage::setTitlePlaceholderImageVisible(bool visible)
{
    m_title->setPlaceholderImageVisible(visible);
}

void MetadataPage::setMetadata(const QString &title, const QString &description)
{
    const QSignalBlocker titleBlocker(m_title);
    const QSignalBlocker descriptionBlocker(m_description);
    m_title->setText(title);
    m_description->setPlainText(description);
}

void MetadataPage::focusTitle()
{
    m_title->setFocus(Qt::OtherFocusReason);
}

QList<QWidget *> MetadataPage::focusChain() const
{
    return QList<QWidget *> { m_title, m_description, m_workflowButton } + m_review->focusChain();
}
