// FILE and the Waveform Data File on the main window: the File form it opens, what a loaded
// file changes on the panel, a save and load across a restart, and a file named at start-up.
#include "ReferenceRig.h"
#include "instrument/DecodeTables.h"
#include "storage/IniTestSupport.h"
#include "storage/WaveformTestSupport.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

using namespace zorvik;
using namespace zorvik::testing;
using zorvik::test::ReferenceRig;

namespace {

namespace fs = std::filesystem;

class MainWindowFile : public ReferenceRig {
protected:
    /// A copy of a fixture in the test's folder (a save through the form may write to it).
    QString fixture(const char* name) const {
        const QString copy = dir.filePath(name);
        if (!fs::exists(copy.toStdString()))
            writeBytes(copy.toStdString(), readBytes(wdfFixture(name)));
        return copy;
    }
    /// FILE, then File -> Open of `path`, then the form closes.
    void openThroughFile(frmMain& w, const QString& path) {
        inFileForm = [path](frmFile& form) {
            form.setOpenChooser([path](QWidget*, const QString&, const QString&) {
                return std::optional<QString>(path);
            });
            form.mnuFileOpen->trigger();
            form.OKButton->click();
        };
        pressFile(w);
    }
    /// A copy of the Windows-style fixture with `from` replaced by `to`.
    QString editedFixture(const std::string& from, const std::string& to) {
        std::string text = readBytes(wdfFixture("windows-style.wdf"));
        text.replace(text.find(from), from.size(), to);
        const QString path = dir.filePath("edited.wdf");
        writeBytes(path.toStdString(), text);
        return path;
    }
    /// The main window's settings that a file can change, as text for comparing.
    static std::string panelState(frmMain& w) {
        std::string s;
        auto add = [&s](const std::string& item) {
            s += item;
            s += ' ';
        };
        add(std::to_string(w.panel().CWKTimeRange->value()));
        add(std::to_string(w.panel().CWKChaLvl->value()));
        add(std::to_string(w.panel().CWSCHaOffset->value()));
        add(std::to_string(w.panel().CWBChaInv->value()));
        add(std::to_string(w.panel().CWBRef->value()));
        const HardwareState h = w.model().state;
        for (int b : {h.bytSwitchSetting, h.bytTriggerLvl, h.bytTimebaseDef, h.bytTriggerDef})
            add(std::to_string(b));
        for (float v : w.model().sngRefVolts)
            add(std::to_string(bits(v)));
        add(std::to_string(bits(w.model().sngRefSampleInterval)));
        return s;
    }
};

TEST_F(MainWindowFile, FileWithPowerOffOpensTheFormWithoutTouchingTheLink) {
    frmMain& w = start();
    pressFile(w);
    EXPECT_EQ(fileFormRuns, 1);
    EXPECT_EQ(fileFormParent, &w);
    EXPECT_TRUE(fake.calls.isEmpty()) << fake.calls.join(", ").toStdString();
    EXPECT_TRUE(messages.empty());
}

TEST_F(MainWindowFile, TheMainWindowKeepsOneFileFormWithItsCurrentFile) {
    frmMain& w = start();
    openThroughFile(w, fixture("windows-style.wdf"));
    frmFile* first = &w.fileForm();
    EXPECT_EQ(first->sCurrentFile, fixture("windows-style.wdf"));
    QString offered;
    inFileForm = [&](frmFile& form) {
        EXPECT_EQ(&form, first);
        form.setSaveChooser([&](QWidget*, const QString&, const QString& name) {
            offered = name;
            return std::optional<QString>();
        });
        form.mnuFileSaveAs_Click();
        form.close();
    };
    pressFile(w);
    EXPECT_EQ(offered, fixture("windows-style.wdf"));
    EXPECT_EQ(w.findChildren<frmFile*>().size(), 1);
}

TEST_F(MainWindowFile, FileWhileRunningHoldsReceptionAndResumesItAfterwards) {
    frmMain& w = running();
    fake.calls.clear();
    QStringList whileOpen;
    inFileForm = [&](frmFile&) { whileOpen = fake.calls; };
    pressFile(w);
    EXPECT_EQ(whileOpen, QStringList{"cancel"});
    EXPECT_EQ(fake.calls, (QStringList{"cancel", "reset", "read 2"}));
    feedFrame(9);

    // With STORE pressed the display stays held after the form closes.
    w.panel().CWBStoreRef->setValue(true);
    fake.calls.clear();
    inFileForm = nullptr;
    pressFile(w);
    EXPECT_FALSE(fake.calls.contains("read 2")) << fake.calls.join(", ").toStdString();
    EXPECT_FALSE(w.link().machine().blnAcquire);
}

TEST_F(MainWindowFile, OpeningAFileShowsItsReferenceWithRefOnAndPrintEnabled) {
    frmMain& w = start();
    ASSERT_FALSE(w.panel().CWBRef->value());
    ASSERT_FALSE(w.panel().CWBPrint->isEnabled());
    openThroughFile(w, fixture("windows-style.wdf"));
    EXPECT_TRUE(messages.empty());
    EXPECT_TRUE(w.model().blnRefLoaded);
    // REF came on through its handler: only that shows "Ref" and enables PRINT.
    EXPECT_TRUE(w.panel().CWBRef->value());
    EXPECT_TRUE(w.panel().CWGraph1->plotVisible("Ref"));
    EXPECT_TRUE(w.panel().CWBPrint->isEnabled());
    // The panel and the probe's settings as the file holds them.
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 9);
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 4);
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), -1.5);
    EXPECT_TRUE(w.panel().CWBChaInv->value());
    EXPECT_TRUE(w.panel().CWBChaInvLed->value());
    EXPECT_TRUE(w.panel().CWBChaCalLed->value());
    const HardwareState h = w.model().state;
    EXPECT_EQ(h.bytSwitchSetting, 32);
    EXPECT_EQ(h.bytTriggerLvl, 16);
    EXPECT_EQ(h.bytTimebaseDef, 4);
    EXPECT_EQ(h.bytTriggerDef, 64);
    EXPECT_EQ(w.panel().sbrSampleRate->text(), "Sample Rate: 200Ks/s");
    EXPECT_EQ(w.panel().CWSRange->value(), 3);
    EXPECT_EQ(w.panel().CWSCoupling->value(), 3);
    EXPECT_EQ(w.panel().CWSTrigger->value(), 2);
    EXPECT_EQ(w.model().sngRefSampleInterval, 5e-6f);
    // The "0" pointer beside the graph stands at the file's offset.
    EXPECT_TRUE(w.panel().CWSTrigInd->pointerVisible("CHa_Zero"));
    EXPECT_EQ(w.panel().CWSTrigInd->pointerValue("CHa_Zero"), -1.5);
    // Drawn at the file's scales: 100 us per division, 2 V per division, inverted, offset.
    const ScopeGraph::PlotData d = w.panel().CWGraph1->plotData("Ref");
    ASSERT_EQ(d.y.size(), 128);
    EXPECT_NEAR(d.x[1] - d.x[0], double(5e-6f) * 10000, 1e-12);
    EXPECT_FLOAT_EQ(static_cast<float>(d.y[1]), -(nearestSingle("4.761903E-02") * 0.5f) - 1.5f);
    EXPECT_TRUE(w.panel().CWGraph1->plotData("CHa").y.isEmpty());
}

