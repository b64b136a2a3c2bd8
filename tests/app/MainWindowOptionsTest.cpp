// MENU and the options dialog acting on the main window: port changes and colours.
#include "app/MainWindowFixture.h"
#include "common/FrameBytes.h"
#include "common/ModalWindows.h"
#include "dialogs/frmOptions.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QComboBox>
#include <QPushButton>
#include <QTest>

using namespace zorvik;
using zorvik::test::frameBytes;
using zorvik::test::MainWindowFixture;
using zorvik::test::sampleState;

namespace {

class MainWindowOptions : public MainWindowFixture {
protected:
    void SetUp() override {
        MainWindowFixture::SetUp();
        // The dialog is shown without blocking, so the test can operate it.
        modal = std::make_unique<test::ModalWindows>();
        modal->on<frmOptions>([this](frmOptions& d) {
            dialog = &d;
            d.show();
        });
    }
    void TearDown() override {
        modal.reset();
        MainWindowFixture::TearDown();
    }

    frmOptions* openMenu(frmMain& w) {
        dialog = nullptr;
        QTest::mouseClick(w.panel().CWBMenu, Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor([&] { return dialog != nullptr; }, 2000));
        return dialog;
    }

    std::unique_ptr<test::ModalWindows> modal;
    frmOptions* dialog = nullptr;
};

} // namespace

TEST_F(MainWindowOptions, MenuOpensTheOptionsDialogWithBothPages) {
    frmMain& w = start({1, 2});
    frmOptions* d = openMenu(w);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->windowTitle(), "Options");
    auto* ports = d->findChild<QComboBox*>("cboComPort");
    ASSERT_NE(ports, nullptr);
    EXPECT_EQ(ports->count(), 2);
    EXPECT_EQ(ports->itemText(0), "COM 1");
    EXPECT_EQ(ports->itemText(1), "COM 2");
    EXPECT_FALSE(w.panel().CWBMenu->value());
}

TEST_F(MainWindowOptions, ColourChangeShowsOnTheGraphAtOnceAndSurvivesARestart) {
    frmMain& w = start();
    frmOptions* d = openMenu(w);
    ASSERT_NE(d, nullptr);
    d->setColorChooser([](const QColor&, QWidget*) { return QColor(12, 34, 56); });
    d->cmdPrimaryTraceColor_Click();
    EXPECT_EQ(w.panel().CWGraph1->plotColor("CHa"), QColor(12, 34, 56));
    d->cmdOK_Click();
    window->close();
    window.reset();
    frmMain& again = start();
    EXPECT_EQ(again.panel().CWGraph1->plotColor("CHa"), QColor(12, 34, 56));
}

TEST_F(MainWindowOptions, PortChangeWhileRunningMovesTheLinkToTheNewPort) {
    fake.openable.insert(device(1));
    fake.openable.insert(device(2));
    frmMain& w = start({1, 2});
    w.panel().CWBPwr->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 1; }, 1000));
    fake.feed(QByteArray(1, '\x7D'));
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.model().blnLiveData; }, 1000));
    fake.feed(frameBytes(sampleState(), 1));

    frmOptions* d = openMenu(w);
    ASSERT_NE(d, nullptr);
    d->findChild<QComboBox*>("cboComPort")->setCurrentIndex(1);
    d->cmdOK_Click();
    EXPECT_EQ(w.ComPort, 2);
    EXPECT_FALSE(w.blnAutoPort);
    EXPECT_TRUE(fake.isOpen());
    EXPECT_EQ(fake.device(), device(2));
    EXPECT_EQ(w.panel().sbrComPort->text(), "Com: 2");
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 2; }, 1000));
    auto s = sampleState();
    s.bytTimebaseDef = 9;
    fake.feed(frameBytes(s, 5));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return w.panel().sbrSampleRate->text() == "Sample Rate: 1Ks/s"; }, 1000));
    EXPECT_TRUE(messages.empty());
}

TEST_F(MainWindowOptions, PortThatCannotBeOpenedTakesTheLinksFailurePath) {
    fake.openable.insert(device(1));
    frmMain& w = start({1, 2});
    w.panel().CWBPwr->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 1; }, 1000));
    fake.feed(QByteArray(1, '\x7D'));
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.model().blnLiveData; }, 1000));
    frmOptions* d = openMenu(w);
    ASSERT_NE(d, nullptr);
    d->findChild<QComboBox*>("cboComPort")->setCurrentIndex(1);
    d->cmdOK_Click();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].title, "Communication Error");
    EXPECT_FALSE(w.panel().CWBPwr->value());
    EXPECT_FALSE(fake.isOpen());
}
