// cInifile: saving and restoring a window's state, position and size.
#include "storage/cInifile.h"

#include "storage/VbConvert.h"

#include <exception>
#include <string>
#include <utility>

namespace zorvik {

namespace {

// Puts the remembered Key back however the operation ends.
class KeyKeeper {
public:
    explicit KeyKeeper(cInifile& ini) : m_ini(ini), m_key(ini.Key()) {}
    ~KeyKeeper() { m_ini.setKey(m_key); }
    KeyKeeper(const KeyKeeper&) = delete;
    KeyKeeper& operator=(const KeyKeeper&) = delete;

private:
    cInifile& m_ini;
    std::string m_key;
};

// One axis of the screen fit: an edge nearer than the margin to the screen's start moves to
// the margin; a window whose far edge would pass the screen less the margin moves back so
// that it ends there, and where that puts its start inside the margin it starts at the margin
// and is made smaller to fit.
void fitOnScreen(std::int32_t& start, std::int32_t& size, std::int32_t screen,
                 std::int32_t margin) {
    if (start < margin)
        start = margin;
    if (static_cast<std::int64_t>(start) + size > static_cast<std::int64_t>(screen) - margin) {
        start = screen - margin - size;
        if (start < margin) {
            start = margin;
            size = screen - 2 * margin;
        }
    }
}

} // namespace

void cInifile::SaveFormPosition(FormGeometry& frmThis) {
    KeyKeeper keeper(*this);
    try {
        const FormGeometry::WindowState state = frmThis.windowState();
        if (state == FormGeometry::WindowState::Minimised)
            return;
        const bool maximised = state == FormGeometry::WindowState::Maximised;
        setKey("Maximised");
        std::string text = maximised ? "1" : "0";
        setValue(text);
        if (maximised)
            return;
        const std::pair<const char*, std::int32_t (FormGeometry::*)() const> keys[] = {
            {"Left", &FormGeometry::left},
            {"Top", &FormGeometry::top},
            {"Width", &FormGeometry::width},
            {"Height", &FormGeometry::height},
        };
        for (const auto& [key, getter] : keys) {
            setKey(key);
            text = VbConvert::longToText((frmThis.*getter)());
            setValue(text);
        }
    } catch (const std::exception&) {
        // A form without one of the properties: the operation ends quietly.
    }
}

void cInifile::LoadFormPosition(FormGeometry& frmThis, std::int32_t lMinWidth,
                                std::int32_t lMinHeight) {
    KeyKeeper keeper(*this);
    try {
        setDefault("FAIL");
        setKey("Left");
        std::int32_t lLeft = CLngDefault(Value(), frmThis.left());
        setKey("Top");
        std::int32_t lTop = CLngDefault(Value(), frmThis.top());
        setKey("Width");
        std::int32_t lWidth = CLngDefault(Value(), frmThis.width());
        setKey("Height");
        std::int32_t lHeight = CLngDefault(Value(), frmThis.height());

        if (lWidth < lMinWidth)
            lWidth = lMinWidth;
        if (lHeight < lMinHeight)
            lHeight = lMinHeight;

        fitOnScreen(lLeft, lWidth, frmThis.screenWidth(), 4 * frmThis.twipsPerPixelX());
        fitOnScreen(lTop, lHeight, frmThis.screenHeight(), 4 * frmThis.twipsPerPixelY());

        // A screen too small for the minimum size leaves the window where it is.
        if (lWidth >= lMinWidth && lHeight >= lMinHeight)
            frmThis.move(lLeft, lTop, lWidth, lHeight);

        setKey("Maximised");
        if (CLngDefault(Value(), 0) != 0)
            frmThis.setWindowState(FormGeometry::WindowState::Maximised);
    } catch (const std::exception&) {
        // A form without one of the properties: the operation ends quietly.
    }
}

} // namespace zorvik
