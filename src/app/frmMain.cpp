// The main window's start-up, resizing and shutdown.
#include "app/frmMain.h"

#include "dialogs/OptionsHost.h"
#include "display/AcquisitionFeed.h"
#include "display/GraphNames.h"
#include "instrument/PortInventory.h"
#include "printing/PrintingServices.h"
#include "support/ElasticWidgetForm.h"
#include "support/Twips.h"
#include "support/cHTMLHelp.h"
#include "support/class_Elastic.h"
#include "support/frmSplash.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QElapsedTimer>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>

namespace zorvik {

namespace {
// Design size of the window (its outer frame), in twips.
constexpr int kDesignWidthTwips = 12000;
constexpr int kDesignHeightTwips = 9000;
// How long after showing the window a frame drawn by the window manager still counts as the
// first one (the window is then sized and centred again by its outer frame).
constexpr int kFrameWaitMs = 3000;
} // namespace

frmMain::frmMain(const MainWindowServices& services, QWidget* parent)
    : QMainWindow(parent), services_(services) {
    setObjectName("frmMain");
    setWindowTitle("Zorvik");
    link_ = services_.link;
    printing_ = services_.printing;
    connect(link_, &InstrumentLink::searchFinished, this, &frmMain::onSearchFinished);
    connect(link_, &InstrumentLink::received, this, &frmMain::onReceived);
    connect(link_, &InstrumentLink::failed, this, &frmMain::CWSerial1_Error);
    // The display chain is the first subscriber of the decoded frames.
    connect(services_.feed, &AcquisitionFeed::frameToShow, this, &frmMain::showFrame);
    buildPanel();
    connectPanel();
    // F1 from any of the program's windows (frmMainHelp.cpp).
    qApp->installEventFilter(this);
}

frmMain::~frmMain() = default;

void frmMain::Form_Load() {
    // 1. The splash, shown for at least its minimum time.
    splash_ = new frmSplash(programVersionRecord(), this);
    splash_->setPortSource([this] { return serialPortRows(); });
    splash_->SplashOn(this, services_.splashMinDisplayMs);

    // 2. Size and centre the window, by its outer frame as the resize handler measures it.
    //    The frame is known only once the window manager has framed the window: until then
    //    the frame counts as none, and placeAtDesignSize runs again when it becomes known.
    placeAtDesignSize();
    startupPlacement_ = true;

    // 3. The H-SCALE knob and the time scale: position 3, 1000000 divisions per second.
    CWKTimeRange->setValueSilently(3);
    SetTimeScale();

    // 4. The V-SCALE labels, the knob at position 1 and the vertical scale. The graph needs
    //    no display settings here: it always tracks its cursors and redraws on request.
    CWKChaLvl->setPositionLabels({"20 ", "10 ", "5 ", "2 ", "1 ", ".5 ", ".2 "});
    CWKChaLvl->setValueSilently(1);
    SetChaScale();

    // 5. Link defaults.
    lngBaudRate = kBaudRate;
    ComPort = 1;
    blnAutoPort = true;
    model_.blnLiveData = false;
    model_.blnRefLoaded = false;

    // 6. and 7. Bare status labels, indicator pointers hidden as at power-off.
    writeBareStatusLabels();
    hideIndicatorPointers();

    // 8. The design colours become the defaults of the options dialog.
    recordDefaultColors();

    // 9. The elastic layout records the design geometry; the resize handler stays out of it
    //    meanwhile.
    layoutSuspended_ = true;
    elastic_ = std::make_unique<class_Elastic>();
    elasticForm_ = std::make_unique<ElasticWidgetForm>(this);
    elastic_->Init(*elasticForm_);
    layoutSuspended_ = false;

    // 10. The saved settings: knobs, offset, colours and buttons, each through its handler.
    readSettings();

    // 11. The print control needs no option set here: it always prints the picture it is
    //     given. STORE stays disabled until the link is up.
    CWBStoreRef->setEnabled(false);

    // 12. The splash closes after its minimum time; 13. one layout pass for the present size
    //     (the elastic layout swallows this first call by design).
    if (splash_)
        splash_->SplashOff();
    Form_Resize();
}

bool frmMain::searching() const {
    return link_->searching();
}

void frmMain::placeAtDesignSize() {
    const QSize frameExtra = frameGeometry().size() - size();
    const QSize outer(twipsToPixels(kDesignWidthTwips), twipsToPixels(kDesignHeightTwips));
    resize(outer - frameExtra);
    if (const QScreen* s = screen()) {
        const QRect area = s->geometry();
        // move() places the outer frame's corner.
        move(area.x() + (area.width() - outer.width()) / 2,
             area.y() + (area.height() - outer.height()) / 2);
    }
}

void frmMain::settleStartupPlacement() {
    if (!startupPlacement_ || isMinimized() || isMaximized())
        return;
    // The window manager has put its frame around the window: size and centre it again by the
    // outer frame, once.
    if (frameGeometry().size() != size()) {
        startupPlacement_ = false;
        placeAtDesignSize();
    }
}

void frmMain::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);

    if (!startupPlacement_ || frameWatch_)
        return;
    // The frame arrives without an event of its own when the window manager keeps the client
    // area where it was asked to be: look for it a few times a second. Without a window
    // manager (or one that draws no frame) there is nothing to wait for after a while.
    frameWatch_ = new QTimer(this);
    frameWatchClock_.start();
    connect(frameWatch_, &QTimer::timeout, this, [this] {
        settleStartupPlacement();
        if (!startupPlacement_ || frameWatchClock_.elapsed() > kFrameWaitMs) {
            startupPlacement_ = false;
            frameWatch_->stop();
            frameWatch_->deleteLater();
        }
    });
    frameWatch_->start(20);
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    Form_Resize();
}

