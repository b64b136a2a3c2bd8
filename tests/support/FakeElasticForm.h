// A form for the elastic-layout tests: plain numbers for the form and its controls, properties
// that a control lacks throw, and every value written is recorded.
#pragma once

#include "support/ElasticForm.h"

#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace zorvik::test {

struct FakeControl {
    bool line = false;
    std::map<ElasticProperty, double> values; // a property not in the map is missing
    std::set<ElasticProperty> refused;        // writing these throws
};

class FakeElasticForm : public ElasticForm {
public:
    double height = 9000;
    double width = 12000;
    ElasticWindowState state = ElasticWindowState::Normal;
    double screenH = 11520;
    double screenW = 15360;
    bool redraw = false;
    std::vector<FakeControl> controls;
    std::vector<std::pair<int, ElasticProperty>> writes; // every control write, in order

    int addControl(FakeControl control) {
        controls.push_back(std::move(control));
        return static_cast<int>(controls.size()) - 1;
    }

    double value(int index, ElasticProperty which) const {
        return controls.at(static_cast<std::size_t>(index)).values.at(which);
    }

    double formHeight() const override { return height; }
    double formWidth() const override { return width; }
    void setFormHeight(double twips) override { height = twips; }
    void setFormWidth(double twips) override { width = twips; }
    ElasticWindowState windowState() const override { return state; }
    double screenHeight() const override { return screenH; }
    double screenWidth() const override { return screenW; }
    bool autoRedraw() const override { return redraw; }
    void setAutoRedraw(bool on) override { redraw = on; }
    int controlCount() const override { return static_cast<int>(controls.size()); }
    bool isLine(int index) const override {
        return controls.at(static_cast<std::size_t>(index)).line;
    }
    double property(int index, ElasticProperty which) const override {
        const auto& values = controls.at(static_cast<std::size_t>(index)).values;
        const auto found = values.find(which);
        if (found == values.end())
            throw PropertyMissing("missing");
        return found->second;
    }
    void setProperty(int index, ElasticProperty which, double value) override {
        auto& control = controls.at(static_cast<std::size_t>(index));
        if (!control.values.count(which))
            throw PropertyMissing("missing");
        if (control.refused.count(which))
            throw PropertyInvalid("refused");
        control.values[which] = value;
        writes.emplace_back(index, which);
    }
};

/// A label-like control: position, size and font, no right margin.
inline FakeControl box(double top, double left, double height, double width, double font) {
    return FakeControl{false,
                       {{ElasticProperty::Top, top},
                        {ElasticProperty::Left, left},
                        {ElasticProperty::Height, height},
                        {ElasticProperty::Width, width},
                        {ElasticProperty::FontSize, font}},
                       {}};
}

/// A line from (x1, y1) to (x2, y2).
inline FakeControl line(double x1, double y1, double x2, double y2) {
    return FakeControl{true,
                       {{ElasticProperty::X1, x1},
                        {ElasticProperty::Y1, y1},
                        {ElasticProperty::X2, x2},
                        {ElasticProperty::Y2, y2}},
                       {}};
}

} // namespace zorvik::test
