// The main window on a scripted link that delivers frames, for the tests of the reference
// trace and the File form; the File form runs in place of its modal loop.
#pragma once

#include "app/MainWindowFixture.h"
#include "common/FrameBytes.h"
#include "common/ModalWindows.h"
#include "storage/frmFile.h"
#include "widgets/LitButton.h"

#include <QTest>
#include <functional>
#include <memory>

namespace zorvik::test {

class ReferenceRig : public MainWindowFixture {
protected:
    void SetUp() override {
        MainWindowFixture::SetUp();
        modal = std::make_unique<ModalWindows>();
        modal->on<frmFile>([this](frmFile& form) {
            ++fileFormRuns;
            fileFormModal = form.isModal() || form.windowModality() != Qt::NonModal;
            fileFormParent = form.parentWidget();
            if (inFileForm)
                inFileForm(form);
        });
    }
    void TearDown() override {
        modal.reset();
        MainWindowFixture::TearDown();
    }

    /// POWER on with the probe answering on COM1, and one frame shown.
    frmMain& running(int seed = 1, HardwareState s = sampleState()) {
        fake.openable.insert(device(1));
        frmMain& w = start({1});
        w.panel().CWBPwr->setValue(true);
        EXPECT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 1; }, 1000));
        fake.feed(QByteArray(1, '\x7D'));
        EXPECT_TRUE(QTest::qWaitFor([&] { return w.model().blnLiveData; }, 1000));
        EXPECT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 2; }, 1000));
        feedFrame(seed, s);
        return w;
    }
    /// One frame arrives and is shown; the next two-byte read is armed.
    void feedFrame(int seed = 1, HardwareState s = sampleState()) {
        fake.feed(frameBytes(s, seed));
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return fake.pendingCount() == 2 && fake.buffered() == 0; }, 1000));
    }
    /// Presses FILE and waits until the File form has been run and closed again.
    void pressFile(frmMain& w) {
        const int before = fileFormRuns;
        w.panel().CWBFile->setValue(true);
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return fileFormRuns > before && !w.panel().CWBFile->value(); }, 2000));
    }

    std::unique_ptr<ModalWindows> modal;
    int fileFormRuns = 0;
    bool fileFormModal = false;
    QWidget* fileFormParent = nullptr;
    /// What the user does while the File form is open.
    std::function<void(frmFile&)> inFileForm;
};

} // namespace zorvik::test
