// frmSplash: the start-up splash screen and the About box, one form serving both. As a splash
// it shows without a caption and only down to its separator line; as the About box it shows
// whole, modally, with OK and System Info.
#pragma once

#include "support/SystemInfoDialog.h"
#include "support/VersionRecord.h"

#include <QDialog>
#include <QList>
#include <functional>

class QLabel;
class QPushButton;
class QTimer;

namespace zorvik {

class LineControl;

class frmSplash : public QDialog {
    Q_OBJECT

public:
    /// Supplies the serial ports the system-information window lists, read when it opens.
    using PortSource = std::function<QList<SerialPortRow>()>;

    explicit frmSplash(const VersionRecord& record = programVersionRecord(),
                       QWidget* parent = nullptr);

    /// Shows the form as the splash screen, owned by frmParent and with its icon, for at least
    /// lMinDisplay milliseconds (0 or less: no minimum). Does nothing while the form is shown.
    void SplashOn(QWidget* frmParent, qint32 lMinDisplay);
    /// Ends the splash once its minimum time is over. Does nothing unless the form is shown.
    void SplashOff();
    /// Shows the whole form as the modal About box over frmParent; returns when it is closed.
    void About(QWidget* frmParent);

    /// Where the System Info button gets its list of serial ports.
    void setPortSource(PortSource source);

    /// Element `index` of the form's line array; only element 1, the separator, exists.
    LineControl* Line1(int index) const;

    /// The form's full client height in twips, as designed.
    int fullHeight() const { return m_fullHeight; }
    bool captionRemoved() const { return m_captionRemoved; }

    QLabel* imgIcon = nullptr;
    QLabel* lblTitle = nullptr;
    QLabel* lblVersion = nullptr;
    QLabel* lblCompanyName = nullptr;
    QLabel* lblCopyright = nullptr;
    QLabel* lblTrademark = nullptr;
    QLabel* lblFileDescription = nullptr;
    QLabel* lblPathEXE = nullptr;
    QLabel* lblWarning = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdSysInfo = nullptr;
    QTimer* Timer1 = nullptr;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void createControls();
    void Form_Load(const VersionRecord& record);
    void Timer1_Timer();
    void cmdSysInfo_Click();
    void StartSysInfo();
    void RemoveCaption();
    void RestoreCaption();
    void setOwner(QWidget* frmParent);
    void showIconOf(QWidget* frmParent);
    void waitUntilOnScreen();

    LineControl* m_separator = nullptr;
    PortSource m_portSource;
    int m_fullHeight = 0;
    bool m_captionRemoved = false;
    Qt::WindowFlags m_savedFlags;
    Qt::WindowFlags m_flagsWithoutCaption;
};

} // namespace zorvik
