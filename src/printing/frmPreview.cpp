// The print preview: loading, zoom, fitting the page to the window, scroll bars and drawing.
#include "printing/frmPreview.h"

#include "printing/PreviewPictureBox.h"
#include "printing/PrintingServices.h"
#include "printing/frmPageSetup.h"
#include "support/MessageBox.h"
#include "support/ModalRunner.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QResizeEvent>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QToolBar>
#include <algorithm>
#include <cmath>

namespace zorvik {

namespace {
constexpr int kZoomRows[] = {25, 50, 75, 100};
constexpr int kRow100 = 3;
const QColor kBackdrop(128, 128, 128);
// A scroll bar's range is kept within 16 bits; larger boxes scroll in power-of-two steps.
constexpr int kScrollLimit = 32767;
constexpr qsizetype kDefaultMaxPageImageBytes = qsizetype(256) * 1024 * 1024;
qsizetype g_maxPageImageBytes = kDefaultMaxPageImageBytes;

const QString kTooLarge =
    QStringLiteral("Picture too large.  Try reducing picture size or PreviewZoom Level.");
} // namespace

frmPreview::frmPreview(PrintingServices& services, QWidget* owner)
    : QDialog(owner), m_services(services) {
    setObjectName(QStringLiteral("frmPreview"));
    setWindowTitle(QStringLiteral("Print Preview"));
    setModal(true);
    setSizeGripEnabled(false);
    setWindowFlag(Qt::WindowMinMaxButtonsHint, true);
    Form_Load();
}

void frmPreview::buildControls() {
    // The picture box is made first so that the toolbar and the scroll bars lie above it.
    pb = new PreviewPictureBox(this);
    pb->setObjectName(QStringLiteral("pb"));
    pb->resize(1, 1);

    tb = new QToolBar(this);
    tb->setObjectName(QStringLiteral("tb"));
    tb->setMovable(false);
    tb->setToolButtonStyle(Qt::ToolButtonTextOnly);
    QAction* print = tb->addAction(QStringLiteral("Print"));
    print->setObjectName(QStringLiteral("Print"));
    print->setToolTip(QStringLiteral("Print the page"));
    QAction* setup = tb->addAction(QStringLiteral("Page Setup"));
    setup->setObjectName(QStringLiteral("PSetup"));
    setup->setToolTip(QStringLiteral("Printer, margins, scale, header and footer"));
    for (QAction* action : {print, setup})
        connect(action, &QAction::triggered, this,
                [this, action] { tb_ButtonClick(action->objectName()); });

    fraZoom = new QFrame(tb);
    fraZoom->setObjectName(QStringLiteral("fraZoom"));
    auto* zoomRow = new QHBoxLayout(fraZoom);
    zoomRow->setContentsMargins(8, 0, 0, 0);
    cboZoom = new QComboBox(fraZoom);
    cboZoom->setObjectName(QStringLiteral("cboZoom"));
    cboZoom->addItems({QStringLiteral("25%"), QStringLiteral("50%"), QStringLiteral("75%"),
                       QStringLiteral("100%")});
    cboZoom->setToolTip(QStringLiteral("Zoom"));
    zoomRow->addWidget(new QLabel(QStringLiteral("Zoom:"), fraZoom));
    zoomRow->addWidget(cboZoom);
    tb->addWidget(fraZoom);
    connect(cboZoom, &QComboBox::activated, this, [this] { cboZoom_Click(); });

    hsc = new QScrollBar(Qt::Horizontal, this);
    hsc->setObjectName(QStringLiteral("hsc"));
    vsc = new QScrollBar(Qt::Vertical, this);
    vsc->setObjectName(QStringLiteral("vsc"));
    hsc->hide();
    vsc->hide();
    connect(hsc, &QScrollBar::valueChanged, this, &frmPreview::hsc_Change);
    connect(vsc, &QScrollBar::valueChanged, this, &frmPreview::vsc_Change);

    // The window around a page smaller than the viewport is the same grey as the page's border.
    QPalette backdrop = palette();
    backdrop.setColor(QPalette::Window, kBackdrop);
    setPalette(backdrop);
    setAutoFillBackground(true);
    for (QWidget* control : std::initializer_list<QWidget*>{tb, hsc, vsc})
        control->setPalette(QApplication::palette(control));
    tb->setAutoFillBackground(true);

    // Fixed allowances of the layout: the toolbar and the scroll bars' thickness.
    m_tbHeight = tb->sizeHint().height();
    m_hscHeight = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, hsc);
    m_vscWidth = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, vsc);
    tb->setGeometry(0, 0, 400, m_tbHeight);
    pb->move(0, m_tbHeight);
}

