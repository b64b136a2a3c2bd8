// The print control: settings, unit conversion, printing to the current printer or a PDF file.
#include "printing/PrintControl.h"

#include "printing/PictureHolder.h"
#include "support/MessageBox.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLineEdit>
#include <QLocale>
#include <QPageSize>
#include <QPainter>
#include <QPrinterInfo>
#include <QScreen>
#include <QStandardPaths>
#include <cmath>
#include <utility>

namespace zorvik {

namespace {
constexpr float kCentimetresPerInch = 2.54f;
constexpr double kPointsPerInch = 72.0;
// The preview page image is kept below this many bytes; larger pages count as failed.
constexpr qsizetype kMaxPreviewBytes = qsizetype(512) * 1024 * 1024;

PrintControl::PdfPathChooser& pdfPathChooser() {
    static PrintControl::PdfPathChooser chooser;
    return chooser;
}

std::function<QStringList()>& printerLister() {
    static std::function<QStringList()> lister;
    return lister;
}

QString askForPdfPath(QWidget* parent, const QString& suggested) {
    QString path = QFileDialog::getSaveFileName(parent, QStringLiteral("Print to File"), suggested,
                                                QStringLiteral("PDF files (*.pdf)"));
    if (!path.isEmpty() && QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".pdf");
    return path;
}

struct ScreenResolution {
    double dpiX = 96;
    double dpiY = 96;
    double ratio = 1;
};

ScreenResolution screenResolution() {
    ScreenResolution result;
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        result.dpiX = screen->logicalDotsPerInchX();
        result.dpiY = screen->logicalDotsPerInchY();
        result.ratio = screen->devicePixelRatio();
    }
    return result;
}
} // namespace

QString PrintControl::pdfPrinterName() {
    return QStringLiteral("PDF file");
}

PrintControl::PrintControl() {
    m_margins.fill(kDefaultMarginCentimeters);
    QString initial = QPrinterInfo::defaultPrinterName();
    const QStringList printers = installedPrinters();
    if (!printers.contains(initial))
        initial = printers.isEmpty() ? QString() : printers.first();
    m_printerName = initial;
    m_currentPrinter = initial;
    // A PDF page takes the paper size of the user's country: Letter in the United States, A4
    // elsewhere. A printer brings its own default paper.
    const bool letter = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    m_printer.setPageSize(QPageSize(letter ? QPageSize::Letter : QPageSize::A4));
    applyCurrentPrinter();
}

float PrintControl::Margin(int i) const {
    if (i < 1 || i > 4)
        return 0.0f;
    return m_margins[static_cast<std::size_t>(i - 1)];
}

void PrintControl::setMargin(int i, float value) {
    if (i < 1 || i > 4)
        return;
    m_margins[static_cast<std::size_t>(i - 1)] = value;
}

void PrintControl::setMarginUnits(int units) {
    if (units != kUnitInches && units != kUnitCentimeters)
        return;
    if (units == m_marginUnits)
        return;
    for (float& margin : m_margins)
        margin = units == kUnitInches ? margin / kCentimetresPerInch : margin * kCentimetresPerInch;
    m_marginUnits = units;
}

void PrintControl::LoadHeaderFooter(QLineEdit* footerBox, QLineEdit* headerBox) const {
    if (footerBox)
        footerBox->setText(m_footer);
    if (headerBox)
        headerBox->setText(m_header);
}

QStringList PrintControl::installedPrinters() const {
    QStringList names = printerLister() ? printerLister()() : QPrinterInfo::availablePrinterNames();
    // With nothing installed, printing writes a PDF file; the list then offers that one row so
    // that the page-setup dialog always shows where the page will go.
    if (names.isEmpty())
        names << pdfPrinterName();
    return names;
}

void PrintControl::setCurrentPrinter(const QString& deviceName) {
    m_currentPrinter = deviceName;
    applyCurrentPrinter();
}

void PrintControl::applyCurrentPrinter() {
    // Only a printer the system really has is opened; anything else (the PDF row) makes a file.
    if (!m_currentPrinter.isEmpty() &&
        QPrinterInfo::availablePrinterNames().contains(m_currentPrinter)) {
        if (m_printer.printerName() != m_currentPrinter) {
            m_printer.setOutputFileName(QString());
            m_printer.setOutputFormat(QPrinter::NativeFormat);
            m_printer.setPrinterName(m_currentPrinter);
        }
    } else if (m_printer.outputFormat() != QPrinter::PdfFormat) {
        const QPageLayout layout = m_printer.pageLayout();
        m_printer.setOutputFormat(QPrinter::PdfFormat);
        m_printer.setPageLayout(layout);
    }
    m_printer.setFullPage(true);
}

