// What every analysis window shares, as a keyboard or screen-reader user meets it: each control
// that takes the focus has a name a screen reader can say, Tab reaches them, Esc closes the
// window, F1 names the window's own manual page, the window opens beside the main window and
// comes back where it was closed.
#include "AnalysisWindows.h"
#include "analysis/AnalysisActions.h"
#include "analysis/frmCompare.h"
#include "analysis/frmMeasurements.h"
#include "analysis/frmRecording.h"
#include "analysis/frmSpectrum.h"
#include "app/LiveWindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>

using namespace zorvik;
using zorvik::test::LiveWindowFixture;

namespace {

class AnalysisWindowsInUse : public zorvik::test::AnalysisWindowFixture {
protected:
    std::vector<AnalysisWindow*> openAll(AnalysisActions& a) {
        return {&a.showMeasurements(), &a.showSpectrum(), a.setCompare(true), &a.showRecording()};
    }
    /// The name a screen reader says for `w`: its accessible name, its own text, or the text of
    /// the label that names it.
    static QString spokenName(const QWidget& w) {
        if (!w.accessibleName().isEmpty())
            return w.accessibleName();
        if (const auto* b = qobject_cast<const QAbstractButton*>(&w))
            return b->text();
        for (const QLabel* l : w.window()->findChildren<QLabel*>())
            if (l->buddy() == &w)
                return l->text();
        return {};
    }
};

} // namespace

TEST_F(AnalysisWindowsInUse, EveryControlTabReachesHasANameToSay) {
    frmMain& w = start();
    AnalysisActions& a = analysisOn(w);
    for (AnalysisWindow* window : openAll(a)) {
        int controls = 0;
        for (QWidget* c : window->findChildren<QWidget*>()) {
            // (what Tab reaches: a label one can select text in takes a click's focus only)
            if (!c->isVisibleTo(window) || !(c->focusPolicy() & Qt::TabFocus) ||
                c->focusProxy() != nullptr || !c->isEnabled())
                continue;
            // (the inner line edits of spin and combo boxes speak for their box)
            if (qobject_cast<QAbstractSpinBox*>(c->parentWidget()) ||
                qobject_cast<QComboBox*>(c->parentWidget()))
                continue;
            ++controls;
            EXPECT_FALSE(spokenName(*c).remove('&').trimmed().isEmpty())
                << window->objectName().toStdString() << ": " << c->metaObject()->className() << " "
                << c->objectName().toStdString();
        }
        EXPECT_GE(controls, 1) << window->objectName().toStdString();
    }
}

TEST_F(AnalysisWindowsInUse, F1NamesEachWindowsOwnPageAndEscClosesIt) {
    frmMain& w = start();
    AnalysisActions& a = analysisOn(w);
    const std::vector<AnalysisWindow*> windows = openAll(a);
    const char* const pages[] = {"measurements.html", "spectrum.html", "compare.html",
                                 "export.html"};
    for (std::size_t i = 0; i < windows.size(); ++i) {
        EXPECT_EQ(frmMain::helpPageFor(windows[i]), pages[i]);
        ASSERT_TRUE(windows[i]->isVisible());
        QTest::keyClick(windows[i], Qt::Key_Escape);
        EXPECT_FALSE(windows[i]->isVisible()) << pages[i];
    }
    // Esc ended compare mode with its window.
    EXPECT_FALSE(a.compareAction()->isChecked());
}

TEST_F(AnalysisWindowsInUse, TabGoesThroughTheControlsOfAWindow) {
    frmMain& w = start();
    AnalysisActions& a = analysisOn(w);
    frmSpectrum& f = a.showSpectrum();
    QApplication::setActiveWindow(&f);
    QStringList reached;
    QWidget* first = f.nextInFocusChain();
    while (first && first->focusPolicy() == Qt::NoFocus)
        first = first->nextInFocusChain();
    ASSERT_NE(first, nullptr);
    first->setFocus();
    for (int i = 0; i < 6; ++i) {
        if (QWidget* focus = QApplication::focusWidget())
            reached << focus->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    for (const char* name : {"cboWindow", "cboUnit", "cboPadding"})
        EXPECT_TRUE(reached.contains(name)) << name << " " << reached.join(',').toStdString();
}

TEST_F(AnalysisWindowsInUse, AWindowOpensBesideTheMainWindowAndComesBackWhereItWasClosed) {
    frmMain& w = start();
    AnalysisActions& a = analysisOn(w);
    frmMeasurements& m = a.showMeasurements();
    EXPECT_FALSE(m.frameGeometry().intersects(w.frameGeometry()) &&
                 m.screen()->availableGeometry().width() >=
                     w.frameGeometry().width() + m.frameGeometry().width())
        << "over the main window although there is room beside it";
    m.move(60, 70);
    m.resize(700, 420);
    const QRect closedAt = m.geometry();
    m.close();
    // The next run: a new window of that kind takes the place the last one had.
    AnalysisActions& again = analysisOn(w);
    frmMeasurements& next = again.showMeasurements();
    EXPECT_NE(&next, &m);
    EXPECT_EQ(next.size(), closedAt.size());
    EXPECT_EQ(next.pos(), m.pos());
}
