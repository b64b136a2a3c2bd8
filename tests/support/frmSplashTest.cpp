// frmSplash: the texts of the form, the splash (cut, no caption, minimum time) and the About box.
#include "support/frmSplash.h"
#include "support/LineControl.h"
#include "support/SystemInfoDialog.h"
#include "support/WindowSteps.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

namespace zorvik::test {
namespace {

VersionRecord record(const std::string& company) {
    VersionRecord r;
    r.title = "Zorvik";
    r.major = 2;
    r.minor = 3;
    r.revision = 4;
    r.companyName = company;
    r.legalCopyright = "Copyright (C) 2026 Acme";
    r.legalTrademarks = "Zorvik is a trademark of Acme";
    r.fileDescription = "Scope front panel";
    return r;
}

// What the About box looked like while it was open.
struct AboutView {
    bool visible = false;
    bool modal = false;
    Qt::WindowFlags flags;
    int height = 0;
    bool okEnabled = false;
    bool sysInfoEnabled = false;
};

// Opens the About box, notes how it looks and closes it with OK.
AboutView showAbout(frmSplash& form, QWidget* parent) {
    AboutView view;
    whenVisible<frmSplash>([&view](frmSplash* shown) {
        view.visible = shown->isVisible();
        view.modal = shown->isModal() || shown->windowModality() != Qt::NonModal;
        view.flags = shown->windowFlags();
        view.height = shown->height();
        view.okEnabled = shown->cmdOK->isEnabled();
        view.sysInfoEnabled = shown->cmdSysInfo->isEnabled();
        shown->cmdOK->click();
    });
    form.About(parent);
    return view;
}

class frmSplashTest : public ::testing::Test {
protected:
    QWidget parent;
    frmSplash* form = new frmSplash(record("Acme"));

