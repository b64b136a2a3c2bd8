// The main window as the options dialog sees it: the port in use and the graph's colours.
#include "app/frmMain.h"

#include "dialogs/OptionsHost.h"
#include "dialogs/frmOptions.h"
#include "display/GraphNames.h"
#include "instrument/PortInventory.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QTimer>

namespace zorvik {

namespace {

class MainWindowOptions final : public OptionsHost {
public:
    explicit MainWindowOptions(frmMain& w) : w_(w) {}

    bool ComPortExists(int n) const override {
        return w_.ComPortExists(static_cast<std::int16_t>(n));
    }
    QString portDescription(int n) const override {
        for (const PortEntry& e : portInventory(w_.ports())) {
            if (e.port != n)
                continue;
            const std::string system = usbSummary(e);
            return QString::fromStdString(system.empty() ? e.device : e.device + ": " + system);
        }
        return {};
    }
    std::int16_t ComPort() const override { return w_.ComPort; }
    void setComPort(std::int16_t n) override { w_.ComPort = n; }
    void clearAutoPort() override { w_.blnAutoPort = false; }
    bool portIsOpen() const override { return w_.link().serial().isOpen(); }
    void closePort() override { w_.closePort(); }
    void openPort() override { w_.openPort(); }
    bool liveData() const override { return w_.model().blnLiveData; }
    void resumeReception() override { w_.resumeAcquisition(); }

    QColor cursorColor(const QString& cursor) const override {
        return w_.panel().CWGraph1->cursorColor(cursor);
    }
    void setCursorColor(const QString& cursor, const QColor& color) override {
        w_.panel().CWGraph1->setCursorColor(cursor, color);
    }
    QColor plotAreaColor() const override { return w_.panel().CWGraph1->plotAreaColor(); }
    void setPlotAreaColor(const QColor& color) override {
        w_.panel().CWGraph1->setPlotAreaColor(color);
    }
    QColor plotLineColor(const QString& plot) const override {
        return w_.panel().CWGraph1->plotColor(plot);
    }
    void setPlotLineColor(const QString& plot, const QColor& color) override {
        w_.panel().CWGraph1->setPlotColor(plot, color);
    }
    QColor defaultCursorColor(const QString& cursor) const override {
        const int i = cursor.mid(6).toInt() - 1;
        if (i < 0 || i > 3)
            return {};
        return w_.panel().defaultColors.cursors[static_cast<std::size_t>(i)];
    }
    QColor defaultPlotAreaColor() const override { return w_.panel().defaultColors.display; }
    QColor defaultPlotLineColor(const QString& plot) const override {
        return plot == names::kPlotRef ? w_.panel().defaultColors.referenceTrace
                                       : w_.panel().defaultColors.primaryTrace;
    }
    void refreshMainWindow() override {
        w_.panel().CWGraph1->redraw();
        w_.update();
    }

private:
    frmMain& w_;
};

} // namespace

void frmMain::CWBMenu_ValueChanged(bool Value) {
    if (!Value)
        return;
    // The dialog opens from the event loop, after the press has been handled.
    QTimer::singleShot(0, this, [this] {
        showOptionsForm();
        releaseAfterModal(CWBMenu);
    });
}

void frmMain::showOptionsForm() {
    if (!optionsHost_)
        optionsHost_ = std::make_unique<MainWindowOptions>(*this);
    showOptions(this, *optionsHost_);
}

void frmMain::closePort() {
    // A port change while POWER still searches ends the search: POWER goes off quietly and
    // the next press searches (or uses the chosen port) afresh.
    if (link_->searching()) {
        link_->cancelSearch();
        CWBPwr->setValue(false);
        return;
    }
    link_->stopReception();
    link_->serial().close();
}

void frmMain::openPort() {
    if (!link_->openPort(ComPort)) {
        // A port that has gone or cannot be opened takes the link's own failure path.
        CWSerial1_Error();
        return;
    }
    setStatus(sbrComPort, QString("Com: %1").arg(ComPort));
    if (link_->machine().blnAcquire)
        link_->resetAndArm();
}

} // namespace zorvik
