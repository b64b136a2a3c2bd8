// The Options dialog: port list, tab pages, colour buttons, Apply/OK/Cancel and unloading.
#include "dialogs/frmOptions.h"

#include "dialogs/PortListText.h"
#include "display/GraphNames.h"
#include "instrument/PortMap.h"
#include "support/ModalRunner.h"
#include "support/Twips.h"

#include <QColorDialog>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QTabBar>
#include <utility>

namespace zorvik {

namespace {

/// The only baud rate the probe speaks.
const QString kBaudRateText = QStringLiteral("19200");

/// A small filled rectangle of the colour a button sets.
QIcon swatch(const QColor& color, const QSize& size, const QColor& border) {
    QPixmap pixmap(size);
    pixmap.fill(border);
    QPixmap inner(size - QSize(2, 2));
    inner.fill(color.isValid() ? color : QColor(Qt::transparent));
    {
        QPainter painter(&pixmap);
        painter.drawPixmap(1, 1, inner);
    }
    return QIcon(pixmap);
}

} // namespace

frmOptions::frmOptions(OptionsHost& host, QWidget* parent)
    : QDialog(parent), host_(&host), chooser_(&frmOptions::defaultColorChooser) {
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Options"));
    setAccessibleName(QStringLiteral("Options"));
    placeControls();

    // Like a form that previews its keys, the dialog sees every key before its controls do,
    // so Ctrl+Tab changes the page wherever the focus is.
    for (QWidget* child : findChildren<QWidget*>())
        child->installEventFilter(this);
}

std::optional<QColor> frmOptions::defaultColorChooser(const QColor& initial, QWidget* parent) {
    const QColor chosen = QColorDialog::getColor(initial, parent);
    if (!chosen.isValid())
        return std::nullopt;
    return chosen;
}

void frmOptions::setColorChooser(ColorChooser chooser) {
    chooser_ = chooser ? std::move(chooser) : ColorChooser(&frmOptions::defaultColorChooser);
}

// ---- Loading and unloading ------------------------------------------------------------------

void frmOptions::Form_Load() {
    // Each load starts from the dialog's first state: the lists are refilled below without
    // counting as a choice of the user, and the "Communications" page is the one in front.
    blnLoaded_ = false;
    if (tbsOptions->currentIndex() != 0)
        tbsOptions->setCurrentIndex(0);
    else
        tbsOptions_Click();

    // Centred on the screen of the main window.
    const QScreen* screen = parentWidget() ? parentWidget()->screen() : this->screen();
    if (screen) {
        const QRect area = screen->geometry();
        move(area.x() + (area.width() - width()) / 2, area.y() + (area.height() - height()) / 2);
    }

    cboBaudRate->clear();
    cboBaudRate->addItem(kBaudRateText);
    cboBaudRate->setCurrentIndex(0);

    cboComPort->clear();
    for (int n = kFirstComPort; n <= kLastComPort; ++n) {
        if (host_->ComPortExists(n)) {
            // The entry keeps its text; its tool tip names the device behind it.
            cboComPort->addItem(QString::fromStdString(portListText(n)));
            cboComPort->setItemData(cboComPort->count() - 1, host_->portDescription(n),
                                    Qt::ToolTipRole);
        }
    }

    // The entry is picked by its place in the list, which is the port's only while every
    // lower port exists: with a lower port missing the selection lands on a later port, and
    // a place beyond the end of the list selects nothing.
    blnPortChanged_ = false;
    cboComPort->setCurrentIndex(host_->ComPort() - 1);

    blnLoaded_ = true;
    showSwatches();
}

void frmOptions::Form_Unload() {
    // A port chosen but not applied is simply forgotten; after Apply moved the port (or could
    // not get live data on it), reception resumes on the port now in use.
    if (blnPortChanged_)
        host_->resumeReception();
}

void frmOptions::done(int result) {
    Form_Unload();
    QDialog::done(result);
}

// ---- Pages and keys -------------------------------------------------------------------------

void frmOptions::tbsOptions_Click() {
    for (int i = 0; i < static_cast<int>(picOptions.size()); ++i) {
        QWidget* page = picOptions[static_cast<std::size_t>(i)];
        const bool selected = i == tbsOptions->currentIndex();
        page->move(twipsToPixels(selected ? kPageLeftTwips : kHiddenPageLeftTwips), page->y());
        page->setEnabled(selected);
    }
}

bool frmOptions::Form_KeyDown(int KeyCode, int Shift) {
    if (KeyCode != kKeyTab || Shift != kShiftCtrl)
        return false;
    tbsOptions->setCurrentIndex((tbsOptions->currentIndex() + 1) % tbsOptions->count());
    return true;
}

bool frmOptions::keyDown(const QKeyEvent& event) {
    if (event.key() != Qt::Key_Tab && event.key() != Qt::Key_Backtab)
        return false;
    int shift = 0;
    if (event.modifiers() & Qt::ShiftModifier)
        shift |= 1;
    if (event.modifiers() & Qt::ControlModifier)
        shift |= kShiftCtrl;
    if (event.modifiers() & Qt::AltModifier)
        shift |= 4;
    return Form_KeyDown(kKeyTab, shift);
}

bool frmOptions::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && keyDown(*static_cast<QKeyEvent*>(event)))
        return true;
    return QDialog::eventFilter(watched, event);
}

