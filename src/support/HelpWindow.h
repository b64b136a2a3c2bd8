// The program's help window: the HTML user manual in a browser pane with Back, Forward, Home and
// a search field. Links inside the manual open in the window; web links open in the desktop's
// browser; pictures wider than the window are shown at its width.
#pragma once

#include <QUrl>
#include <QWidget>

class QLineEdit;
class QTextBrowser;
class QTimer;
class QToolButton;

namespace zorvik {

class HelpWindow : public QWidget {
    Q_OBJECT

public:
    explicit HelpWindow(QWidget* parent = nullptr);

    /// Opens the help file at `path` and makes it the Home page. A file that does not exist
    /// shows the "not found" page instead.
    void showFile(const QString& path);

    /// Shows `page` (a file name of the manual, such as "options.html") without changing
    /// the Home page.
    void showPage(const QString& page);

    /// Shows the pages of the manual that hold every word of `query`, each with a link; a page
    /// opened from there shows the first place a word was found. Blank queries do nothing.
    void search(const QString& query);

    /// The folder of the manual: that of the Home page.
    QString helpFolder() const;

    /// The page shown in place of a help page that does not exist.
    static QString notFoundPage(const QString& path);

    QUrl home() const { return m_home; }
    QTextBrowser* browser() const { return m_browser; }
    QToolButton* backButton() const { return m_back; }
    QToolButton* forwardButton() const { return m_forward; }
    QToolButton* homeButton() const { return m_homeButton; }
    QLineEdit* searchField() const { return m_search; }

private:
    void updateTitle();
    void pageShown(const QUrl& url);
    void fitPictures();

    QTextBrowser* m_browser = nullptr;
    QToolButton* m_back = nullptr;
    QToolButton* m_forward = nullptr;
    QToolButton* m_homeButton = nullptr;
    QLineEdit* m_search = nullptr;
    QTimer* m_fitTimer = nullptr;
    QUrl m_home;
    QUrl m_shown; // the page shown before the present one
};

} // namespace zorvik
