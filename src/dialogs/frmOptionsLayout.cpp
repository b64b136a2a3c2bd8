// The controls of the Options dialog: names, captions, tool tips, accessible names, their
// places on the two pages, the key order and the connections to the handlers.
#include "dialogs/frmOptions.h"

#include "support/Twips.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QStyleOptionTabWidgetFrame>
#include <QStylePainter>
#include <QTabBar>
#include <QVBoxLayout>

namespace zorvik {

namespace {

// Geometry of the dialog in pixels.
constexpr int kMargin = 8;
constexpr int kPaneWidth = 420;
constexpr int kPaneHeight = 196;
constexpr int kPageInset = 6;
constexpr int kButtonWidth = 84;
constexpr int kButtonHeight = 26;
constexpr int kButtonGap = 6;

/// The body of the tab strip: the framed panel under the tabs on which the pages lie.
class TabPane : public QWidget {
public:
    TabPane(QTabBar* tabs, QWidget* parent) : QWidget(parent), tabs_(tabs) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QStylePainter painter(this);
        QStyleOptionTabWidgetFrame option;
        option.initFrom(this);
        option.shape = QTabBar::RoundedNorth;
        option.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
        option.tabBarSize = tabs_->size();
        option.tabBarRect = QRect(tabs_->pos() - pos(), tabs_->size());
        const QRect selected = tabs_->tabRect(tabs_->currentIndex());
        option.selectedTabRect = selected.translated(tabs_->pos() - pos());
        painter.drawPrimitive(QStyle::PE_FrameTabWidget, option);
    }

private:
    QTabBar* tabs_;
};

QGroupBox* frame(const char* name, const QString& caption, QWidget* parent) {
    auto* box = new QGroupBox(caption, parent);
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(caption);
    return box;
}

QPushButton* button(const char* name, const QString& caption, QWidget* parent) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    b->setAccessibleName(caption);
    return b;
}

} // namespace

void frmOptions::placeControls() {
    tbsOptions = new QTabBar(this);
    tbsOptions->setObjectName(QStringLiteral("tbsOptions"));
    tbsOptions->setAccessibleName(QStringLiteral("Options pages"));
    tbsOptions->setDrawBase(false);
    tbsOptions->setExpanding(false);
    const QString tabCaptions[] = {QStringLiteral("Communications"), QStringLiteral("Colors")};
    const QString tabKeys[] = {QStringLiteral("tabCommunications"), QStringLiteral("tabColors")};
    const QString tabTips[] = {QStringLiteral("Set Options for Com Port"),
                               QStringLiteral("Set Options for Colors")};
    for (int i = 0; i < 2; ++i) {
        tbsOptions->addTab(tabCaptions[i]);
        tbsOptions->setTabData(i, tabKeys[i]);
        tbsOptions->setTabToolTip(i, tabTips[i]);
        tbsOptions->setAccessibleTabName(i, tabCaptions[i]);
    }

    const int tabHeight = tbsOptions->sizeHint().height();
    tbsOptions->setGeometry(kMargin, kMargin, kPaneWidth, tabHeight);
    const int overlap = style()->pixelMetric(QStyle::PM_TabBarBaseOverlap, nullptr, tbsOptions);
    const int paneTop = kMargin + tabHeight - overlap;
    tabPane_ = new TabPane(tbsOptions, this);
    tabPane_->setGeometry(kMargin, paneTop, kPaneWidth, kPaneHeight);
    tbsOptions->raise();

    // The pages lie on the pane, the selected one at its left edge and the other far out of
    // sight; each page is as wide as the pane leaves room for.
    const int pageLeft = twipsToPixels(kPageLeftTwips);
    const int pageWidth = kMargin + kPaneWidth - kPageInset - pageLeft;
    for (int i = 0; i < 2; ++i) {
        auto* page = new QWidget(this);
        page->setObjectName(QStringLiteral("picOptions(%1)").arg(i));
        page->setAccessibleName(tabCaptions[i]);
        page->setGeometry(pageLeft, paneTop + kPageInset, pageWidth, kPaneHeight - 2 * kPageInset);
        picOptions[static_cast<std::size_t>(i)] = page;
    }
    buildCommunicationsPage(picOptions[0]);
    buildColorsPage(picOptions[1]);

    cmdOK = button("cmdOK", QStringLiteral("OK"), this);
    cmdCancel = button("cmdCancel", QStringLiteral("Cancel"), this);
    cmdApply = button("cmdApply", QStringLiteral("Apply"), this);
    cmdOK->setDefault(true);
    const int buttonTop = paneTop + kPaneHeight + kMargin + 2;
    int left = kMargin + kPaneWidth;
    for (QPushButton* b : {cmdApply, cmdCancel, cmdOK}) {
        left -= kButtonWidth;
        b->setGeometry(left, buttonTop, kButtonWidth, kButtonHeight);
        left -= kButtonGap;
    }
    setFixedSize(kMargin + kPaneWidth + kMargin, buttonTop + kButtonHeight + kMargin);

    // Key order: the tabs, the page in front (the other one is disabled), then the buttons.
    QWidget* order[] = {tbsOptions,
                        cboComPort,
                        cboBaudRate,
                        colorButtons_[Cursor1],
                        colorButtons_[Cursor2],
                        colorButtons_[Cursor3],
                        colorButtons_[Cursor4],
                        colorButtons_[PlotArea],
                        colorButtons_[PrimaryTrace],
                        colorButtons_[ReferenceTrace],
                        cmdDefault,
                        cmdOK,
                        cmdCancel,
                        cmdApply};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);

    connect(tbsOptions, &QTabBar::currentChanged, this, [this] {
        tbsOptions_Click();
        tabPane_->update();
    });
    connect(cboComPort, &QComboBox::currentIndexChanged, this, [this] { cboComPort_Click(); });
    connect(cmdOK, &QPushButton::clicked, this, &frmOptions::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmOptions::cmdCancel_Click);
    connect(cmdApply, &QPushButton::clicked, this, &frmOptions::cmdApply_Click);
    connect(cmdDefault, &QPushButton::clicked, this, &frmOptions::cmdDefault_Click);
    void (frmOptions::*handlers[])() = {
        &frmOptions::cmdCursor1Color_Click,       &frmOptions::cmdCursor2Color_Click,
        &frmOptions::cmdCursor3Color_Click,       &frmOptions::cmdCursor4Color_Click,
        &frmOptions::cmdDisplayColor_Click,       &frmOptions::cmdPrimaryTraceColor_Click,
        &frmOptions::cmdReferenceTraceColor_Click};
    for (int t = 0; t < TargetCount; ++t)
        connect(colorButtons_[static_cast<std::size_t>(t)], &QPushButton::clicked, this,
                handlers[t]);

    tbsOptions_Click();
}