void frmPreview::Form_Load() {
    m_printControl = &m_services.EasyPrint1();
    buildControls();

    m_printControl->setPrintPicture(&m_services.pictureHolder());
    // Only the left margin is set here; the print button has just set all four.
    m_printControl->setMargin(1, m_services.keptMargin(1));
    m_printControl->PrintPage(&m_target);

    // The preview opens at 100 %, the page's real size.
    {
        const QSignalBlocker quiet(cboZoom);
        cboZoom->setCurrentIndex(m_zoomRow);
    }
    cboZoom_Click();
    placeAgainstScreen();

    // The print button showed the busy pointer while it took the picture.
    if (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
}

void frmPreview::placeAgainstScreen() {
    const QScreen* screen =
        parentWidget() ? parentWidget()->screen() : QApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 800, 600);
    const QSize page = pageSizeAtZoom();
    // As large as the page with its border and the scroll bars, within 90 % of the screen.
    const int width =
        std::min(page.width() + 2 * kSheetPad + m_vscWidth, available.width() * 9 / 10);
    const int height = std::min(m_tbHeight + page.height() + 2 * kSheetPad + m_hscHeight,
                                available.height() * 9 / 10);
    resize(width, height);
    move(available.center() - QPoint(width / 2, height / 2));
}

QSize frmPreview::pageSizeAtZoom() const {
    const QSizeF paper = m_printControl ? m_printControl->paperInches() : QSizeF(8.5, 11);
    const QScreen* screen = QApplication::primaryScreen();
    const double dpiX = screen ? screen->logicalDotsPerInchX() : 96.0;
    const double dpiY = screen ? screen->logicalDotsPerInchY() : 96.0;
    const double zoom = (m_zoom > 0 ? m_zoom : 100) / 100.0;
    return QSize(static_cast<int>(std::lround(paper.width() * dpiX * zoom)),
                 static_cast<int>(std::lround(paper.height() * dpiY * zoom)));
}

void frmPreview::PreviewRefresh() {
    if (!m_printControl || !m_printControl->PrintPage(&m_target))
        return;
    if (isMinimized())
        return;
    FitPage();
    DrawPage();
    {
        const QSignalBlocker quiet(cboZoom);
        cboZoom->setCurrentIndex(m_zoomRow);
    }
    cboZoom_Click();
}

void frmPreview::cboZoom_Click() {
    const int row = cboZoom->currentIndex();
    if (row < 0 || row > kRow100)
        return;
    m_zoomRow = row;
    SetZoom(kZoomRows[row]);
}

void frmPreview::SetZoom(int p) {
    if (p == m_zoom || m_zoom == 0 || m_recordOnly) {
        m_zoom = p;
        return;
    }
    pb->resize(pb->width() * p / m_zoom, pb->height() * p / m_zoom);
    // The new zoom is in force before the page is drawn again at it.
    m_zoom = p;
    m_resizing = true;
    Form_Resize();
    m_resizing = false;
}

void frmPreview::recordZoom100() {
    m_recordOnly = true;
    SetZoom(100);
    m_recordOnly = false;
    // The list shows the zoom now drawn; the row the user chose is kept for the next refresh.
    const QSignalBlocker quiet(cboZoom);
    cboZoom->setCurrentIndex(kRow100);
}

void frmPreview::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    Form_Resize();
}

void frmPreview::Form_Resize() {
    if (isMinimized() || !pb || !m_printControl)
        return;
    FitPage();
    DrawPage();
}

QSize frmPreview::viewportFor(QSize content) const {
    // A scroll bar takes its room from the viewport only when the content needs it; a bar in
    // one direction can make the other one needed.
    bool vertical = false;
    bool horizontal = false;
    for (int pass = 0; pass < 2; ++pass) {
        const int w = width() - (vertical ? m_vscWidth : 0);
        const int h = height() - m_tbHeight - (horizontal ? m_hscHeight : 0);
        vertical = content.height() > h;
        horizontal = content.width() > w;
    }
    return QSize(std::max(0, width() - (vertical ? m_vscWidth : 0)),
                 std::max(0, height() - m_tbHeight - (horizontal ? m_hscHeight : 0)));
}

int frmPreview::layoutCode() const {
    // The picture box against the window below the toolbar, without any scroll bar.
    const bool vertical = pb->height() > height() - m_tbHeight;
    const bool horizontal = pb->width() > width();
    return (vertical ? 1 : 0) | (horizontal ? 2 : 0);
}

void frmPreview::FitPage() {
    tb->setGeometry(0, 0, width(), m_tbHeight);
    if (!m_resizing) {
        const int layout = layoutCode();
        // The scroll-bar allowance comes off both directions only when the vertical bar is
        // needed (codes 1 and 3), as the window has always laid itself out.
        const bool bars = layout == 1 || layout == 3;
        const int availableWidth = width() - (bars ? m_vscWidth : 0);
        const int availableHeight = height() - m_tbHeight - (bars ? m_hscHeight : 0);
        bool enlarged = false;
        if (pb->width() < availableWidth) {
            pb->resize(availableWidth, pb->height());
            enlarged = true;
        }
        if (pb->height() < availableHeight) {
            pb->resize(pb->width(), availableHeight);
            enlarged = true;
        }
        if (enlarged)
            recordZoom100();
    }
    SetScrollBars(layoutCode());
}

