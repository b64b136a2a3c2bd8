// The PRINT button's routine and the objects it shares with the preview and the page setup.
#include "printing/PrintingServices.h"

#include "printing/QtKeyEventSeam.h"
#include "printing/cQVXScreenCapture.h"
#include "printing/frmPreview.h"
#include "support/ModalRunner.h"
#include "support/OpenForms.h"

#include <QApplication>
#include <QWidget>

namespace zorvik {

PrintingServices::PrintingServices() {
    for (int i = 1; i <= 4; ++i)
        setKeptMargin(i, m_easyPrint.Margin(i));
}

PrintingServices::~PrintingServices() = default;

float PrintingServices::keptMargin(int i) const {
    if (i < 1 || i > 4)
        return 0.0f;
    return m_keptMargins[static_cast<std::size_t>(i - 1)];
}

void PrintingServices::setKeptMargin(int i, float value) {
    if (i < 1 || i > 4)
        return;
    m_keptMargins[static_cast<std::size_t>(i - 1)] = value;
}

void PrintingServices::printButtonReleased(QWidget* mainWindow) {
    if (formOpen(QStringLiteral("frmPreview")))
        return;
    m_mainWindow = mainWindow;
    m_easyPrint.setDialogParent(mainWindow);
    QApplication::setOverrideCursor(Qt::WaitCursor);

    if (!m_capture) {
        m_keys = std::make_unique<QtKeyEventSeam>(m_captureHolder);
        m_capture = std::make_unique<cQVXScreenCapture>(*m_keys);
    }
    // The picture is of the main window: it is brought to the front, and where the platform
    // names no active window (offscreen) the capture takes it all the same.
    if (mainWindow) {
        mainWindow->raise();
        mainWindow->activateWindow();
    }
    m_keys->setFallbackWindow(mainWindow);
    m_capture->CaptureScreen(true);

    // The picture moves into the hidden holder (empty when nothing was captured).
    m_pictureHolder.setPicture(m_captureHolder.takePicture());
    m_captureHolder.clear();
    for (int i = 1; i <= 4; ++i)
        m_easyPrint.setMargin(i, keptMargin(i));
    openPreview(mainWindow);
}

void PrintingServices::openPreview(QWidget* owner) {
    frmPreview preview(*this, owner);
    runModal(preview);
}

} // namespace zorvik
