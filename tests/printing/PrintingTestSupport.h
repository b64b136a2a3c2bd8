// Shared set-up of the printing tests: no printer, recorded message boxes, PDF tools.
#pragma once

#include "support/MessageBox.h"

#include <QColor>
#include <QImage>
#include <QRect>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>
#include <vector>

namespace zorvik::test {

/// Every printing test starts with no printer installed (printing writes a PDF file), message
/// boxes recorded instead of shown, and the modal dialogs run by exec.
class PrintingTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Installs a printer list for the next print controls made.
    static void setPrinters(const QStringList& names);

    std::vector<MessageRecord> messages;
};

/// A picture of one solid colour.
QImage solidPicture(int width, int height, const QColor& colour);

/// Path of a poppler tool, or empty when it is not installed.
QString popplerTool(const char* name);
/// Text of a PDF file, read back with pdftotext.
QString pdfText(const QString& pdf);
/// First page of a PDF file rendered at `dpi` with pdftoppm.
QImage pdfPage(const QString& pdf, int dpi);
/// Bounding box of the pixels within `tolerance` of `colour`, empty when there are none.
QRect colourBox(const QImage& image, const QColor& colour, int tolerance = 40);

} // namespace zorvik::test
