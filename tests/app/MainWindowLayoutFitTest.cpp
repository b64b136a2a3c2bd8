// The main window at any shape: from its smallest size up to a 4K screen, wide and short or
// narrow and tall, every control stays inside its frame, clear of its neighbours, above the
// status bar, and every text stays whole inside the rectangle it is drawn in. The same tests run
// a second time at 200 % display scaling (ctest Layout.FitsAt200PercentScaling).
#include "app/MainWindowFixture.h"
#include "support/ElasticWidgetForm.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"
#include "widgets/Slide.h"

#include <QGroupBox>
#include <QStatusBar>
#include <QTest>
#include <cmath>

using namespace zorvik;
using zorvik::test::MainWindowFixture;

namespace {

std::string nameOf(const QWidget* w) {
    return w->objectName().toStdString();
}

std::string rectText(const QRectF& r) {
    return QString("(%1,%2 %3x%4)")
        .arg(r.x())
        .arg(r.y())
        .arg(r.width())
        .arg(r.height())
        .toStdString();
}

// Rectangles in widget pixels may reach the edge but not beyond it; half a pixel of
// anti-aliased glyph is not a cut.
bool inside(const QRectF& outer, const QRectF& inner) {
    return outer.adjusted(-0.5, -0.5, 0.5, 0.5).contains(inner);
}

void expectApart(const QList<QRectF>& rects, const QWidget* w, const char* what) {
    for (int i = 0; i < rects.size(); ++i) {
        for (int j = i + 1; j < rects.size(); ++j)
            EXPECT_FALSE(rects.at(i).intersects(rects.at(j)))
                << nameOf(w) << ": " << what << " " << i << " " << rectText(rects.at(i)) << " and "
                << j << " " << rectText(rects.at(j)) << " overlap";
    }
}

void expectInside(const QList<QRectF>& rects, const QWidget* w, const char* what) {
    for (const QRectF& r : rects)
        EXPECT_TRUE(inside(QRectF(w->rect()), r)) << nameOf(w) << ": " << what << " " << rectText(r)
                                                  << " outside " << rectText(QRectF(w->rect()));
}

// A line of text measured in `font` fits `room`.
void expectLineFits(const QFont& font, const QString& text, const QRectF& room, const QWidget* w) {
    const QFontMetricsF fm(font);
    EXPECT_LE(fm.horizontalAdvance(text), room.width() + 0.5)
        << nameOf(w) << ": \"" << text.toStdString() << "\" wider than " << rectText(room);
    EXPECT_LE(fm.height(), room.height() + 1.0)
        << nameOf(w) << ": \"" << text.toStdString() << "\" taller than " << rectText(room);
}

void checkTexts(QWidget* w) {
    if (auto* knob = qobject_cast<Knob*>(w)) {
        const QFontMetricsF fm(knob->font());
        if (!knob->heading().isEmpty()) {
            const QRectF heading = knob->headingRect();
            expectLineFits(knob->font(), knob->heading(), heading, w);
            EXPECT_LT(heading.height(), fm.height() * 1.5) << nameOf(w) << ": heading wraps";
        }
        QList<QRectF> labels;
        const QFontMetricsF lm(knob->labelFont());
        for (int k = 1; k <= knob->positionCount(); ++k) {
            labels << knob->labelRect(k);
            EXPECT_GE(labels.last().width() + 0.5,
                      lm.horizontalAdvance(knob->positionLabels().at(k - 1).trimmed()))
                << nameOf(w) << " label " << k;
            EXPECT_GE(labels.last().top(), knob->headingRect().bottom()) << nameOf(w) << " " << k;
        }
        expectInside(labels, w, "label");
        expectApart(labels, w, "label");
        // Labels round the dial stay clear of the dial itself.
        for (const QRectF& r : labels) {
            const QPointF c = knob->dialCenter();
            const qreal nearX = qBound(r.left(), c.x(), r.right());
            const qreal nearY = qBound(r.top(), c.y(), r.bottom());
            EXPECT_GE(std::hypot(nearX - c.x(), nearY - c.y()), knob->dialRadius())
                << nameOf(w) << ": a label lies on the dial " << rectText(r);
        }
    } else if (auto* slide = qobject_cast<Slide*>(w)) {
        expectInside(slide->scaleLabelRects(), w, "number");
        expectApart(slide->scaleLabelRects(), w, "number");
    } else if (auto* indicator = qobject_cast<IndicatorSlide*>(w)) {
        expectInside(indicator->labelRects(), w, "label");
        expectApart(indicator->labelRects(), w, "label");
        expectInside(indicator->tagRects(), w, "tag");
    } else if (auto* button = qobject_cast<LitButton*>(w)) {
        expectLineFits(button->font(), button->text(), button->captionRect(), w);
    } else if (auto* frame = qobject_cast<QGroupBox*>(w)) {
        if (frame->title().isEmpty())
            return;
        const QFontMetricsF fm(frame->font());
        // The caption, indented by half a line, ends before the frame's far corner, and stands
        // above every control inside the frame.
        EXPECT_LE(fm.height() / 2 + fm.horizontalAdvance(frame->title()) + fm.height() / 2,
                  frame->width())
            << nameOf(w);
        for (QWidget* child : frame->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            if (child->isVisible()) {
                EXPECT_GE(child->y(), fm.height())
                    << nameOf(w) << " caption over " << nameOf(child);
            }
        }
    } else if (auto* label = qobject_cast<QLabel*>(w)) {
        expectLineFits(label->font(), label->text(), QRectF(label->contentsRect()), w);
    }
}

} // namespace

