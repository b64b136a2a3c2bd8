// frmSplash: the splash screen at start-up and the About box.
#include "support/frmSplash.h"

#include "support/LineControl.h"
#include "support/SplashArt.h"
#include "support/Twips.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QFontDatabase>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <exception>

namespace zorvik {

namespace {

// The form as designed, in pixels: 540 x 350, cut for the splash at the separator line.
constexpr int kFormWidth = 540;
constexpr int kFormHeight = 350;
constexpr int kSeparatorY = 262;
const QRect kTraceArea(308, 18, 212, 96);

// How long SplashOn lets the window system put the splash on screen before the main window
// carries on loading.
constexpr int kShowWaitMs = 250;

const char* const kStyle = R"(
QDialog#frmSplash > QLabel { background: transparent; color: #b9cbbf; }
QDialog#frmSplash > QLabel#lblTitle { color: #8cffa8; }
QDialog#frmSplash > QLabel#lblVersion { color: #7fcf95; }
QDialog#frmSplash > QLabel#lblFileDescription { color: #e6efe8; }
QDialog#frmSplash > QLabel#lblPathEXE { color: #6d8a76; }
QDialog#frmSplash > QLabel#lblWarning { color: #858f8a; }
QDialog#frmSplash > QPushButton {
    color: #dcf5e3; padding: 4px 12px; border: 1px solid #3c7f52; border-radius: 4px;
    background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #2c3a32, stop:1 #1b241f);
}
QDialog#frmSplash > QPushButton:hover { border-color: #6fdc8e; }
QDialog#frmSplash > QPushButton:pressed { background: #15201a; }
QDialog#frmSplash > QPushButton:focus { border-color: #8cffa8; }
QDialog#frmSplash > QPushButton:disabled { color: #55625a; border-color: #2c3530; }
)";

QFont sized(QFont font, int points, bool bold = false) {
    font.setPointSize(points);
    font.setBold(bold);
    return font;
}

QLabel* makeLabel(QWidget* form, const char* name, const QRect& geometry, const QFont& font) {
    auto* label = new QLabel(form);
    label->setObjectName(name);
    label->setGeometry(geometry);
    label->setFont(font);
    return label;
}

QPushButton* makeButton(QWidget* form, const char* name, const QString& caption,
                        const QRect& geometry) {
    auto* button = new QPushButton(caption, form);
    button->setObjectName(name);
    button->setGeometry(geometry);
    return button;
}

// Centre of the parent window when it is on screen, otherwise of the screen that shows it.
QPoint centreFor(const QWidget* frmParent, const QWidget& form) {
    if (frmParent && frmParent->isVisible())
        return frmParent->frameGeometry().center();
    const QScreen* screen = frmParent ? frmParent->screen() : form.screen();
    return screen->availableGeometry().center();
}

} // namespace

frmSplash::frmSplash(const VersionRecord& record, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowCloseButtonHint) {
    setObjectName("frmSplash");
    setWindowTitle(QString::fromStdString("About " + record.title));
    setStyleSheet(kStyle);
    setFixedWidth(kFormWidth);
    setMaximumHeight(kFormHeight);
    resize(kFormWidth, kFormHeight);
    createControls();
    Form_Load(record);
}

void frmSplash::createControls() {
    const QFont base = font();
    imgIcon = makeLabel(this, "imgIcon", QRect(24, 22, 64, 64), base);
    imgIcon->setAlignment(Qt::AlignCenter);
    lblTitle = makeLabel(this, "lblTitle", QRect(104, 12, 200, 54), sized(base, 28, true));
    QFont title = lblTitle->font();
    title.setLetterSpacing(QFont::AbsoluteSpacing, 2);
    lblTitle->setFont(title);
    lblVersion = makeLabel(this, "lblVersion", QRect(106, 66, 196, 20), sized(base, 10));
    lblFileDescription =
        makeLabel(this, "lblFileDescription", QRect(24, 122, 492, 22), sized(base, 11, true));
    lblCompanyName = makeLabel(this, "lblCompanyName", QRect(24, 152, 492, 18), sized(base, 9));
    lblCopyright = makeLabel(this, "lblCopyright", QRect(24, 172, 492, 18), sized(base, 9));
    lblTrademark = makeLabel(this, "lblTrademark", QRect(24, 192, 492, 18), sized(base, 9));
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSize(8);
    lblPathEXE = makeLabel(this, "lblPathEXE", QRect(24, 230, 492, 18), fixed);
    lblPathEXE->setTextInteractionFlags(Qt::TextSelectableByMouse);

    m_separator = new LineControl(this);
    m_separator->setObjectName("Line1(1)");
    m_separator->setEndPoints(0, pixelsToTwips(kSeparatorY), pixelsToTwips(kFormWidth),
                              pixelsToTwips(kSeparatorY));
    m_separator->setBorderColor(QColor(60, 127, 82));

    lblWarning = makeLabel(this, "lblWarning", QRect(24, 276, 340, 60), sized(base, 8));
    lblWarning->setWordWrap(true);
    lblWarning->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    cmdOK = makeButton(this, "cmdOK", "OK", QRect(392, 276, 124, 28));
    cmdOK->setDefault(true);
    cmdSysInfo = makeButton(this, "cmdSysInfo", "&System Info...", QRect(392, 312, 124, 28));

    Timer1 = new QTimer(this);
    Timer1->setObjectName("Timer1");
    // A precise timer never fires early, so the splash stays at least its minimum time.
    Timer1->setTimerType(Qt::PreciseTimer);

    connect(Timer1, &QTimer::timeout, this, &frmSplash::Timer1_Timer);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdSysInfo, &QPushButton::clicked, this, &frmSplash::cmdSysInfo_Click);
}