void frmPreview::SetScrollBars(int layout) {
    if (layout == 0) {
        hsc->hide();
        vsc->hide();
        pb->move(0, m_tbHeight);
        return;
    }
    if (layout == 1 || layout == 3) {
        m_vStep = 1;
        while (pb->height() / m_vStep > kScrollLimit)
            m_vStep *= 2;
        const int view = height() - m_tbHeight - (layout == 3 ? m_hscHeight : 0);
        vsc->setGeometry(width() - m_vscWidth, m_tbHeight, m_vscWidth, std::max(0, view));
        vsc->setPageStep(std::max(1, view / m_vStep));
        vsc->setSingleStep(std::max(1, view / m_vStep / 10));
        vsc->setMaximum(std::max(0, (pb->height() - view + m_vStep - 1) / m_vStep));
    }
    if (layout == 2 || layout == 3) {
        m_hStep = 1;
        while (pb->width() / m_hStep > kScrollLimit)
            m_hStep *= 2;
        const int view = width() - (layout == 3 ? m_vscWidth : 0);
        hsc->setGeometry(0, height() - m_hscHeight, std::max(0, view), m_hscHeight);
        hsc->setPageStep(std::max(1, view / m_hStep));
        hsc->setSingleStep(std::max(1, view / m_hStep / 10));
        hsc->setMaximum(std::max(0, (pb->width() - view + m_hStep - 1) / m_hStep));
    }
    if (layout == 1) {
        vsc->show();
        hsc->hide();
        pb->move(0, pb->y());
        vsc_Change(vsc->value());
    } else if (layout == 2) {
        hsc->show();
        vsc->hide();
        pb->move(pb->x(), m_tbHeight);
        hsc_Change(hsc->value());
    } else {
        hsc->show();
        vsc->show();
        hsc_Change(hsc->value());
        vsc_Change(vsc->value());
    }
}

void frmPreview::hsc_Change(int value) {
    pb->move(-(value * m_hStep), pb->y());
}

void frmPreview::vsc_Change(int value) {
    pb->move(pb->x(), m_tbHeight - value * m_vStep);
    tb->raise();
}

bool frmPreview::DrawPage() {
    if (!m_printControl)
        return false;
    const QSize page = pageSizeAtZoom();
    const qint64 metric =
        qint64(m_printControl->PageMetric1()) * qint64(m_printControl->PageMetric2());
    // The box is sized to the sheet with its grey border, and fills at least the viewport, in
    // which a smaller sheet stands centred: after a change from portrait to landscape, or at a
    // lower zoom, no band of an earlier, larger page is left around it.
    const QSize sheetBox(page.width() + 2 * kSheetPad, page.height() + 2 * kSheetPad);
    const QSize box = sheetBox.expandedTo(viewportFor(sheetBox));
    const double ratio = devicePixelRatioF();
    const qint64 bytes =
        qint64(std::ceil(box.width() * ratio)) * qint64(std::ceil(box.height() * ratio)) * 4;
    QImage canvas;
    if (bytes <= maxPageImageBytes())
        canvas = QImage((QSizeF(box) * ratio).toSize(), QImage::Format_RGB32);
    if (canvas.isNull()) {
        MessageBoxes::show(this, MsgIcon::None, QStringLiteral("Zorvik"), kTooLarge,
                           QMessageBox::Ok);
        return false;
    }
    canvas.setDevicePixelRatio(ratio);
    canvas.fill(kBackdrop);
    QPainter painter(&canvas);
    const QRect sheet(QPoint((box.width() - page.width()) / 2,
                             std::max(kSheetPad, (box.height() - page.height()) / 2)),
                      page);
    painter.fillRect(sheet.translated(3, 3), QColor(64, 64, 64));
    painter.fillRect(sheet, Qt::white);
    // Nothing to paint before the print control made its first page image.
    if (metric > 0 && !m_target.page.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(sheet, m_target.page);
    }
    painter.setPen(Qt::black);
    painter.drawRect(sheet.adjusted(0, 0, -1, -1));
    painter.end();

    const bool grown = box != pb->size();
    pb->resize(box);
    pb->setImage(canvas);
    if (grown)
        SetScrollBars(layoutCode());
    return true;
}

void frmPreview::tb_ButtonClick(const QString& key) {
    if (!m_printControl)
        return;
    if (key == QStringLiteral("PSetup")) {
        frmPageSetup setup(m_services, this);
        runModal(setup);
    } else if (key == QStringLiteral("Print")) {
        m_printControl->setDialogParent(this);
        // A failed print counts as cancelled and the preview stays open.
        if (!m_printControl->PrintPage()) {
            m_printControl->setCancel(true);
            return;
        }
        close();
    }
}

void frmPreview::done(int result) {
    // The margins as they now stand are where the next print starts from.
    if (m_printControl) {
        for (int i = 1; i <= 4; ++i)
            m_services.setKeptMargin(i, m_printControl->Margin(i));
        m_printControl = nullptr;
    }
    QDialog::done(result);
}

qsizetype frmPreview::maxPageImageBytes() {
    return g_maxPageImageBytes;
}

void frmPreview::setMaxPageImageBytes(qsizetype bytes) {
    g_maxPageImageBytes = bytes > 0 ? bytes : kDefaultMaxPageImageBytes;
}

} // namespace zorvik