class MainWindowLayoutFit : public MainWindowFixture, public ::testing::WithParamInterface<QSize> {
protected:
    frmMain& startAt(QSize size) {
        frmMain& w = start();
        w.resize(size);
        EXPECT_TRUE(QTest::qWaitFor([&] { return w.size() == size; }, 5000))
            << "window is " << w.width() << "x" << w.height();
        return w;
    }

    static void checkPlaces(frmMain& w) {
        QWidget* panel = w.centralWidget();
        ASSERT_NE(panel, nullptr);
        const std::string size = QString("%1x%2").arg(w.width()).arg(w.height()).toStdString();
        // The panel ends where the status bar begins.
        EXPECT_LE(panel->geometry().bottom(), w.statusBar()->geometry().top()) << size;
        const QList<QWidget*> all = controls(panel);
        ASSERT_GT(all.size(), 30);
        for (QWidget* c : all) {
            const QRect room(QPoint(0, 0), c->parentWidget()->size());
            EXPECT_TRUE(room.contains(c->geometry()))
                << size << ": " << nameOf(c) << " " << rectText(c->geometry()) << " outside "
                << nameOf(c->parentWidget()) << " " << rectText(room);
            for (QWidget* other : all) {
                if (other != c && other->parentWidget() == c->parentWidget() && c < other) {
                    EXPECT_FALSE(c->geometry().intersects(other->geometry()))
                        << size << ": " << nameOf(c) << " " << rectText(c->geometry())
                        << " overlaps " << nameOf(other) << " " << rectText(other->geometry());
                }
            }
        }
    }

    static QList<QWidget*> controls(QWidget* root) {
        QList<QWidget*> out;
        for (QWidget* w : root->findChildren<QWidget*>()) {
            if (w->property(ElasticWidgetForm::kControlProperty).toBool() && w->isVisible())
                out << w;
        }
        return out;
    }
};

TEST_P(MainWindowLayoutFit, EveryControlStaysInsideItsFrameAndClearOfItsNeighbours) {
    checkPlaces(startAt(GetParam()));
}

