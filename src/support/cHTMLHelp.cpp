// cHTMLHelp: finds or creates the help window and shows the help file in it.
#include "support/cHTMLHelp.h"

#include "support/HelpWindow.h"

#include <QWidget>

namespace zorvik {

cHTMLHelp::~cHTMLHelp() {
    delete m_ownWindow.data();
}

HelpWindow* cHTMLHelp::helpWindow() const {
    return m_lastWindow;
}

void cHTMLHelp::DisplayHelp(QWidget* hwndCaller, const QString& sFile) {
    // The help window belongs to the calling window: one per window, kept (hidden when
    // closed) for the next call and deleted with its owner.
    HelpWindow* window = nullptr;
    if (hwndCaller) {
        QWidget* owner = hwndCaller->window();
        window = owner->findChild<HelpWindow*>(QString(), Qt::FindDirectChildrenOnly);
        if (!window)
            window = new HelpWindow(owner);
    } else {
        if (!m_ownWindow)
            m_ownWindow = new HelpWindow;
        window = m_ownWindow;
    }
    m_lastWindow = window;

    window->showFile(sFile);
    if (window->isMinimized())
        window->showNormal();
    else
        window->show();
    window->raise();
    window->activateWindow();
}

} // namespace zorvik
