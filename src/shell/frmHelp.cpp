#include "shell/frmHelp.h"

#include "common/Common.h"
#include "common/Icons.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace {
QPointer<frmHelp>& theWindow() {
    static QPointer<frmHelp> window;
    return window;
}

// Context topic numbers, as the program and older help links use them.
struct Topic {
    int id;
    const char* page;
};
constexpr Topic kTopics[] = {
    {1, "index.html"},     {2, "projects.html"},   {3, "getting-started.html"},
    {4, "resources.html"}, {5, "timetables.html"}, {6, "scheduling.html"},
    {7, "autofill.html"},  {8, "printing.html"},
};
} // namespace

frmHelp::frmHelp(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(Common::AppTitle() + QStringLiteral(" Help"));
    setWindowIcon(Icons::App());
    // A window of its own that can stay open beside the main window and wizards.
    setWindowFlags(Qt::Window);
    setMinimumSize(520, 400);
    resize(760, 640);

    auto* buttons = new QHBoxLayout;
    auto makeButton = [this, buttons](const char* name, const char* text) {
        auto* b = new QPushButton(QString::fromLatin1(text), this);
        b->setObjectName(QString::fromLatin1(name));
        b->setAutoDefault(false);
        buttons->addWidget(b);
        return b;
    };
    cmdContents = makeButton("cmdContents", "&Contents");
    cmdBack = makeButton("cmdBack", "< &Back");
    cmdForward = makeButton("cmdForward", "&Forward >");
    buttons->addStretch(1);
    cmdClose = makeButton("cmdClose", "Close");

    txtHelp = new QTextBrowser(this);
    txtHelp->setObjectName(QStringLiteral("txtHelp"));
    txtHelp->setOpenExternalLinks(true);
    txtHelp->setSearchPaths({HelpDir()});

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addWidget(txtHelp, 1);

    cmdBack->setEnabled(false);
    cmdForward->setEnabled(false);
    connect(txtHelp, &QTextBrowser::backwardAvailable, cmdBack, &QPushButton::setEnabled);
    connect(txtHelp, &QTextBrowser::forwardAvailable, cmdForward, &QPushButton::setEnabled);
    connect(cmdBack, &QPushButton::clicked, txtHelp, &QTextBrowser::backward);
    connect(cmdForward, &QPushButton::clicked, txtHelp, &QTextBrowser::forward);
    connect(cmdContents, &QPushButton::clicked, this, [this] { showTopic(kContents); });
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::close);
}

QString frmHelp::HelpDir() {
    return Common::AppDir() + QStringLiteral("/help");
}

QString frmHelp::TopicPage(int contextID) {
    for (const Topic& t : kTopics)
        if (t.id == contextID)
            return QString::fromLatin1(t.page);
    return QString();
}

void frmHelp::showTopic(int contextID) {
    QString page = TopicPage(contextID);
    if (page.isEmpty())
        page = TopicPage(kContents);
    const QString file = HelpDir() + QLatin1Char('/') + page;
    if (!QFileInfo::exists(file)) {
        showMissing(file);
        return;
    }
    txtHelp->setSource(QUrl::fromLocalFile(file));
}

void frmHelp::showMissing(const QString& page) {
    txtHelp->setHtml(
        QStringLiteral("<h2>Help is not available</h2>"
                       "<p>The help page <b>%1</b> could not be found.</p>"
                       "<p>The help files belong in the folder <b>%2</b> beside the program. "
                       "Reinstalling Vantor Planner puts them back.</p>")
            .arg(page.toHtmlEscaped(), HelpDir().toHtmlEscaped()));
}

frmHelp* frmHelp::instance() {
    return theWindow();
}

frmHelp* frmHelp::ShowHelp(int contextID) {
    QPointer<frmHelp>& window = theWindow();
    if (!window) {
        window = new frmHelp;
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    window->showTopic(contextID);
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}
