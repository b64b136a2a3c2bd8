// F1: the manual at the page for the window in front, from any window of the program. The
// HELP button keeps its own way of opening the manual at its first page.
#include "app/frmMain.h"

#include "support/HelpWindow.h"
#include "support/cHTMLHelp.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>

namespace zorvik {

QString frmMain::helpPageFor(const QWidget* window) {
    if (!window)
        return QStringLiteral("index.html");
    // A window that names its own page (the analysis windows do).
    if (const QVariant page = window->property("zorvikHelpPage"); page.isValid())
        return page.toString();
    const QString name = window->objectName();
    if (name == QLatin1String("frmMain"))
        return QStringLiteral("front-panel.html");
    if (name == QLatin1String("frmFile"))
        return QStringLiteral("reference.html");
    if (name == QLatin1String("frmOptions"))
        return QStringLiteral("options.html");
    if (name == QLatin1String("frmPageSetup") || name == QLatin1String("frmPreview") ||
        name == QLatin1String("PrintSetupDialog"))
        return QStringLiteral("printing.html");
    if (name == QLatin1String("SystemInfoDialog"))
        return QStringLiteral("connecting.html");
    if (qobject_cast<const QMessageBox*>(window)) {
        const QString title = window->windowTitle();
        if (title == QLatin1String("Communication Error"))
            return QStringLiteral("troubleshooting.html");
        if (title.startsWith(QLatin1String("File ")))
            return QStringLiteral("reference.html");
    }
    return QStringLiteral("index.html");
}

void frmMain::showHelpFor(QWidget* window) {
    if (!help_)
        help_ = std::make_unique<cHTMLHelp>();
    // F1 in the help window itself goes to the manual's first page.
    if (auto* help = qobject_cast<HelpWindow*>(window)) {
        help->showPage(QStringLiteral("index.html"));
        return;
    }
    // The help window belongs to the window asked about, so that it can be used while that
    // window, if modal, blocks the others.
    help_->DisplayHelp(window, helpFile());
    if (HelpWindow* shown = help_->helpWindow())
        shown->showPage(helpPageFor(window));
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1 &&
        static_cast<QKeyEvent*>(event)->modifiers() == Qt::NoModifier && !unloaded_) {
        QWidget* front = QApplication::activeModalWidget();
        if (!front)
            front = QApplication::activeWindow();
        if (!front && watched->isWidgetType())
            front = static_cast<QWidget*>(watched)->window();
        if (front) {
            showHelpFor(front);
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

} // namespace zorvik
