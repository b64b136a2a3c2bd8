// class_Elastic: what Init records from a form (16-bit twips, whole font sizes, line end points,
// the screen size for a maximised form).
#include "support/FakeElasticForm.h"
#include "support/class_Elastic.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace zorvik::test {
namespace {

using P = ElasticProperty;

TEST(ElasticInit, StoresPositionsSizesAndFontOfEveryControl) {
    FakeElasticForm form;
    form.addControl(box(1500, 750, 600, 3000, 8));
    form.addControl(box(4500, 6000, 300, 1200, 12));
    class_Elastic elastic;
    elastic.Init(form);

    EXPECT_EQ(elastic.lastIndex(), 1);
    EXPECT_EQ(elastic.designHeight(), 9000);
    EXPECT_EQ(elastic.designWidth(), 12000);
    EXPECT_TRUE(elastic.justInitialised());
    EXPECT_EQ(elastic.storedTop(0), 1500);
    EXPECT_EQ(elastic.storedLeft(0), 750);
    EXPECT_EQ(elastic.storedHeight(0), 600);
    EXPECT_EQ(elastic.storedWidth(0), 3000);
    EXPECT_EQ(elastic.storedFontSize(0), 8);
    EXPECT_EQ(elastic.storedTop(1), 4500);
    EXPECT_EQ(elastic.storedFontSize(1), 12);
}

TEST(ElasticInit, LineStoresItsEndPointsInTopLeftHeightWidth) {
    FakeElasticForm form;
    form.addControl(line(100, 200, 300, 400));
    class_Elastic elastic;
    elastic.Init(form);

    EXPECT_EQ(elastic.storedLeft(0), 100);   // X1
    EXPECT_EQ(elastic.storedTop(0), 200);    // Y1
    EXPECT_EQ(elastic.storedWidth(0), 300);  // X2
    EXPECT_EQ(elastic.storedHeight(0), 400); // Y2
}

TEST(ElasticInit, ValuesRoundToNearestWithHalvesToEven) {
    FakeElasticForm form;
    form.addControl(box(1234.5, 1235.5, 99.4, 99.6, 8.25));
    form.addControl(box(0, 0, 0, 0, 8.5));
    form.addControl(box(0, 0, 0, 0, 9.5));
    class_Elastic elastic;
    elastic.Init(form);

    EXPECT_EQ(elastic.storedTop(0), 1234);
    EXPECT_EQ(elastic.storedLeft(0), 1236);
    EXPECT_EQ(elastic.storedHeight(0), 99);
    EXPECT_EQ(elastic.storedWidth(0), 100);
    EXPECT_EQ(elastic.storedFontSize(0), 8); // a fractional design size 8.25 is kept as 8
    EXPECT_EQ(elastic.storedFontSize(1), 8);
    EXPECT_EQ(elastic.storedFontSize(2), 10);
}

TEST(ElasticInit, ValueBeyond16BitsIsSkippedAndTheRestStored) {
    FakeElasticForm form;
    form.addControl(box(40000, 500, 32767, -32768, 10));
    form.addControl(box(32767.5, 0, 0, 0, 10)); // rounds to 32768: too big
    class_Elastic elastic;
    elastic.Init(form);

    EXPECT_EQ(elastic.storedTop(0), 0);
    EXPECT_EQ(elastic.storedLeft(0), 500);
    EXPECT_EQ(elastic.storedHeight(0), 32767);
    EXPECT_EQ(elastic.storedWidth(0), -32768);
    EXPECT_EQ(elastic.storedFontSize(0), 10);
    EXPECT_EQ(elastic.storedTop(1), 0);
}

TEST(ElasticInit, FormWiderThan32767TwipsLeavesTheDesignWidthUnset) {
    FakeElasticForm form;
    form.width = 40000;
    class_Elastic elastic;
    elastic.Init(form);

    EXPECT_EQ(elastic.designWidth(), 0);
    EXPECT_EQ(elastic.designHeight(), 9000);
}

TEST(ElasticInit, MissingPropertiesAreSkippedOneByOne) {
    FakeElasticForm form;
    FakeControl noFont = box(100, 200, 300, 400, 8);
    noFont.values.erase(P::FontSize);
    noFont.values.erase(P::Left);
    FakeControl margin = box(10, 20, 30, 40, 9);
    margin.values[P::RightMargin] = 2500;
    form.addControl(noFont);
    form.addControl(margin);
    class_Elastic elastic;
    elastic.Init(form);

    EXPECT_EQ(elastic.storedTop(0), 100);
    EXPECT_EQ(elastic.storedLeft(0), 0);
    EXPECT_EQ(elastic.storedHeight(0), 300);
    EXPECT_EQ(elastic.storedFontSize(0), 0);
    EXPECT_EQ(elastic.storedRightMargin(0), 0);
    EXPECT_EQ(elastic.storedRightMargin(1), 2500);
}

TEST(ElasticInit, FormMaximisedAtInitTakesTheScreenSizeAsDesignSize) {
    FakeElasticForm form;
    form.state = ElasticWindowState::Maximized;
    class_Elastic elastic;
    elastic.Init(form);

    EXPECT_EQ(form.height, 11520);
    EXPECT_EQ(form.width, 15360);
    EXPECT_EQ(elastic.designHeight(), 11520);
    EXPECT_EQ(elastic.designWidth(), 15360);
}

TEST(ElasticInit, PassingAWindowStateOfAnyValueAlsoTakesTheScreenSize) {
    FakeElasticForm form;
    class_Elastic elastic;
    elastic.Init(form, 0);

    EXPECT_EQ(elastic.designHeight(), 11520);
    EXPECT_EQ(elastic.designWidth(), 15360);
}

TEST(ElasticInit, NormalFormWithoutWindowStateKeepsItsOwnSize) {
    FakeElasticForm form;
    class_Elastic elastic;
    elastic.Init(form);

    EXPECT_EQ(form.height, 9000);
    EXPECT_EQ(elastic.designHeight(), 9000);
    EXPECT_EQ(elastic.designWidth(), 12000);
}

TEST(ElasticInit, FormWithoutControlsHasLastIndexMinusOne) {
    FakeElasticForm form;
    class_Elastic elastic;
    elastic.Init(form);
    EXPECT_EQ(elastic.lastIndex(), -1);
    EXPECT_THROW(static_cast<void>(elastic.storedTop(0)), std::out_of_range);
}

TEST(ElasticInteger, RoundsHalvesToEvenAndRefusesOverflow) {
    EXPECT_EQ(class_Elastic::toInteger(0.5), 0);
    EXPECT_EQ(class_Elastic::toInteger(1.5), 2);
    EXPECT_EQ(class_Elastic::toInteger(2.5), 2);
    EXPECT_EQ(class_Elastic::toInteger(-2.5), -2);
    EXPECT_EQ(class_Elastic::toInteger(-2.6), -3);
    EXPECT_EQ(class_Elastic::toInteger(32767.4), 32767);
    EXPECT_EQ(class_Elastic::toInteger(-32768.5), -32768);
    EXPECT_THROW(class_Elastic::toInteger(32767.5), std::overflow_error);
    EXPECT_THROW(class_Elastic::toInteger(-32768.6), std::overflow_error);
}

TEST(ElasticFontRule, ExamplesOfTheRoundingRule) {
    EXPECT_EQ(class_Elastic::scaledFontSize(8.6), 9);
    EXPECT_EQ(class_Elastic::scaledFontSize(9.2), 10);
    EXPECT_EQ(class_Elastic::scaledFontSize(8.3), 8);
    EXPECT_EQ(class_Elastic::scaledFontSize(10.0), 10);
    EXPECT_EQ(class_Elastic::scaledFontSize(11.25), 12);
    // Halves round to even, so the odd correction never applies to them.
    EXPECT_EQ(class_Elastic::scaledFontSize(10.5), 10);
    EXPECT_EQ(class_Elastic::scaledFontSize(11.5), 11);
}

} // namespace
} // namespace zorvik::test
