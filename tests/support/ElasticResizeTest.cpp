// class_Elastic: how FormResize re-lays a form out (factors, floor, font rule, minimum size,
// the swallowed first call, skipped steps).
#include "support/FakeElasticForm.h"
#include "support/class_Elastic.h"

#include <gtest/gtest.h>

namespace zorvik::test {
namespace {

using P = ElasticProperty;

// A 12000 x 9000 twips form, initialised and past its swallowed first resize.
class ElasticResize : public ::testing::Test {
protected:
    void initialise() {
        elastic.Init(form);
        elastic.FormResize(form); // swallowed
        form.writes.clear();
    }
    void resizeTo(double height, double width) {
        form.height = height;
        form.width = width;
        elastic.FormResize(form);
    }

    FakeElasticForm form;
    class_Elastic elastic;
};

TEST_F(ElasticResize, FirstResizeAfterInitChangesNothing) {
    form.addControl(box(1500, 1500, 600, 3000, 8));
    elastic.Init(form);
    resizeTo(11250, 15000);

    EXPECT_FALSE(elastic.justInitialised());
    EXPECT_TRUE(form.writes.empty());
    EXPECT_EQ(form.value(0, P::Top), 1500);
    EXPECT_EQ(form.height, 11250);
    EXPECT_EQ(form.width, 15000);
    EXPECT_TRUE(form.redraw); // the picture is kept from the first call on

    elastic.FormResize(form);
    EXPECT_EQ(form.value(0, P::Top), 1892);
}

TEST_F(ElasticResize, HeightFactorAllowsFor400TwipsAndWidthFactorDoesNot) {
    form.addControl(box(1500, 1500, 600, 3000, 8));
    initialise();
    // Height factor (9000 - 400) / (11250 - 400), width factor 12000 / 15000 = 0.8.
    resizeTo(11250, 15000);

    EXPECT_EQ(form.value(0, P::Top), 1892);    // Int(1892.44)
    EXPECT_EQ(form.value(0, P::Left), 1875);   // 1500 / 0.8
    EXPECT_EQ(form.value(0, P::Height), 756);  // Int(756.98)
    EXPECT_EQ(form.value(0, P::Width), 3750);  // 3000 / 0.8
    EXPECT_EQ(form.value(0, P::FontSize), 10); // s = 10, Round(10) even
}

TEST_F(ElasticResize, EnlargingTo125PercentTurnsFont8Into10AndFont9Into12) {
    form.addControl(box(0, 0, 100, 100, 8));
    form.addControl(box(0, 0, 100, 100, 9));
    initialise();
    resizeTo(9000, 15000);

    EXPECT_EQ(form.value(0, P::FontSize), 10);
    EXPECT_EQ(form.value(1, P::FontSize), 12); // s = 11.25, Round(11.25) = 11 is odd
}

TEST_F(ElasticResize, LineEndPointsScaleByHeightForYAndWidthForX) {
    form.addControl(line(600, 4000, 12000, 4400));
    initialise();
    resizeTo(11250, 15000);

    EXPECT_EQ(form.value(0, P::Y1), 5046); // Int(5046.51)
    EXPECT_EQ(form.value(0, P::X1), 750);
    EXPECT_EQ(form.value(0, P::Y2), 5551); // Int(5551.16)
    EXPECT_EQ(form.value(0, P::X2), 15000);
    const std::vector<std::pair<int, P>> order{{0, P::Y1}, {0, P::X1}, {0, P::Y2}, {0, P::X2}};
    EXPECT_EQ(form.writes, order);
}

TEST_F(ElasticResize, RightMarginScalesByTheHeightFactor) {
    FakeControl text = box(0, 0, 100, 100, 8);
    text.values[P::RightMargin] = 3000;
    form.addControl(text);
    initialise();
    resizeTo(11250, 15000);

    EXPECT_EQ(form.value(0, P::RightMargin), 3784); // not 3750, which the width factor gives
}

TEST_F(ElasticResize, IntIsTheFloorAlsoForNegativePositions) {
    form.addControl(box(-100, -101, 100, 100, 8));
    initialise();
    resizeTo(9000, 15000);

    EXPECT_EQ(form.value(0, P::Top), -100);  // height factor 1
    EXPECT_EQ(form.value(0, P::Left), -127); // -126.25 goes down, not towards zero
}

TEST_F(ElasticResize, FormShrunkBelowHalfHeightIsRaisedToHalfInThatDirectionOnly) {
    form.addControl(box(1000, 1000, 100, 100, 8));
    initialise();
    resizeTo(3000, 10000);

    EXPECT_EQ(form.height, 4500);
    EXPECT_EQ(form.width, 10000);
    // The factors use the corrected height: (9000 - 400) / (4500 - 400).
    EXPECT_EQ(form.value(0, P::Top), 476);
    EXPECT_EQ(form.value(0, P::Left), 833);
}

TEST_F(ElasticResize, FormShrunkBelowHalfWidthIsRaisedToHalfInThatDirectionOnly) {
    initialise();
    resizeTo(8000, 5000);

    EXPECT_EQ(form.height, 8000);
    EXPECT_EQ(form.width, 6000);
}

TEST_F(ElasticResize, FormShrunkBelowHalfInBothDirectionsIsRaisedInBoth) {
    initialise();
    resizeTo(100, 100);

    EXPECT_EQ(form.height, 4500);
    EXPECT_EQ(form.width, 6000);
}

TEST_F(ElasticResize, ControlsAddedAfterInitAreNotManaged) {
    form.addControl(box(100, 100, 100, 100, 8));
    initialise();
    const int late = form.addControl(box(300, 300, 300, 300, 8));
    resizeTo(9000, 15000);

    EXPECT_EQ(form.value(0, P::Left), 125);
    EXPECT_EQ(form.value(late, P::Left), 300);
    EXPECT_EQ(form.value(late, P::Width), 300);
    for (const auto& write : form.writes)
        EXPECT_EQ(write.first, 0);
}

TEST_F(ElasticResize, StepThatFailsIsSkippedAndTheNextStepsStillRun) {
    FakeControl stubborn = box(1000, 1000, 1000, 1000, 8);
    stubborn.refused = {P::Top, P::Height};
    form.addControl(stubborn);
    FakeControl button = box(2000, 2000, 2000, 2000, 8);
    button.values.erase(P::FontSize); // a control without a font
    form.addControl(button);
    initialise();
    resizeTo(9000, 15000);

    EXPECT_EQ(form.value(0, P::Top), 1000);
    EXPECT_EQ(form.value(0, P::Left), 1250);
    EXPECT_EQ(form.value(0, P::Height), 1000);
    EXPECT_EQ(form.value(0, P::Width), 1250);
    EXPECT_EQ(form.value(0, P::FontSize), 10);
    EXPECT_EQ(form.value(1, P::Left), 2500);
    EXPECT_EQ(form.value(1, P::Width), 2500);
}

TEST_F(ElasticResize, HeightOfExactly400TwipsSkipsOnlyTheStepsThatNeedTheHeightFactor) {
    form.height = 600;
    FakeControl text = box(100, 200, 50, 300, 9);
    text.values[P::RightMargin] = 250;
    form.addControl(text);
    initialise();
    form.controls[0].values[P::Top] = 7777;
    form.controls[0].values[P::Height] = 7777;
    form.controls[0].values[P::RightMargin] = 7777;
    resizeTo(400, 6000);

    EXPECT_EQ(form.value(0, P::Top), 7777);
    EXPECT_EQ(form.value(0, P::Height), 7777);
    EXPECT_EQ(form.value(0, P::RightMargin), 7777);
    EXPECT_EQ(form.value(0, P::Left), 100); // width factor 2
    EXPECT_EQ(form.value(0, P::Width), 150);
    EXPECT_EQ(form.value(0, P::FontSize), 4); // s = 4.5: Int 4, Round 4 even
}

TEST_F(ElasticResize, ResizeBeforeAnyInitTouchesNoControl) {
    form.addControl(box(100, 100, 100, 100, 8));
    elastic.FormResize(form);

    EXPECT_TRUE(form.writes.empty());
    EXPECT_EQ(form.height, 9000);
    EXPECT_TRUE(form.redraw);
}

TEST_F(ElasticResize, EveryResizeStartsFromTheDesignValuesNotTheLastLayout) {
    form.addControl(box(1000, 1000, 1000, 1000, 9));
    initialise();
    resizeTo(9000, 24000);
    resizeTo(9000, 12000);

    EXPECT_EQ(form.value(0, P::Left), 1000);
    EXPECT_EQ(form.value(0, P::Width), 1000);
    EXPECT_EQ(form.value(0, P::FontSize), 10); // s = 9: Int 9 + (9 mod 2)
}

} // namespace
} // namespace zorvik::test
