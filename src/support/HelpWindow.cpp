// The help window: a QTextBrowser on the HTML manual with a small navigation bar.
#include "support/HelpWindow.h"

#include "support/HelpSearch.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QImage>
#include <QLineEdit>
#include <QPixmap>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStyle>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextDocument>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <functional>

namespace zorvik {

namespace {

// The manual's browser. A page of the manual that is missing shows the "not found" page in
// its place, so a broken link or a missing manual never leaves the window blank; a search
// address shows the pages found; a change of width fits the pictures again.
class HelpBrowser : public QTextBrowser {
public:
    HelpBrowser(QWidget* parent, std::function<QString()> folder, std::function<void()> resized)
        : QTextBrowser(parent), folder_(std::move(folder)), resized_(std::move(resized)) {}

    QVariant loadResource(int type, const QUrl& name) override {
        if (type == QTextDocument::HtmlResource) {
            const QString query = HelpSearch::queryOf(name);
            if (!query.isNull())
                return HelpSearch::resultsPage(folder_(), query);
            if (name.isLocalFile() && !QFileInfo(name.toLocalFile()).isFile())
                return HelpWindow::notFoundPage(name.toLocalFile());
        }
        return QTextBrowser::loadResource(type, name);
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QTextBrowser::resizeEvent(event);
        if (event->size().width() != event->oldSize().width())
            resized_();
    }

private:
    std::function<QString()> folder_;
    std::function<void()> resized_;
};

// The natural size of a picture the document holds, in pixels; empty when it has none.
QSize pictureSize(const QVariant& resource) {
    if (resource.canConvert<QImage>() && resource.metaType().id() == QMetaType::QImage) {
        const QImage image = resource.value<QImage>();
        return (QSizeF(image.size()) / image.devicePixelRatio()).toSize();
    }
    if (resource.metaType().id() == QMetaType::QPixmap) {
        const QPixmap pixmap = resource.value<QPixmap>();
        return (QSizeF(pixmap.size()) / pixmap.devicePixelRatio()).toSize();
    }
    if (resource.metaType().id() == QMetaType::QByteArray)
        return QImage::fromData(resource.toByteArray()).size();
    return QSize();
}

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

    m_search = new QLineEdit(this);
    m_search->setObjectName("txtSearch");
    m_search->setPlaceholderText("Search the manual");
    m_search->setAccessibleName("Search the manual");
    m_search->setClearButtonEnabled(true);
    m_search->setMinimumWidth(220);
    connect(m_search, &QLineEdit::returnPressed, this, [this] { search(m_search->text()); });

    m_fitTimer = new QTimer(this);
    m_fitTimer->setSingleShot(true);
    m_fitTimer->setInterval(0);
    connect(m_fitTimer, &QTimer::timeout, this, &HelpWindow::fitPictures);
    m_browser = new HelpBrowser(
        this, [this] { return helpFolder(); }, [this] { m_fitTimer->start(); });
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
    connect(m_browser, &QTextBrowser::sourceChanged, this, &HelpWindow::pageShown);

    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(4, 2, 4, 2);
    bar->addWidget(m_back);
    bar->addWidget(m_forward);
    bar->addWidget(m_homeButton);
    bar->addStretch();
    bar->addWidget(m_search);
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

void HelpWindow::showPage(const QString& page) {
    const QUrl url = QUrl::fromLocalFile(QDir(helpFolder()).absoluteFilePath(page));
    if (m_browser->source() != url)
        m_browser->setSource(url);
}

QString HelpWindow::helpFolder() const {
    return QFileInfo(m_home.toLocalFile()).absolutePath();
}

void HelpWindow::search(const QString& query) {
    if (HelpSearch::words(query).isEmpty())
        return;
    m_browser->setSource(HelpSearch::resultsUrl(query));
}

void HelpWindow::pageShown(const QUrl& url) {
    updateTitle();
    fitPictures();
    // A page opened from the search results shows the first place a word was found.
    const QString query = HelpSearch::queryOf(m_shown);
    m_shown = url;
    if (!query.isEmpty() && url.isLocalFile()) {
        const QStringList words = HelpSearch::words(query);
        m_browser->moveCursor(QTextCursor::Start);
        m_browser->find(words.first());
    }
}

// Pictures wider than the page are shown at the page's width, keeping their proportions, so
// the manual never needs a horizontal scroll bar; narrower ones keep their own size.
void HelpWindow::fitPictures() {
    QTextDocument* document = m_browser->document();
    const qreal room = m_browser->viewport()->width() - 2 * document->documentMargin() - 16;
    if (room <= 0)
        return;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.isValid() || !fragment.charFormat().isImageFormat())
                continue;
            QTextImageFormat image = fragment.charFormat().toImageFormat();
            const QSize natural =
                pictureSize(document->resource(QTextDocument::ImageResource, QUrl(image.name())));
            if (natural.isEmpty())
                continue;
            const qreal width = std::min<qreal>(natural.width(), room);
            const qreal height = natural.height() * width / natural.width();
            if (qAbs(image.width() - width) < 0.5 && qAbs(image.height() - height) < 0.5)
                continue;
            image.setWidth(width);
            image.setHeight(height);
            QTextCursor cursor(document);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(image);
        }
    }
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