TEST_F(MainWindowFile, AnUpperCaseWdfLoadsAndATxtFileShowsOnlyTheLoadError) {
    frmMain& w = start();
    const QString txt = dir.filePath("trace.txt");
    writeBytes(txt.toStdString(), readBytes(wdfFixture("windows-style.wdf")));
    const std::string before = panelState(w);
    openThroughFile(w, txt);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].title, "File Load Error");
    EXPECT_EQ(messages[0].text, "Please Select a Waveform Data File (*.wdf)!");
    EXPECT_EQ(panelState(w), before);

    const QString upper = dir.filePath("TRACE.WDF");
    writeBytes(upper.toStdString(), readBytes(wdfFixture("windows-style.wdf")));
    openThroughFile(w, upper);
    EXPECT_EQ(messages.size(), 1u);
    EXPECT_TRUE(w.model().blnRefLoaded);
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 9);
}

TEST_F(MainWindowFile, AWrongNameShowsBothMessagesAndLeavesEverySettingUntouched) {
    frmMain& w = running(4);
    w.panel().CWBStoreRef->setValue(true);
    w.panel().CWBStoreRef->setValue(false);
    const std::string before = panelState(w);
    openThroughFile(w, editedFixture("Name=Zorvik", "Name=Other"));
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].text, "File is not for this application!");
    EXPECT_EQ(messages[0].title, "File Format");
    EXPECT_EQ(messages[0].icon, MsgIcon::Critical);
    EXPECT_EQ(messages[1].text, "Please Select a Waveform Data File (*.wdf)!");
    EXPECT_EQ(messages[1].icon, MsgIcon::Exclamation);
    EXPECT_EQ(panelState(w), before);
    EXPECT_FALSE(w.model().blnRefLoaded);
    EXPECT_TRUE(w.fileForm().sCurrentFile.isEmpty());
}

