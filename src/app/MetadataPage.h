#pragma once

#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class LXPlaceholderLineEdit;
class ReviewPlayer;
class LXWorkflowMenu;

// The third page: the title, the description and the workflow a recording
// or the chosen files are published with.
class MetadataPage final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MetadataPage)

public:
    explicit MetadataPage(QWidget *parent = nullptr);

    // The page for a recording shows the help text; the page for files
    // chosen on disk lists them instead. An empty list shows no files.
    void showChosenFiles(const QStringList &paths);
    // Menu items in the workflow pop-up, from each workflow's
    // "titleAndDescription"; choosing one emits workflowChosen with its
    // index in `workflows`.
    void setWorkflows(const QVariantList &workflows);
    void setChosenWorkflowTitle(const QString &title);
    // Typing beyond these lengths is cut off.
    void setLengthLimits(int title, int description);
    void setTitlePlaceholderImageVisible(bool visible);
    void setMetadata(const QString &title, const QString &description);
    void focusTitle();
    // The controls in reading order, for the window's tab chain.
    QList<QWidget *> focusChain() const;
    // Plays back what is about to be published, with the marks to trim it.
    ReviewPlayer *reviewPlayer() const { return m_review; }

signals:
    void titleEdited(const QString &title);
    void descriptionEdited(const QString &description);
    void workflowChosen(int index);

private:
    QLabel *m_helpText = nullptr;
    QLabel *m_chosenFiles = nullptr;
    LXPlaceholderLineEdit *m_title = nullptr;
    QPlainTextEdit *m_description = nullptr;
    QPushButton *m_workflowButton = nullptr;
    LXWorkflowMenu *m_workflowMenu = nullptr;
    ReviewPlayer *m_review = nullptr;
};
