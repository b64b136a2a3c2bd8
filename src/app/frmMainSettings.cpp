// The main window's part in the settings file: which controls the file restores and saves.
#include "app/frmMain.h"

#include "app/StoredPanelValues.h"
#include "display/GraphNames.h"
#include "storage/ConversionError.h"
#include "storage/SettingsFile.h"
#include "storage/SettingsPanel.h"
#include "storage/cInifile.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <iterator>
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

/// Where each colour of the COLORS section lives on the graph, in the section's order.
struct GraphColourSlot {
    enum Part { Cursor, Area, Plot } part;
    const char* name; ///< the cursor or plot; none for the plot area
};
constexpr GraphColourSlot kColourSlots[] = {
    {GraphColourSlot::Cursor, names::kCursor1}, {GraphColourSlot::Cursor, names::kCursor2},
    {GraphColourSlot::Cursor, names::kCursor3}, {GraphColourSlot::Cursor, names::kCursor4},
    {GraphColourSlot::Area, nullptr},           {GraphColourSlot::Plot, names::kPlotCHa},
    {GraphColourSlot::Plot, names::kPlotRef},
};
static_assert(std::size(kColourSlots) ==
              static_cast<std::size_t>(SettingsColour::Referencetrace) + 1);

const GraphColourSlot& slotOf(SettingsColour which) {
    return kColourSlots[static_cast<std::size_t>(which)];
}

QColor colourAt(const ScopeGraph& graph, SettingsColour which) {
    const GraphColourSlot& slot = slotOf(which);
    switch (slot.part) {
    case GraphColourSlot::Cursor:
        return graph.cursorColor(slot.name);
    case GraphColourSlot::Plot:
        return graph.plotColor(slot.name);
    case GraphColourSlot::Area:
        break;
    }
    return graph.plotAreaColor();
}

void setColourAt(ScopeGraph& graph, SettingsColour which, const QColor& colour) {
    const GraphColourSlot& slot = slotOf(which);
    switch (slot.part) {
    case GraphColourSlot::Cursor:
        graph.setCursorColor(slot.name, colour);
        return;
    case GraphColourSlot::Plot:
        graph.setPlotColor(slot.name, colour);
        return;
    case GraphColourSlot::Area:
        break;
    }
    graph.setPlotAreaColor(colour);
}

/// The controls of the main window as the settings file sees them. A value a control refuses
/// throws, so the file's reader skips that key and goes on with the next.
class MainWindowSettings final : public SettingsPanel {
public:
    explicit MainWindowSettings(frmMain& w) : w_(w) {}

    double timeRangeValue() const override { return w_.panel().CWKTimeRange->value(); }
    double chaLevelValue() const override { return w_.panel().CWKChaLvl->value(); }
    double chaOffsetValue() const override { return w_.panel().CWSCHaOffset->value(); }

    std::int32_t colour(SettingsColour which) const override {
        return toRgb(colourAt(*w_.panel().CWGraph1, which));
    }

    bool button(SettingsButton which) const override { return buttonFor(which)->value(); }

    void applyTimeRange(std::int32_t value) override {
        setKnobFromFile(*w_.panel().CWKTimeRange, value);
        w_.CWKTimeRange_ValueChanged(value);
    }

    void applyChaLevel(std::int32_t value) override {
        setKnobFromFile(*w_.panel().CWKChaLvl, value);
        w_.CWKChaLvl_ValueChanged(value);
    }

    void applyChaOffset(const std::string& text) override {
        w_.CWSCHaOffset_ValueChanged(setOffsetFromFile(*w_.panel().CWSCHaOffset, text));
    }

    void setColour(SettingsColour which, std::int32_t rgb) override {
        setColourAt(*w_.panel().CWGraph1, which, fromRgb(rgb));
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
    LitButton* buttonFor(SettingsButton which) const {
        switch (which) {
        case SettingsButton::Hcursors:
            return w_.panel().CWBHCursors;
        case SettingsButton::Vcursors:
            return w_.panel().CWBVCursors;
        case SettingsButton::Invert:
            break;
        }
        return w_.panel().CWBChaInv;
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
