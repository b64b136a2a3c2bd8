// Shared set-up of the printing tests.
#include "printing/PrintingTestSupport.h"

#include "printing/PrintControl.h"
#include "printing/frmPageSetup.h"
#include "printing/frmPreview.h"
#include "support/ModalRunner.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QWidget>
#include <cstdlib>

namespace zorvik::test {

void PrintingTest::SetUp() {
    setPrinters({});
    MessageBoxes::setInterceptor([this](const MessageRecord& record) {
        messages.push_back(record);
        return QMessageBox::Ok;
    });
    PrintControl::setPdfPathChooser({});
    frmPageSetup::setPrinterSetupDialog({});
    frmPreview::setMaxPageImageBytes(0);
    setModalRunner({});
}

void PrintingTest::TearDown() {
    setModalRunner({});
    MessageBoxes::setInterceptor({});
    PrintControl::setPdfPathChooser({});
    PrintControl::setPrinterLister({});
    frmPageSetup::setPrinterSetupDialog({});
    frmPreview::setMaxPageImageBytes(0);
    while (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
}

void PrintingTest::setPrinters(const QStringList& names) {
    PrintControl::setPrinterLister([names] { return names; });
}

QImage solidPicture(int width, int height, const QColor& colour) {
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(colour);
    return picture;
}

QString popplerTool(const char* name) {
    return QStandardPaths::findExecutable(QString::fromLatin1(name));
}

QString pdfText(const QString& pdf) {
    QProcess tool;
    tool.start(popplerTool("pdftotext"), {pdf, QStringLiteral("-")});
    if (!tool.waitForFinished(30000))
        return {};
    return QString::fromUtf8(tool.readAllStandardOutput());
}

QImage pdfPage(const QString& pdf, int dpi) {
    QTemporaryDir folder;
    const QString prefix = QDir(folder.path()).filePath(QStringLiteral("page"));
    QProcess tool;
    tool.start(popplerTool("pdftoppm"),
               {QStringLiteral("-r"), QString::number(dpi), QStringLiteral("-png"),
                QStringLiteral("-f"), QStringLiteral("1"), QStringLiteral("-l"),
                QStringLiteral("1"), pdf, prefix});
    if (!tool.waitForFinished(30000))
        return {};
    const QStringList pages = QDir(folder.path()).entryList({QStringLiteral("page*.png")});
    if (pages.isEmpty())
        return {};
    return QImage(QDir(folder.path()).filePath(pages.first()));
}

QRect colourBox(const QImage& image, const QColor& colour, int tolerance) {
    QRect box;
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < rgb.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        for (int x = 0; x < rgb.width(); ++x) {
            const QRgb pixel = line[x];
            if (std::abs(qRed(pixel) - colour.red()) <= tolerance &&
                std::abs(qGreen(pixel) - colour.green()) <= tolerance &&
                std::abs(qBlue(pixel) - colour.blue()) <= tolerance)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

} // namespace zorvik::test
