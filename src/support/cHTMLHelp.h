// cHTMLHelp: opens the program's help file at its default page in the program's help window.
#pragma once

#include <QPointer>
#include <QString>

class QWidget;

namespace zorvik {

class HelpWindow;

class cHTMLHelp {
public:
    cHTMLHelp() = default;
    ~cHTMLHelp();
    cHTMLHelp(const cHTMLHelp&) = delete;
    cHTMLHelp& operator=(const cHTMLHelp&) = delete;

    /// Shows the help file sFile at its default page in the help window of hwndCaller's window,
    /// bringing that window to the front; it is created on the first call and reused after.
    /// A missing file shows a "not found" page in the window; nothing else happens.
    void DisplayHelp(QWidget* hwndCaller, const QString& sFile);

    /// The help window last used, or null before the first call.
    HelpWindow* helpWindow() const;

private:
    QPointer<HelpWindow> m_lastWindow;
    // Window used when no calling window is given; owned here.
    QPointer<HelpWindow> m_ownWindow;
};

} // namespace zorvik
