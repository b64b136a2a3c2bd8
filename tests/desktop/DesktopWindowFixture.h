// The main window on a real X server, with a scripted serial link and no COM port present:
// the windows it opens are the real ones, message boxes included.
#pragma once

#include "app/ProgramServices.h"
#include "app/frmMain.h"
#include "common/FakeSerialLink.h"
#include "instrument/PortMap.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace zorvik::test {

class DesktopWindowFixture : public ::testing::Test {
protected:
    frmMain& start() {
        for (int n = 1; n <= 8; ++n)
            ports.setDevice(n, dir.filePath(QString("com%1").arg(n)).toStdString());
        shared =
            std::make_unique<ProgramServices>(fake, ports, [](const QString&) { return false; });
        MainWindowServices s;
        shared->handTo(s);
        s.programFolder = dir.path();
        s.settingsPath = dir.filePath("ZORVIK.INI");
        s.splashMinDisplayMs = splashMinDisplayMs;
        window = std::make_unique<frmMain>(s);
        window->Form_Load();
        window->show();
        return *window;
    }
    void TearDown() override {
        if (window)
            window->close();
        window.reset();
    }

    /// How long the splash screen stays up at start (none unless a test asks for it).
    int splashMinDisplayMs = 0;
    QTemporaryDir dir;
    PortMap ports;
    FakeSerialLink fake;
    std::unique_ptr<ProgramServices> shared;
    std::unique_ptr<frmMain> window;
};

} // namespace zorvik::test
