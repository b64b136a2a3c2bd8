// A main window wired to a scripted serial link, with message boxes recorded, for tests.
#pragma once

#include "app/ProgramServices.h"
#include "app/frmMain.h"
#include "common/FakeSerialLink.h"
#include "instrument/PortMap.h"
#include "support/MessageBox.h"

#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace zorvik::test {

class MainWindowFixture : public ::testing::Test {
protected:
    void SetUp() override {
        for (int n = 1; n <= 8; ++n)
            ports.setDevice(n, QString("/fake/com%1").arg(n).toStdString());
        MessageBoxes::setInterceptor([this](const MessageRecord& m) {
            messages.push_back(m);
            messageStatus.push_back(window ? window->panel().sbrSampleRate->text() : QString());
            return QMessageBox::Ok;
        });
    }
    void TearDown() override {
        if (window)
            window->close();
        window.reset();
        MessageBoxes::setInterceptor({});
    }

    /// Makes the window and runs its start-up; `existing` are the COM ports that exist.
    frmMain& start(QSet<int> existing = {}, SerialLink* link = nullptr) {
        existing_ = existing;
        shared.push_back(std::make_unique<ProgramServices>(
            link ? *link : fake, ports, [this](const QString& device) {
                for (int n : existing_) {
                    if (QString::fromStdString(ports.devicePath(n)) == device)
                        return true;
                }
                return false;
            }));
        MainWindowServices s;
        shared.back()->handTo(s);
        s.programFolder = dir.path();
        s.settingsPath = settingsPath();
        s.splashMinDisplayMs = 0;
        window = std::make_unique<frmMain>(s);
        window->Form_Load();
        window->show();
        return *window;
    }

    QString settingsPath() const { return dir.filePath("ZORVIK.INI"); }
    QString device(int n) const { return QString::fromStdString(ports.devicePath(n)); }

    QTemporaryDir dir;
    PortMap ports;
    FakeSerialLink fake;
    /// What the composition root shares, one set per start (a window started again gets its own).
    std::vector<std::unique_ptr<ProgramServices>> shared;
    std::unique_ptr<frmMain> window;
    std::vector<MessageRecord> messages;
    QStringList messageStatus; ///< the sample-rate panel's text while each message showed

private:
    QSet<int> existing_;
};

} // namespace zorvik::test