TEST_F(MainWindowFile, AKnobPositionTheKnobDoesNotHaveEndsTheLoad) {
    frmMain& w = start();
    openThroughFile(w, editedFixture("VScaleIndex=4", "VScaleIndex=8"));
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].title, "File Load Error");
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 9); // read before the refused value
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 1);
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), 0.0);
    EXPECT_FALSE(w.model().blnRefLoaded);
    EXPECT_FALSE(w.panel().CWBPrint->isEnabled());
}

TEST_F(MainWindowFile, AMissingReftrace7FailsAfterSamples1To120WereReplaced) {
    frmMain& w = start();
    std::string text = readBytes(wdfFixture("windows-style.wdf"));
    const auto at = text.find("Reftrace7=");
    text.erase(at, text.find("\r\n", at) + 2 - at);
    const QString path = dir.filePath("short.wdf");
    writeBytes(path.toStdString(), text);
    w.model().sngRefVolts.fill(7.0f);
    openThroughFile(w, path);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].title, "File Load Error");
    EXPECT_EQ(bits(w.model().sngRefVolts[119]), bits(asFiled(probeVolts(8, 0x00))));
    EXPECT_EQ(w.model().sngRefVolts[120], 7.0f);
    EXPECT_FALSE(w.model().blnRefLoaded);
}

// The whole way a user goes: POWER with frames arriving, STORE, FILE -> Save As; then the
// program starts again and FILE -> Open brings back the same trace at the same place.
TEST_F(MainWindowFile, ASavedReferenceComesBackTheSameAfterARestart) {
    frmMain& w = running(11);
    feedFrame(23);
    w.panel().CWBStoreRef->setValue(true);
    const TraceArray stored = w.model().sngRefVolts;
    const ScopeGraph::PlotData shown = w.panel().CWGraph1->plotData("Ref");
    ASSERT_EQ(shown.y.size(), 128);
    const QString path = dir.filePath("bench.wdf");
    inFileForm = [path](frmFile& form) {
        form.setSaveChooser([path](QWidget*, const QString&, const QString&) {
            return std::optional<QString>(path);
        });
        form.mnuFileSaveAs->trigger();
        form.OKButton->click();
    };
    pressFile(w);
    ASSERT_TRUE(fs::exists(path.toStdString()));
    EXPECT_TRUE(messages.empty());

    window->close();
    window.reset();
    fake.calls.clear();
    frmMain& again = start();
    ASSERT_FALSE(again.panel().CWBRef->value());
    openThroughFile(again, path);
    EXPECT_TRUE(messages.empty());
    // Each sample comes back as the single nearest to its 7-digit text: at most the last bit
    // differs from the stored one, and the trace lies where it lay.
    for (std::size_t i = 0; i < 128; ++i)
        EXPECT_EQ(bits(again.model().sngRefVolts[i]), bits(asFiled(stored[i]))) << i;
    EXPECT_TRUE(again.panel().CWBRef->value());
    EXPECT_TRUE(again.panel().CWBPrint->isEnabled());
    const ScopeGraph::PlotData back = again.panel().CWGraph1->plotData("Ref");
    EXPECT_EQ(back.x, shown.x);
    ASSERT_EQ(back.y.size(), shown.y.size());
    for (qsizetype i = 0; i < back.y.size(); ++i)
        EXPECT_NEAR(back.y[i], shown.y[i], 1e-6 * std::max(1.0, std::abs(shown.y[i]))) << i;
    EXPECT_TRUE(fake.calls.isEmpty());
}

TEST_F(MainWindowFile, AFileNamedAtStartUpLoadsByTheRulesOfOpen) {
    frmMain& w = start();
    w.openWaveformFile(fixture("windows-style.wdf"));
    EXPECT_TRUE(messages.empty());
    EXPECT_TRUE(w.model().blnRefLoaded);
    EXPECT_TRUE(w.panel().CWBRef->value());
    EXPECT_TRUE(w.panel().CWBPrint->isEnabled());
    EXPECT_EQ(w.fileForm().sCurrentFile, fixture("windows-style.wdf"));
    EXPECT_FALSE(w.fileForm().isVisible());

    w.openWaveformFile(fixture("garbage.wdf"));
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].title, "File Format");
    EXPECT_EQ(messages[1].title, "File Load Error");
    EXPECT_TRUE(w.fileForm().sCurrentFile.isEmpty());
}

} // namespace