void frmSplash::Form_Load(const VersionRecord& record) {
    lblWarning->setText("generic warning information");
    lblTitle->setText(QString::fromStdString(record.title));
    if (!record.companyName.empty())
        lblCompanyName->setText(QString::fromStdString(companyCaption(record)));
    lblVersion->setText(QString::fromStdString(versionCaption(record)));
    lblCopyright->setText(QString::fromStdString(record.legalCopyright));
    lblTrademark->setText(QString::fromStdString(record.legalTrademarks));
    // The path is shown the way the user's system writes paths: with the native separator
    // (a backslash on Windows, a slash elsewhere) between the folder and the file name.
    const QString folder = QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
    const QString name = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    lblPathEXE->setText(QString::fromStdString(programPathCaption(
        folder.toStdString(), QDir::separator().toLatin1(), name.toStdString())));
    lblPathEXE->setToolTip(lblPathEXE->text());
    lblFileDescription->setText(QString::fromStdString(record.fileDescription));
    m_fullHeight = pixelsToTwips(height());
}

LineControl* frmSplash::Line1(int index) const {
    return index == 1 ? m_separator : nullptr;
}

void frmSplash::setPortSource(PortSource source) {
    m_portSource = std::move(source);
}

void frmSplash::SplashOn(QWidget* frmParent, qint32 lMinDisplay) {
    if (isVisible())
        return;
    showIconOf(frmParent);
    cmdOK->setEnabled(false);
    cmdSysInfo->setEnabled(false);
    if (lMinDisplay > 0) {
        Timer1->setInterval(lMinDisplay);
        Timer1->start();
    }
    RemoveCaption();
    // Only the part above the separator line shows: the client area ends at the line's top.
    resize(width(), twipsToPixels(Line1(1)->Y1()));
    setOwner(frmParent);
    move(centreFor(nullptr, *this) - rect().center());
    show();
    waitUntilOnScreen();
    repaint();
}

void frmSplash::SplashOff() {
    if (!isVisible())
        return;
    // Yield to the event loop until the minimum time is over (Timer1 stops when it fires).
    while (Timer1->isActive())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    hide();
    RestoreCaption();
    resize(width(), twipsToPixels(m_fullHeight));
}

void frmSplash::About(QWidget* frmParent) {
    showIconOf(frmParent);
    cmdOK->setEnabled(true);
    cmdSysInfo->setEnabled(true);
    setOwner(frmParent);
    RestoreCaption();
    // The height always goes through 0 before the full height, even when it already has it,
    // so the window takes its full size anew together with its caption.
    const int full = twipsToPixels(m_fullHeight);
    if (height() == full)
        resize(width(), 0);
    resize(width(), full);
    move(centreFor(frmParent, *this) - rect().center());
    setWindowModality(Qt::ApplicationModal);
    cmdOK->setFocus();
    exec();
}

void frmSplash::Timer1_Timer() {
    Timer1->stop();
}

void frmSplash::cmdSysInfo_Click() {
    StartSysInfo();
}

void frmSplash::StartSysInfo() {
    // Any failure to gather or show the information ends this quietly.
    try {
        const QList<SerialPortRow> ports = m_portSource ? m_portSource() : QList<SerialPortRow>{};
        SystemInfoDialog dialog(ports, this);
        dialog.exec();
    } catch (const std::exception&) {
    }
}

void frmSplash::RemoveCaption() {
    if (m_captionRemoved)
        return;
    m_captionRemoved = true;
    m_savedFlags = windowFlags();
    m_flagsWithoutCaption = (m_savedFlags & ~(Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                              Qt::WindowCloseButtonHint)) |
                            Qt::FramelessWindowHint;
    setWindowFlags(m_flagsWithoutCaption);
}

void frmSplash::RestoreCaption() {
    if (!m_captionRemoved)
        return;
    m_captionRemoved = false;
    setWindowFlags(m_savedFlags);
}

void frmSplash::setOwner(QWidget* frmParent) {
    // Owned by the calling window: stacked with it, and deleted with it.
    if (frmParent && parentWidget() != frmParent)
        setParent(frmParent, windowFlags());
}

void frmSplash::showIconOf(QWidget* frmParent) {
    const QIcon icon = frmParent ? frmParent->windowIcon() : QApplication::windowIcon();
    const QSize size = imgIcon->size();
    imgIcon->setPixmap(icon.isNull() ? scopeEmblem(size.width()) : icon.pixmap(size));
}

void frmSplash::waitUntilOnScreen() {
    const auto onScreen = [this] { return windowHandle() && windowHandle()->isExposed(); };
    if (onScreen())
        return;
    QEventLoop loop;
    QElapsedTimer waited;
    waited.start();
    QTimer poll;
    connect(&poll, &QTimer::timeout, &loop, [&] {
        if (onScreen() || waited.elapsed() >= kShowWaitMs)
            loop.quit();
    });
    poll.start(10);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void frmSplash::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintSplashBackdrop(painter, QRect(0, 0, width(), kFormHeight), kSeparatorY, kTraceArea);
}

} // namespace zorvik
