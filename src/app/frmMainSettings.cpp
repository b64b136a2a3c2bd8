// The main window's part in the settings file: which controls the file restores and saves.
#include "app/frmMain.h"

#include "storage/ConversionError.h"
#include "storage/SettingsFile.h"
#include "storage/SettingsPanel.h"
#include "storage/VbConvert.h"
#include "storage/cInifile.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <stdexcept>

namespace zorvik {

namespace {

/// A colour as the settings file keeps it: red in the low byte, then green, then blue.
std::int32_t toRgb(const QColor& c) {
    return c.red() | (c.green() << 8) | (c.blue() << 16);
}

QColor fromRgb(std::int32_t rgb) {
    if (rgb < 0 || rgb > 0xFFFFFF)
        throw std::out_of_range("not a colour");
    return QColor(rgb & 0xFF, (rgb >> 8) & 0xFF, (rgb >> 16) & 0xFF);
}

/// The controls of the main window as the settings file sees them. A value a control refuses
/// throws, so the file's reader skips that key and goes on with the next.
class MainWindowSettings final : public SettingsPanel {
public:
    explicit MainWindowSettings(frmMain& w) : w_(w) {}

    double timeRangeValue() const override { return w_.CWKTimeRange->value(); }
    double chaLevelValue() const override { return w_.CWKChaLvl->value(); }
    double chaOffsetValue() const override { return w_.CWSCHaOffset->value(); }

    std::int32_t colour(SettingsColour which) const override {
        switch (which) {
        case SettingsColour::Cursor1:
            return toRgb(w_.CWGraph1->cursorColor("Cursor1"));
        case SettingsColour::Cursor2:
            return toRgb(w_.CWGraph1->cursorColor("Cursor2"));
        case SettingsColour::Cursor3:
            return toRgb(w_.CWGraph1->cursorColor("Cursor3"));
        case SettingsColour::Cursor4:
            return toRgb(w_.CWGraph1->cursorColor("Cursor4"));
        case SettingsColour::Display:
            return toRgb(w_.CWGraph1->plotAreaColor());
        case SettingsColour::Primarytrace:
            return toRgb(w_.CWGraph1->plotColor("CHa"));
        case SettingsColour::Referencetrace:
            return toRgb(w_.CWGraph1->plotColor("Ref"));
        }
        return 0;
    }

    bool button(SettingsButton which) const override { return buttonFor(which)->value(); }

    void applyTimeRange(std::int32_t value) override {
        applyKnob(w_.CWKTimeRange, value);
        w_.CWKTimeRange_ValueChanged(value);
    }

    void applyChaLevel(std::int32_t value) override {
        applyKnob(w_.CWKChaLvl, value);
        w_.CWKChaLvl_ValueChanged(value);
    }

    void applyChaOffset(const std::string& text) override {
        // The slide takes the text as a number; text that is not one, or a value beyond the
        // slide's range, is refused.
        const double value = VbConvert::textToDouble(text);
        Slide* s = w_.CWSCHaOffset;
        if (value < s->minimum() || value > s->maximum())
            throw std::out_of_range("offset beyond the slide");
        s->setValueSilently(value);
        w_.CWSCHaOffset_ValueChanged(value);
    }

    void setColour(SettingsColour which, std::int32_t rgb) override {
        const QColor c = fromRgb(rgb);
        switch (which) {
        case SettingsColour::Cursor1:
            w_.CWGraph1->setCursorColor("Cursor1", c);
            break;
        case SettingsColour::Cursor2:
            w_.CWGraph1->setCursorColor("Cursor2", c);
            break;
        case SettingsColour::Cursor3:
            w_.CWGraph1->setCursorColor("Cursor3", c);
            break;
        case SettingsColour::Cursor4:
            w_.CWGraph1->setCursorColor("Cursor4", c);
            break;
        case SettingsColour::Display:
            w_.CWGraph1->setPlotAreaColor(c);
            break;
        case SettingsColour::Primarytrace:
            w_.CWGraph1->setPlotColor("CHa", c);
            break;
        case SettingsColour::Referencetrace:
            w_.CWGraph1->setPlotColor("Ref", c);
            break;
        }
    }

    void applyButton(SettingsButton which, bool value) override {
        buttonFor(which)->setValueSilently(value);
        switch (which) {
        case SettingsButton::Hcursors:
            w_.CWBHCursors_ValueChanged(value);
            break;
        case SettingsButton::Vcursors:
            w_.CWBVCursors_ValueChanged(value);
            break;
        case SettingsButton::Invert:
            w_.CWBChaInv_ValueChanged(value);
            break;
        }
    }

private:
    static void applyKnob(Knob* knob, std::int32_t value) {
        if (value < 1 || value > knob->positionCount())
            throw std::out_of_range("position the knob does not have");
        knob->setValueSilently(value);
    }

    LitButton* buttonFor(SettingsButton which) const {
        switch (which) {
        case SettingsButton::Hcursors:
            return w_.CWBHCursors;
        case SettingsButton::Vcursors:
            return w_.CWBVCursors;
        case SettingsButton::Invert:
            break;
        }
        return w_.CWBChaInv;
    }

    frmMain& w_;
};

} // namespace

namespace {
SettingsLocation settingsLocation(const MainWindowServices& s) {
    return {s.settingsPath.toStdString(), s.settingsOriginal.toStdString()};
}
} // namespace

void frmMain::readSettings() {
    if (services_.settingsPath.isEmpty())
        return;
    MainWindowSettings panel(*this);
    SettingsFile::read(*services_.ini, settingsLocation(services_).readPath().string(), panel);
}

void frmMain::writeSettings() {
    if (services_.settingsPath.isEmpty())
        return;
    MainWindowSettings panel(*this);
    SettingsFile::write(*services_.ini, settingsLocation(services_), panel);
}

} // namespace zorvik
