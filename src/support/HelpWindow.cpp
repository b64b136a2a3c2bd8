// The help window: a QTextBrowser on the HTML manual with a small navigation bar.
#include "support/HelpWindow.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QStyle>
#include <QTextBrowser>
#include <QToolButton>
#include <QVBoxLayout>

namespace zorvik {

namespace {

// The manual's browser. A page of the manual that is missing shows the "not found" page in
// its place, so a broken link or a missing manual never leaves the window blank.
class HelpBrowser : public QTextBrowser {
public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl& name) override {
        if (type == QTextDocument::HtmlResource && name.isLocalFile() &&
            !QFileInfo(name.toLocalFile()).isFile())
            return HelpWindow::notFoundPage(name.toLocalFile());
        return QTextBrowser::loadResource(type, name);
    }
};

QToolButton* navigationButton(QWidget* parent, const char* name, const QString& text,
                              QStyle::StandardPixmap icon) {
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setText(text);
    button->setIcon(parent->style()->standardIcon(icon));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    return button;
}

} // namespace

HelpWindow::HelpWindow(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName("HelpWindow");
    setWindowTitle("Help");

    m_back = navigationButton(this, "cmdBack", "&Back", QStyle::SP_ArrowBack);
    m_forward = navigationButton(this, "cmdForward", "&Forward", QStyle::SP_ArrowForward);
    m_homeButton = navigationButton(this, "cmdHome", "&Home", QStyle::SP_DirHomeIcon);
    m_back->setEnabled(false);
    m_forward->setEnabled(false);

    m_browser = new HelpBrowser(this);
    m_browser->setObjectName("HelpBrowser");
    // Links inside the manual open here; web and mail links go to the desktop's programs.
    m_browser->setOpenLinks(true);
    m_browser->setOpenExternalLinks(true);
    m_browser->document()->setDocumentMargin(12);

    connect(m_back, &QToolButton::clicked, m_browser, &QTextBrowser::backward);
    connect(m_forward, &QToolButton::clicked, m_browser, &QTextBrowser::forward);
    connect(m_homeButton, &QToolButton::clicked, this, [this] {
        if (!m_home.isEmpty())
            m_browser->setSource(m_home);
    });
    connect(m_browser, &QTextBrowser::backwardAvailable, m_back, &QToolButton::setEnabled);
    connect(m_browser, &QTextBrowser::forwardAvailable, m_forward, &QToolButton::setEnabled);
    connect(m_browser, &QTextBrowser::sourceChanged, this, &HelpWindow::updateTitle);

    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(4, 2, 4, 2);
    bar->addWidget(m_back);
    bar->addWidget(m_forward);
    bar->addWidget(m_homeButton);
    bar->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(bar);
    layout->addWidget(m_browser);
    resize(860, 680);
}

void HelpWindow::showFile(const QString& path) {
    m_home = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    m_browser->setSource(m_home);
    updateTitle();
}

QString HelpWindow::notFoundPage(const QString& path) {
    return "<html><head><title>Help not found</title></head><body>"
           "<h2>Help not found</h2>"
           "<p>The help page could not be found:</p>"
           "<p><code>" +
           path.toHtmlEscaped() +
           "</code></p>"
           "<p>The program's help belongs in the Help folder beside the program. "
           "Installing the program again puts it back.</p>"
           "</body></html>";
}

void HelpWindow::updateTitle() {
    const QString page = m_browser->documentTitle();
    setWindowTitle(page.isEmpty() ? QString("Help") : page + " - Help");
}

} // namespace zorvik