void frmOptions::buildCommunicationsPage(QWidget* page) {
    fraSerialPort = frame("fraSerialPort", QStringLiteral("Serial Port"), page);

    cboComPort = new QComboBox(fraSerialPort);
    cboComPort->setObjectName(QStringLiteral("cboComPort"));
    cboComPort->setAccessibleName(QStringLiteral("Serial Port"));
    for (int n = 1; n <= 4; ++n)
        cboComPort->addItem(QStringLiteral("COM %1").arg(n));

    cboBaudRate = new QComboBox(fraSerialPort);
    cboBaudRate->setObjectName(QStringLiteral("cboBaudRate"));
    cboBaudRate->setAccessibleName(QStringLiteral("Baud Rate"));
    cboBaudRate->addItem(QStringLiteral("19200"));

    auto* portLabel = new QLabel(QStringLiteral("&Port:"), fraSerialPort);
    portLabel->setBuddy(cboComPort);
    auto* baudLabel = new QLabel(QStringLiteral("&Baud Rate:"), fraSerialPort);
    baudLabel->setBuddy(cboBaudRate);

    auto* form = new QFormLayout(fraSerialPort);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(portLabel, cboComPort);
    form->addRow(baudLabel, cboBaudRate);

    auto* layout = new QGridLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(fraSerialPort, 0, 0);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);
    layout->setColumnMinimumWidth(0, 260);
}

void frmOptions::buildColorsPage(QWidget* page) {
    fraVcursors = frame("fraVcursors", QStringLiteral("V-Cursors"), page);
    fraHcursors = frame("fraHcursors", QStringLiteral("H-Cursors"), page);
    fraDisplay = frame("fraDisplay", QStringLiteral("Display"), page);
    fraRestore = frame("fraRestore", QStringLiteral("Restore"), page);

    struct ButtonDef {
        const char* name;
        const char* caption;
        QGroupBox* frame;
    };
    const ButtonDef defs[TargetCount] = {
        {"cmdCursor1Color", "Cursor 1", fraVcursors},
        {"cmdCursor2Color", "Cursor 2", fraVcursors},
        {"cmdCursor3Color", "Cursor 3", fraHcursors},
        {"cmdCursor4Color", "Cursor 4", fraHcursors},
        {"cmdDisplayColor", "Plot Area", fraDisplay},
        {"cmdPrimaryTraceColor", "Primary Trace", fraDisplay},
        {"cmdReferenceTraceColor", "Ref. Trace", fraDisplay},
    };
    for (QGroupBox* box : {fraVcursors, fraHcursors, fraDisplay, fraRestore})
        box->setLayout(new QVBoxLayout);
    for (int t = 0; t < TargetCount; ++t) {
        const ButtonDef& def = defs[t];
        QPushButton* b = button(def.name, QLatin1String(def.caption), def.frame);
        b->setIconSize(QSize(20, 12));
        def.frame->layout()->addWidget(b);
        colorButtons_[static_cast<std::size_t>(t)] = b;
    }
    cmdDefault = button("cmdDefault", QStringLiteral("Restore Defaults"), fraRestore);
    fraRestore->layout()->addWidget(cmdDefault);
    for (QGroupBox* box : {fraVcursors, fraHcursors, fraDisplay})
        static_cast<QVBoxLayout*>(box->layout())->addStretch(1);

    auto* layout = new QGridLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(fraVcursors, 0, 0);
    layout->addWidget(fraHcursors, 0, 1);
    layout->addWidget(fraDisplay, 0, 2, 2, 1);
    layout->addWidget(fraRestore, 1, 0, 1, 2);
    layout->setRowStretch(0, 1);
}

} // namespace zorvik
