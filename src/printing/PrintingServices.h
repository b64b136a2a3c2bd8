// What the main window's PRINT button needs: the print control, the hidden picture holder, the
// kept margins and the capture, and the routine that runs when PRINT is released.
#pragma once

#include "printing/CaptureHolder.h"
#include "printing/PictureHolder.h"
#include "printing/PrintControl.h"

#include <QPointer>
#include <array>
#include <memory>

class QWidget;

namespace zorvik {

class QtKeyEventSeam;
class cQVXScreenCapture;

/// Made by the composition root and handed to the main window. Holds `EasyPrint1`, the hidden
/// picture holder whose picture is printed, the four margins kept between prints (they start at
/// the print control's own margins) and the capture objects, made on the first print.
class PrintingServices {
public:
    PrintingServices();
    ~PrintingServices();
    PrintingServices(const PrintingServices&) = delete;
    PrintingServices& operator=(const PrintingServices&) = delete;

    PrintControl& EasyPrint1() { return m_easyPrint; }
    PictureHolder& pictureHolder() { return m_pictureHolder; }
    CaptureHolder& captureHolder() { return m_captureHolder; }

    /// The kept margin `i` (1 left, 2 right, 3 top, 4 bottom); other indexes read 0.
    float keptMargin(int i) const;
    void setKeptMargin(int i, float value);

    /// PRINT released: unless a preview is open, photographs the main window, hands the picture
    /// to the print control with the kept margins and opens the preview modally, owned by the
    /// main window. The pointer is busy from the capture until the preview has loaded.
    void printButtonReleased(QWidget* mainWindow);

    /// Opens the preview modally, owned by `owner`.
    void openPreview(QWidget* owner);

    /// The window PRINT was last pressed on (owner of dialogs opened without a parent).
    QWidget* mainWindow() const { return m_mainWindow; }
    /// The capture object, or nullptr before the first print.
    cQVXScreenCapture* capture() const { return m_capture.get(); }

private:
    PrintControl m_easyPrint;
    PictureHolder m_pictureHolder;
    CaptureHolder m_captureHolder;
    std::array<float, 4> m_keptMargins{};
    std::unique_ptr<QtKeyEventSeam> m_keys;
    std::unique_ptr<cQVXScreenCapture> m_capture;
    QPointer<QWidget> m_mainWindow;
};

} // namespace zorvik