void frmMain::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    // The first key a user presses goes to POWER, where every session begins.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && !shownOnce_) {
        shownOnce_ = true;
        if (!focusWidget())
            CWBPwr->setFocus(Qt::ActiveWindowFocusReason);
    }
    if (event->type() == QEvent::WindowStateChange)
        Form_Resize();
}

void frmMain::Form_Resize() {
    if (isMinimized())
        return;
    // The height is corrected only once the width is legal: a width correction raises a
    // further resize event, in which the height is checked.
    const QSize frameExtra = frameGeometry().size() - size();
    const int outerWidth = pixelsToTwips(frameGeometry().width());
    const int outerHeight = pixelsToTwips(frameGeometry().height());
    if (outerWidth >= kDesignWidthTwips) {
        if (outerHeight < kDesignHeightTwips)
            resize(width(), twipsToPixels(kDesignHeightTwips) - frameExtra.height());
    } else {
        resize(twipsToPixels(kDesignWidthTwips) - frameExtra.width(), height());
    }
    if (layoutSuspended_ || !elastic_)
        return;
    elastic_->FormResize(*elasticForm_);
    // A window much wider than it is tall asks for type taller than the controls: each is
    // shown in the largest type that fits it, up to the size the layout gave.
    elasticForm_->fitTexts();
}

void frmMain::closeEvent(QCloseEvent* event) {
    Form_Unload();
    event->accept();
}

void frmMain::Form_Unload() {
    if (unloaded_)
        return;
    unloaded_ = true;
    // 1. The port is closed before anything is written.
    link_->close();
    // 2. The settings are saved.
    writeSettings();
    // 3. Every other open window closes.
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w != this && w->objectName() != "frmMain" && w->isVisible())
            w->close();
    }
    // 4. The objects the window owns are released.
    elasticForm_.reset();
    elastic_.reset();
    help_.reset();
}

void frmMain::About(QWidget* owner) {
    if (!splash_) {
        splash_ = new frmSplash(programVersionRecord(), this);
        splash_->setPortSource([this] { return serialPortRows(); });
    }
    splash_->About(owner ? owner : this);
}

QString frmMain::helpFile() const {
    return QDir(services_.programFolder).filePath("Help/index.html");
}

QList<SerialPortRow> frmMain::serialPortRows() const {
    QList<SerialPortRow> rows;
    for (const PortEntry& e : portInventory(*services_.ports)) {
        SerialPortRow row;
        row.devicePath = QString::fromStdString(e.device);
        row.system = QString::fromStdString(usbSummary(e));
        row.accessible = e.accessible;
        if (e.port > 0) {
            row.comName = QString::fromStdString(PortMap::portName(e.port));
            row.exists = ComPortExists(static_cast<std::int16_t>(e.port));
            if (e.mapped)
                row.system =
                    row.system.isEmpty() ? "(from [PORTS])" : row.system + " (from [PORTS])";
        } else {
            row.exists = e.present;
            if (!e.portsLine.empty())
                row.system += QString(row.system.isEmpty() ? "" : "; ") + "add " +
                              QString::fromStdString(e.portsLine) + " to [PORTS]";
        }
        rows.append(row);
    }
    return rows;
}

void frmMain::setStatus(QLabel* panel, const QString& text) {
    panel->setText(text);
    panel->setAccessibleName(text);
}

void frmMain::writeBareStatusLabels() {
    setStatus(sbrBaudRate, "Baud: ");
    setStatus(sbrComPort, "Com: ");
    setStatus(sbrSampleRate, "Sample Rate: ");
}

void frmMain::hideIndicatorPointers() {
    CWSTrigger->setPointerVisible(false);
    CWSTrigger->setPointerVisible(names::kPointer1, false);
    CWSCoupling->setPointerVisible(false);
    CWSRange->setPointerVisible(false);
    CWSTrigInd->setPointerVisible(names::kTrigLvl, false);
}

void frmMain::recordDefaultColors() {
    for (int i = 0; i < 4; ++i)
        defaultColors.cursors[static_cast<std::size_t>(i)] =
            CWGraph1->cursorColor(QString("Cursor%1").arg(i + 1));
    defaultColors.display = CWGraph1->plotAreaColor();
    defaultColors.primaryTrace = CWGraph1->plotColor(names::kPlotCHa);
    defaultColors.referenceTrace = CWGraph1->plotColor(names::kPlotRef);
}

} // namespace zorvik
