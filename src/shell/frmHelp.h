#pragma once
// The program's help window: HTML pages from the help folder beside the
// program, found by context topic number as well as by page.

#include <QDialog>

class QTextBrowser;
class QPushButton;

class frmHelp : public QDialog {
    Q_OBJECT
public:
    explicit frmHelp(QWidget* parent = nullptr);

    // Opens (or brings forward) the one help window at a context topic.
    static frmHelp* ShowHelp(int contextID = kContents);
    // The open help window, if any.
    static frmHelp* instance();

    // Context topics the program opens the help at.
    static constexpr int kContents = 1;
    static constexpr int kGettingStarted = 3;

    // The folder the pages live in, and the page of a topic (empty when unknown).
    static QString HelpDir();
    static QString TopicPage(int contextID);

    void showTopic(int contextID);

    QTextBrowser* txtHelp = nullptr;
    QPushButton* cmdContents = nullptr;
    QPushButton* cmdBack = nullptr;
    QPushButton* cmdForward = nullptr;
    QPushButton* cmdClose = nullptr;

private:
    void showMissing(const QString& page);
};
