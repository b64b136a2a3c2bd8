// The program's help window: the HTML user manual in a browser pane with Back, Forward and Home.
// Links inside the manual open in the window; web links open in the desktop's browser.
#pragma once

#include <QUrl>
#include <QWidget>

class QTextBrowser;
class QToolButton;

namespace zorvik {

class HelpWindow : public QWidget {
    Q_OBJECT

public:
    explicit HelpWindow(QWidget* parent = nullptr);

    /// Opens the help file at `path` and makes it the Home page. A file that does not exist
    /// shows the "not found" page instead.
    void showFile(const QString& path);

    /// The page shown in place of a help page that does not exist.
    static QString notFoundPage(const QString& path);

    QUrl home() const { return m_home; }
    QTextBrowser* browser() const { return m_browser; }
    QToolButton* backButton() const { return m_back; }
    QToolButton* forwardButton() const { return m_forward; }
    QToolButton* homeButton() const { return m_homeButton; }

private:
    void updateTitle();

    QTextBrowser* m_browser = nullptr;
    QToolButton* m_back = nullptr;
    QToolButton* m_forward = nullptr;
    QToolButton* m_homeButton = nullptr;
    QUrl m_home;
};

} // namespace zorvik
