// A stand-in main window for tests of the Options dialog: it records what the dialog asks of
// it, keeps port and colour state, and shows the dialog without blocking.
#pragma once

#include "dialogs/OptionsHost.h"
#include "dialogs/frmOptions.h"
#include "support/MessageBox.h"
#include "support/ModalRunner.h"

#include <QStringList>
#include <QWidget>
#include <array>
#include <gtest/gtest.h>
#include <map>
#include <vector>

namespace zorvik::test {

class FakeOptionsHost : public OptionsHost {
public:
    std::array<bool, 9> exists{}; ///< exists[n]: COMn exists
    std::int16_t comPort = 1;
    bool autoPort = true;
    bool open = false;
    bool live = false;
    /// openPort fails like a port that has vanished: the link's failure path runs.
    bool openFails = false;
    /// The calls that change the link or the window, in order.
    QStringList log;
    /// Every colour set, in order ("Cursor1=#ff0000", "PlotArea=...", "CHa=...").
    QStringList colorLog;
    std::map<QString, QColor> colors;
    std::map<QString, QColor> defaults;

    QString portDescription(int n) const override {
        return QString("/dev/ttyFAKE%1: Fake USB UART, Zorvik, serial Z%1, 0403:6001").arg(n);
    }

    FakeOptionsHost() {
        const char* names[] = {"Cursor1",  "Cursor2", "Cursor3", "Cursor4",
                               "PlotArea", "CHa",     "Ref"};
        int i = 0;
        for (const char* name : names) {
            colors[name] = QColor(10 + i, 20 + i, 30 + i);
            defaults[name] = QColor(200 - i, 150 - i, 100 - i);
            ++i;
        }
    }

    bool ComPortExists(int n) const override {
        return n >= 1 && n <= 8 && exists[static_cast<std::size_t>(n)];
    }
    std::int16_t ComPort() const override { return comPort; }
    void setComPort(std::int16_t n) override {
        comPort = n;
        log << QStringLiteral("ComPort=%1").arg(n);
    }
    void clearAutoPort() override {
        autoPort = false;
        log << QStringLiteral("blnAutoPort=false");
    }
    bool portIsOpen() const override { return open; }
    void closePort() override {
        open = false;
        log << QStringLiteral("closePort");
    }
    void openPort() override {
        log << QStringLiteral("openPort");
        if (!openFails) {
            open = true;
            return;
        }
        // What the main window does when the port cannot be opened.
        MessageBoxes::show(nullptr, MsgIcon::Critical, QStringLiteral("Communication Error"),
                           QStringLiteral("Unable to Communicate with Instrument - Check Port "
                                          "Connection!"));
        open = false;
        live = false;
    }
    bool liveData() const override { return live; }
    void resumeReception() override { log << QStringLiteral("resumeReception"); }

    QColor cursorColor(const QString& cursor) const override { return colors.at(cursor); }
    void setCursorColor(const QString& cursor, const QColor& color) override { set(cursor, color); }
    QColor plotAreaColor() const override { return colors.at(QStringLiteral("PlotArea")); }
    void setPlotAreaColor(const QColor& color) override { set(QStringLiteral("PlotArea"), color); }
    QColor plotLineColor(const QString& plot) const override { return colors.at(plot); }
    void setPlotLineColor(const QString& plot, const QColor& color) override { set(plot, color); }
    QColor defaultCursorColor(const QString& cursor) const override { return defaults.at(cursor); }
    QColor defaultPlotAreaColor() const override { return defaults.at(QStringLiteral("PlotArea")); }
    QColor defaultPlotLineColor(const QString& plot) const override { return defaults.at(plot); }

    void refreshMainWindow() override { log << QStringLiteral("refreshMainWindow"); }

private:
    void set(const QString& name, const QColor& color) {
        if (!colors.count(name))
            ADD_FAILURE() << "no such colour target: " << name.toStdString();
        colors[name] = color;
        colorLog << name + QLatin1Char('=') + color.name();
    }
};

/// The main window, the fake host, recorded message boxes and a dialog that shows without
/// blocking. Chooser calls are recorded with the colour they were preset with.
struct OptionsRig {
    QWidget mainWindow;
    FakeOptionsHost host;
    std::vector<MessageRecord> messages;
    std::vector<QColor> chooserPresets;
    std::optional<QColor> chooserAnswer;

    OptionsRig() {
        setModalRunner([](QDialog& dialog) {
            dialog.show();
            return 0;
        });
        MessageBoxes::setInterceptor([this](const MessageRecord& record) {
            messages.push_back(record);
            return QMessageBox::Ok;
        });
    }
    ~OptionsRig() {
        setModalRunner({});
        MessageBoxes::setInterceptor({});
    }
    OptionsRig(const OptionsRig&) = delete;
    OptionsRig& operator=(const OptionsRig&) = delete;

    /// MENU: loads and shows the dialog, with the faked colour chooser.
    frmOptions& open() {
        frmOptions* dialog = showOptions(&mainWindow, host);
        dialog->setColorChooser([this](const QColor& initial, QWidget*) {
            chooserPresets.push_back(initial);
            return chooserAnswer;
        });
        return *dialog;
    }
};

/// The control `name` of the dialog; a test fails when it is missing.
template <class T> T* control(QWidget& dialog, const char* name) {
    T* widget = dialog.findChild<T*>(QLatin1String(name));
    EXPECT_NE(widget, nullptr) << "no control " << name;
    return widget;
}

} // namespace zorvik::test