    ~frmSplashTest() override {
        if (form->parentWidget() != &parent)
            delete form;
    }
};

TEST_F(frmSplashTest, LoadFillsEveryTextFromTheVersionRecord) {
    EXPECT_EQ(form->lblWarning->text(), "generic warning information");
    EXPECT_EQ(form->lblTitle->text(), "Zorvik");
    EXPECT_EQ(form->lblCompanyName->text(), "A product of Acme");
    EXPECT_EQ(form->lblVersion->text(), "Version 2.3.4 (32-bit)");
    EXPECT_EQ(form->lblCopyright->text(), "Copyright (C) 2026 Acme");
    EXPECT_EQ(form->lblTrademark->text(), "Zorvik is a trademark of Acme");
    EXPECT_EQ(form->lblFileDescription->text(), "Scope front panel");
    EXPECT_EQ(form->cmdOK->text(), "OK");
    EXPECT_EQ(form->cmdSysInfo->text(), "&System Info...");
    EXPECT_EQ(form->fullHeight(), 350 * 15);
}

TEST_F(frmSplashTest, PathLabelIsProgramFolderSeparatorNameAndABlank) {
    const QString expected =
        QDir::toNativeSeparators(QCoreApplication::applicationDirPath()) + QDir::separator() +
        QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName() + " ";
    EXPECT_EQ(form->lblPathEXE->text(), expected);
    EXPECT_TRUE(form->lblPathEXE->text().endsWith("zorvik_gui_tests "));
}

TEST_F(frmSplashTest, ControlsCarryTheirNames) {
    for (const char* name : {"imgIcon", "lblTitle", "lblVersion", "lblCompanyName", "lblCopyright",
                             "lblTrademark", "lblFileDescription", "lblPathEXE", "lblWarning"})
        EXPECT_NE(form->findChild<QLabel*>(name), nullptr) << name;
    EXPECT_EQ(form->findChild<QPushButton*>("cmdOK"), form->cmdOK);
    EXPECT_EQ(form->findChild<QPushButton*>("cmdSysInfo"), form->cmdSysInfo);
    EXPECT_EQ(form->findChild<QTimer*>("Timer1"), form->Timer1);
    EXPECT_EQ(form->findChild<LineControl*>("Line1(1)"), form->Line1(1));
    EXPECT_EQ(form->Line1(0), nullptr);
    EXPECT_EQ(form->objectName(), "frmSplash");
}

TEST(frmSplashCompany, EmptyCompanyNeverProducesTheProductOfPrefix) {
    frmSplash form(record(""));
    EXPECT_EQ(form.lblCompanyName->text(), "");
    for (const QLabel* label : form.findChildren<QLabel*>())
        EXPECT_FALSE(label->text().contains("A product of")) << label->objectName().toStdString();
}

TEST_F(frmSplashTest, SplashShowsOnlyThePartAboveTheLineWithoutCaption) {
    form->SplashOn(&parent, 0);

    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(form->height(), 262);
    EXPECT_EQ(form->height() * 15, form->Line1(1)->Y1());
    EXPECT_TRUE(form->captionRemoved());
    EXPECT_TRUE(form->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_FALSE(form->windowFlags().testFlag(Qt::WindowTitleHint));
    EXPECT_FALSE(form->cmdOK->isEnabled());
    EXPECT_FALSE(form->cmdSysInfo->isEnabled());
    EXPECT_EQ(form->parentWidget(), &parent);
    EXPECT_FALSE(form->isModal());
    EXPECT_FALSE(form->imgIcon->pixmap().isNull());
    EXPECT_FALSE(form->Timer1->isActive());
}

TEST_F(frmSplashTest, SplashOnWhileShownDoesNothing) {
    form->SplashOn(&parent, 0);
    QWidget other;
    form->SplashOn(&other, 5000);

    EXPECT_FALSE(form->Timer1->isActive());
    EXPECT_EQ(form->parentWidget(), &parent);
    EXPECT_EQ(form->height(), 262);
}

TEST_F(frmSplashTest, SplashOffWhenNeverShownDoesNothing) {
    form->resize(form->width(), 100);
    form->SplashOff();

    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(form->height(), 100);
    EXPECT_FALSE(form->captionRemoved());
    EXPECT_TRUE(form->windowFlags().testFlag(Qt::WindowTitleHint));
}

TEST_F(frmSplashTest, SplashOffReturnsOnlyAfterTheMinimumTime) {
    QElapsedTimer clock;
    clock.start();
    form->SplashOn(&parent, 300);
    EXPECT_TRUE(form->Timer1->isActive());
    form->SplashOff();

    EXPECT_GE(clock.elapsed(), 300);
    EXPECT_FALSE(form->Timer1->isActive());
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(form->captionRemoved());
    EXPECT_EQ(form->height(), 350);
}

TEST_F(frmSplashTest, AboutAfterSplashShowsTheWholeFormWithItsCaption) {
    form->SplashOn(&parent, 0);
    form->SplashOff();
    const AboutView view = showAbout(*form, &parent);

    EXPECT_TRUE(view.visible);
    EXPECT_TRUE(view.modal);
    EXPECT_TRUE(view.flags.testFlag(Qt::WindowTitleHint));
    EXPECT_FALSE(view.flags.testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(view.height, 350);
    EXPECT_TRUE(view.okEnabled);
    EXPECT_TRUE(view.sysInfoEnabled);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmSplashTest, AboutWhileTheSplashIsStillUpGivesTheCaptionBack) {
    form->SplashOn(&parent, 0);
    const AboutView view = showAbout(*form, &parent);

    EXPECT_TRUE(view.flags.testFlag(Qt::WindowTitleHint));
    EXPECT_FALSE(view.flags.testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(view.height, 350);
    EXPECT_FALSE(form->captionRemoved());
}

TEST_F(frmSplashTest, SplashAndAboutShowTheCallersIcon) {
    QPixmap red(32, 32);
    red.fill(Qt::red);
    parent.setWindowIcon(QIcon(red));
    form->SplashOn(&parent, 0);
    const QImage shown = form->imgIcon->pixmap().toImage();
    ASSERT_FALSE(shown.isNull());
    EXPECT_EQ(QColor(shown.pixel(shown.width() / 2, shown.height() / 2)), QColor(Qt::red));
}

TEST_F(frmSplashTest, SystemInfoButtonListsTheCallersSerialPorts) {
    form->setPortSource([] {
        return QList<SerialPortRow>{{"COM1", "/dev/ttyUSB0", true, true, {}},
                                    {"COM5", "/dev/ttyS0", false, false, {}}};
    });
    QString report;
    whenVisible<frmSplash>([&report](frmSplash* shown) {
        whenVisible<SystemInfoDialog>([&report](SystemInfoDialog* info) {
            report = info->reportText();
            info->cmdClose->click();
        });
        shown->cmdSysInfo->click();
        shown->cmdOK->click();
    });
    form->About(&parent);

    EXPECT_TRUE(report.contains("  COM1   /dev/ttyUSB0  yes")) << report.toStdString();
    EXPECT_TRUE(report.contains("  COM5   /dev/ttyS0    no")) << report.toStdString();
}

TEST_F(frmSplashTest, FailingPortSourceEndsSystemInfoQuietly) {
    form->setPortSource([]() -> QList<SerialPortRow> { throw std::runtime_error("no ports"); });
    bool aboutStillOpen = false;
    whenVisible<frmSplash>([&aboutStillOpen](frmSplash* shown) {
        shown->cmdSysInfo->click();
        aboutStillOpen = shown->isVisible();
        shown->cmdOK->click();
    });
    form->About(&parent);
    EXPECT_TRUE(aboutStillOpen);
}

} // namespace
} // namespace zorvik::test