QPrinter& PrintControl::printer() {
    applyCurrentPrinter();
    return m_printer;
}

QSizeF PrintControl::paperInches() {
    const QRectF points = printer().pageLayout().fullRectPoints();
    return QSizeF(points.width() / kPointsPerInch, points.height() / kPointsPerInch);
}

PageContent PrintControl::content() {
    PageContent page;
    page.paper = paperInches();
    const float toInches = m_marginUnits == kUnitCentimeters ? 1.0f / kCentimetresPerInch : 1.0f;
    page.left = Margin(1) * toInches;
    page.right = Margin(2) * toInches;
    page.top = Margin(3) * toInches;
    page.bottom = Margin(4) * toInches;
    page.header = m_header;
    page.footer = m_footer;
    page.scalePercent = m_printScale;
    page.fitToPage = m_printMode == kModeFitToPage;
    if (m_printPicture)
        page.picture = m_printPicture->Picture();
    const ScreenResolution screen = screenResolution();
    page.pictureDpiX = screen.dpiX;
    page.pictureDpiY = screen.dpiY;
    return page;
}

bool PrintControl::PrintPage(PreviewTarget* target) {
    const PageContent page = content();
    if (target) {
        const ScreenResolution screen = screenResolution();
        const QSize pixels(
            static_cast<int>(std::lround(page.paper.width() * screen.dpiX * screen.ratio)),
            static_cast<int>(std::lround(page.paper.height() * screen.dpiY * screen.ratio)));
        target->page = QImage();
        if (pixels.isEmpty() || qsizetype(pixels.width()) * pixels.height() * 4 > kMaxPreviewBytes)
            return false;
        QImage image(pixels, QImage::Format_RGB32);
        if (image.isNull())
            return false;
        image.setDevicePixelRatio(screen.ratio);
        image.setDotsPerMeterX(static_cast<int>(std::lround(screen.dpiX / 0.0254)));
        image.setDotsPerMeterY(static_cast<int>(std::lround(screen.dpiY / 0.0254)));
        image.fill(Qt::white);
        QPainter painter(&image);
        PageComposer::paint(painter, page, screen.dpiX, screen.dpiY);
        painter.end();
        target->page = std::move(image);
        m_pageMetric1 = pixels.width();
        m_pageMetric2 = pixels.height();
        return true;
    }

    m_cancel = false;
    QPrinter& device = printer();
    // Margins that leave no room for the picture would print a sheet with only its header and
    // footer: the user is told, and nothing is printed (as if the print were cancelled, so the
    // dialog it was started from stays open for the margins to be changed).
    if (!page.picture.isNull() && !pictureHasRoom(page)) {
        MessageBoxes::show(m_dialogParent, MsgIcon::Exclamation, QStringLiteral("Zorvik"),
                           kNoRoomText, QMessageBox::Ok);
        m_cancel = true;
        return true;
    }
    if (device.outputFormat() == QPrinter::PdfFormat) {
        QString suggested = m_lastPdfPath;
        if (suggested.isEmpty()) {
            // The Documents folder when there is one, else the home folder.
            QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
            if (folder.isEmpty() || !QFileInfo(folder).isDir())
                folder = QDir::homePath();
            suggested = QDir(folder).filePath(QStringLiteral("Zorvik.pdf"));
        }
        const QString path = pdfPathChooser() ? pdfPathChooser()(m_dialogParent, suggested)
                                              : askForPdfPath(m_dialogParent, suggested);
        if (path.isEmpty()) {
            m_cancel = true;
            return true;
        }
        m_lastPdfPath = path;
        device.setOutputFileName(path);
    }
    device.setDocName(QStringLiteral("Zorvik"));
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    PageComposer::paint(painter, page, device.logicalDpiX(), device.logicalDpiY());
    return painter.end();
}

bool PrintControl::pictureHasRoom(const PageContent& page) {
    QFont font = QGuiApplication::font();
    font.setPointSizeF(PageComposer::kTextPointSize);
    const double lineHeight = QFontMetricsF(font).height() / screenResolution().dpiY;
    return !PageComposer::layout(page, lineHeight).picture.isEmpty();
}

void PrintControl::setPdfPathChooser(PdfPathChooser chooser) {
    pdfPathChooser() = std::move(chooser);
}

void PrintControl::setPrinterLister(std::function<QStringList()> lister) {
    printerLister() = std::move(lister);
}

} // namespace zorvik
