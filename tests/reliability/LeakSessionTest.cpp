// A whole session as a user has it: the demo probe streaming, STORE, the reference saved to a
// .wdf, PRINT with its preview printing to a PDF file, the Options dialog, and quitting. In the
// sanitizer build LeakSanitizer checks the process for leaks at the end of this test and when
// the process ends.
#include "ProbeSession.h"
#include "dialogs/frmOptions.h"
#include "printing/PrintControl.h"
#include "printing/frmPreview.h"
#include "storage/WaveformFile.h"
#include "storage/WaveformRecord.h"
#include "storage/WaveformTestSupport.h"
#include "storage/frmFile.h"
#include "support/ModalRunner.h"
#include "widgets/LitButton.h"

#include <QAction>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

using namespace zorvik;
using namespace zorvik::test;

namespace {

class LeakSession : public ProbeSession {
protected:
    void TearDown() override {
        setModalRunner({});
        PrintControl::setPdfPathChooser({});
        PrintControl::setPrinterLister({});
        ProbeSession::TearDown();
    }
};

} // namespace

TEST_F(LeakSession, DemoStoreSavePreviewPrintOptionsAndQuitLeaveNoLeak) {
    QTemporaryDir folder;
    const QString wdf = folder.filePath("session.wdf");
    const QString pdf = folder.filePath("session.pdf");
    int fileRuns = 0;
    int previewRuns = 0;
    int optionsRuns = 0;
    // No printer: PRINT in the preview prints to a PDF file.
    PrintControl::setPrinterLister([] { return QStringList(); });
    PrintControl::setPdfPathChooser([&](QWidget*, const QString&) { return pdf; });
    setModalRunner([&](QDialog& dialog) {
        if (auto* form = qobject_cast<frmFile*>(&dialog)) {
            ++fileRuns;
            form->setSaveChooser([&](QWidget*, const QString&, const QString&) {
                return std::optional<QString>(wdf);
            });
            form->mnuFileSaveAs->trigger();
            form->OKButton->click();
        } else if (auto* preview = qobject_cast<frmPreview*>(&dialog)) {
            ++previewRuns;
            preview->show();
            preview->findChild<QToolBar*>("tb")->findChild<QAction*>("Print")->trigger();
        } else if (auto* options = qobject_cast<frmOptions*>(&dialog)) {
            ++optionsRuns;
            options->show();
            options->findChild<QPushButton*>("cmdCancel")->click();
        }
        return 0;
    });

    frmMain& w = powerOn(ProbeStream(ProbeSettings{}));
    ASSERT_TRUE(waitFor([&] { return shown.size() >= 3; }, 5000));

    w.panel().CWBStoreRef->setValue(true);
    EXPECT_FALSE(w.link().machine().blnAcquire);

    QTest::mouseClick(w.panel().CWBFile, Qt::LeftButton);
    ASSERT_TRUE(waitFor([&] { return fileRuns == 1 && !w.panel().CWBFile->value(); }, 5000));
    WaveformRecord saved;
    cInifile ini;
    EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, wdf.toStdString(), saved),
              WaveformLoadResult::Loaded);
    // Each sample as the single nearest to its 7-digit text in the file.
    for (std::size_t i = 0; i < saved.volts.size(); ++i)
        EXPECT_EQ(saved.volts[i], zorvik::testing::asFiled(w.model().sngRefVolts[i])) << i;

    QTest::mouseClick(w.panel().CWBPrint, Qt::LeftButton);
    ASSERT_TRUE(waitFor([&] { return previewRuns == 1; }, 10000));
    EXPECT_TRUE(QFile::exists(pdf));

    QTest::mouseClick(w.panel().CWBMenu, Qt::LeftButton);
    ASSERT_TRUE(waitFor([&] { return optionsRuns == 1 && !w.panel().CWBMenu->value(); }, 5000));

    w.close();
    window.reset();
    EXPECT_TRUE(messages.empty());
    EXPECT_TRUE(QFile::exists(settingsPath()));
#if defined(__SANITIZE_ADDRESS__)
    // Everything the session made is gone now; anything unreachable is a leak.
    EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0);
#endif
}