void frmOptions::keyPressEvent(QKeyEvent* event) {
    if (keyDown(*event))
        return;
    QDialog::keyPressEvent(event);
}

// ---- Port -----------------------------------------------------------------------------------

void frmOptions::cboComPort_Click() {
    if (!blnLoaded_)
        return;
    const auto port = portFromListText(cboComPort->currentText().toStdString());
    if (!port)
        return;
    intPort_ = *port;
    blnPortChanged_ = true;
}

void frmOptions::cmdApply_Click() {
    if (blnPortChanged_) {
        blnPortChanged_ = false;
        if (!host_->portIsOpen()) {
            // The probe is off: the new port is used from the next POWER on.
            host_->setComPort(intPort_);
            host_->clearAutoPort();
            blnPortChanged_ = true;
        } else {
            host_->closePort();
            host_->setComPort(intPort_);
            host_->clearAutoPort();
            host_->openPort();
            if (!host_->liveData()) {
                host_->closePort();
                blnPortChanged_ = true;
            }
        }
    }
    host_->refreshMainWindow();
}

void frmOptions::cmdOK_Click() {
    cmdApply_Click();
    accept();
}

void frmOptions::cmdCancel_Click() {
    reject();
}

// ---- Colours --------------------------------------------------------------------------------

void frmOptions::cmdCursor1Color_Click() {
    chooseColor(Cursor1);
}
void frmOptions::cmdCursor2Color_Click() {
    chooseColor(Cursor2);
}
void frmOptions::cmdCursor3Color_Click() {
    chooseColor(Cursor3);
}
void frmOptions::cmdCursor4Color_Click() {
    chooseColor(Cursor4);
}
void frmOptions::cmdDisplayColor_Click() {
    chooseColor(PlotArea);
}
void frmOptions::cmdPrimaryTraceColor_Click() {
    chooseColor(PrimaryTrace);
}
void frmOptions::cmdReferenceTraceColor_Click() {
    chooseColor(ReferenceTrace);
}

void frmOptions::chooseColor(Target target) {
    // The chooser starts from the colour in use; cancelling it leaves everything as it was.
    const std::optional<QColor> chosen = chooser_(colorOf(target), this);
    if (!chosen || !chosen->isValid())
        return;
    setColorOf(target, *chosen);
    showSwatches();
}

void frmOptions::cmdDefault_Click() {
    for (int t = 0; t < TargetCount; ++t)
        setColorOf(static_cast<Target>(t), defaultColorOf(static_cast<Target>(t)));
    showSwatches();
}

QColor frmOptions::colorOf(Target target) const {
    switch (target) {
    case PlotArea:
        return host_->plotAreaColor();
    case PrimaryTrace:
        return host_->plotLineColor(names::kPlotCHa);
    case ReferenceTrace:
        return host_->plotLineColor(names::kPlotRef);
    default:
        return host_->cursorColor(QLatin1String(names::kCursors[static_cast<std::size_t>(target)]));
    }
}

void frmOptions::setColorOf(Target target, const QColor& color) {
    switch (target) {
    case PlotArea:
        host_->setPlotAreaColor(color);
        break;
    case PrimaryTrace:
        host_->setPlotLineColor(names::kPlotCHa, color);
        break;
    case ReferenceTrace:
        host_->setPlotLineColor(names::kPlotRef, color);
        break;
    default:
        host_->setCursorColor(QLatin1String(names::kCursors[static_cast<std::size_t>(target)]),
                              color);
        break;
    }
}

QColor frmOptions::defaultColorOf(Target target) const {
    switch (target) {
    case PlotArea:
        return host_->defaultPlotAreaColor();
    case PrimaryTrace:
        return host_->defaultPlotLineColor(names::kPlotCHa);
    case ReferenceTrace:
        return host_->defaultPlotLineColor(names::kPlotRef);
    default:
        return host_->defaultCursorColor(
            QLatin1String(names::kCursors[static_cast<std::size_t>(target)]));
    }
}

void frmOptions::showSwatches() {
    for (int t = 0; t < TargetCount; ++t) {
        QPushButton* button = colorButtons_[static_cast<std::size_t>(t)];
        const QColor color = colorOf(static_cast<Target>(t));
        button->setIcon(swatch(color, button->iconSize(), palette().color(QPalette::WindowText)));
        button->setAccessibleDescription(QStringLiteral("Color %1").arg(color.name()));
    }
}

// ---- Entry from the main window -------------------------------------------------------------

frmOptions* showOptions(QWidget* mainWindow, OptionsHost& host) {
    if (!mainWindow)
        return nullptr;
    auto* dialog = mainWindow->findChild<frmOptions*>(QStringLiteral("frmOptions"),
                                                      Qt::FindDirectChildrenOnly);
    if (!dialog)
        dialog = new frmOptions(host, mainWindow);
    dialog->setHost(host);
    dialog->Form_Load();
    runModal(*dialog);
    return dialog;
}

} // namespace zorvik