TEST_P(MainWindowLayoutFit, EveryTextIsWholeInsideItsControl) {
    frmMain& w = startAt(GetParam());
    const QList<QWidget*> all = controls(w.centralWidget());
    for (QWidget* c : all)
        checkTexts(c);

    // The cursor readouts have room for their longest readings.
    for (QLabel* readout : {w.panel().lblCVoltage, w.panel().lblCTime, w.panel().lblCFrequency}) {
        for (const char* reading : {"-999.999 mSec", "-100.000 V", "999.999 KHz"}) {
            readout->setText(reading);
            checkTexts(readout);
        }
    }
    // The status bar's panels show their longest texts whole.
    w.panel().sbrBaudRate->setText("Baud: 19200");
    w.panel().sbrComPort->setText("Com: COM8");
    w.panel().sbrSampleRate->setText("Sample Rate: 20Ks/s");
    // The bar lays its panels out when it next runs its layout.
    const auto panelsShowTheirTexts = [&] {
        for (QLabel* panel :
             {w.panel().sbrBaudRate, w.panel().sbrComPort, w.panel().sbrSampleRate}) {
            const QFontMetricsF fm(panel->font());
            const QRect room = panel->contentsRect();
            if (fm.horizontalAdvance(panel->text()) > room.width() + 0.5 ||
                fm.height() > room.height() + 1.0)
                return false;
        }
        return true;
    };
    // Waits for the fit, then reports in detail below when it never comes.
    if (!QTest::qWaitFor(panelsShowTheirTexts, 2000))
        ADD_FAILURE() << "the status bar's panels never showed their texts whole";
    for (QLabel* panel : {w.panel().sbrBaudRate, w.panel().sbrComPort, w.panel().sbrSampleRate})
        expectLineFits(panel->font(), panel->text(), QRectF(panel->contentsRect()), panel);
}

TEST_P(MainWindowLayoutFit, TypeIsNeverSmallerThanAtTheDesignSize) {
    // Fitting only takes away what the layout's type rule adds beyond the room: no control is
    // shown in type much smaller than at the window's design size, however the window is shaped.
    frmMain& first = start();
    QHash<QString, double> design;
    for (QWidget* c : controls(first.centralWidget()))
        design.insert(c->objectName(), c->font().pointSizeF());
    first.close();
    window.reset();

    frmMain& w = startAt(GetParam());
    for (QWidget* c : controls(w.centralWidget())) {
        if (!design.contains(c->objectName()))
            continue;
        EXPECT_GE(c->font().pointSizeF(), design.value(c->objectName()) * 0.8)
            << nameOf(c) << " at " << GetParam().width() << "x" << GetParam().height();
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, MainWindowLayoutFit,
                         ::testing::Values(QSize(800, 600), QSize(1600, 620), QSize(820, 1000),
                                           QSize(1024, 768), QSize(1920, 1080), QSize(3840, 2160),
                                           QSize(3840, 600), QSize(800, 2160), QSize(1280, 1024)),
                         [](const ::testing::TestParamInfo<QSize>& info) {
                             return std::to_string(info.param.width()) + "x" +
                                    std::to_string(info.param.height());
                         });

// Between the fixed sizes above, a sweep over many shapes, from the smallest window to a 4K
// screen: rounding never makes neighbours overlap nor a text leave its control.
TEST_F(MainWindowLayoutFit, NoShapeUpToA4kScreenMakesControlsOverlapOrTextsLeaveThem) {
    frmMain& w = start();
    int count = 0;
    for (int width = 800; width <= 3840; width += 89) {
        const int height = 600 + (width * 7919) % 1561; // spread over 600..2160
        w.resize(width, height);
        ASSERT_TRUE(QTest::qWaitFor([&] { return w.size() == QSize(width, height); }, 5000));
        checkPlaces(w);
        for (QWidget* c : controls(w.centralWidget()))
            checkTexts(c);
        ++count;
        if (HasFailure())
            break;
    }
    EXPECT_EQ(count, 35);
}
