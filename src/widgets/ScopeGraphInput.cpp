// Mouse and keyboard handling of the scope graph: taking, dragging and stepping the cursors.
#include "widgets/GraphCursors.h"
#include "widgets/ScopeGraph.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <cmath>

namespace zorvik {

namespace {
// Keyboard steps of a cursor, in divisions: a fifth (one graticule mark), a fiftieth with Shift.
constexpr double kCursorStep = 0.2;
constexpr double kCursorFineStep = 0.02;
// Keyboard moves land on whole billionths of a division. Without this, steps add up rounding
// residues: a cursor stepped back onto another would stand a hair beside it, and the readouts
// would show a tiny time and an absurd frequency instead of a zero difference.
constexpr double kCursorGrain = 1e9;

double steppedPosition(double position, double delta) {
    return std::round((position + delta) * kCursorGrain) / kCursorGrain;
}
} // namespace

// A cursor is taken when the pointer is pressed within a few pixels of its line.
double ScopeGraph::hitTolerance() const {
    return qMax(5.0, QFontMetricsF(font()).height() * 0.4);
}

void ScopeGraph::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        const int i = m_cursors->hitTest(event->position(), hitTolerance());
        if (i >= 0) {
            m_dragging = i;
            m_cursors->setSelected(i);
            redraw();
            event->accept();
            return;
        }
    }
    QCustomPlot::mousePressEvent(event);
}

void ScopeGraph::mouseMoveEvent(QMouseEvent* event) {
    if (m_dragging >= 0) {
        // The cursor follows the pointer and stops at the edges of the visible range.
        moveCursorByUser(m_dragging, m_cursors->positionAt(m_dragging, event->position()));
        event->accept();
        return;
    }
    const int i = m_cursors->hitTest(event->position(), hitTolerance());
    if (i < 0)
        unsetCursor();
    else
        setCursor(m_cursors->at(i).line == Qt::Vertical ? Qt::SizeHorCursor : Qt::SizeVerCursor);
    QCustomPlot::mouseMoveEvent(event);
}

void ScopeGraph::mouseReleaseEvent(QMouseEvent* event) {
    if (m_dragging >= 0 && event->button() == Qt::LeftButton) {
        m_dragging = -1;
        event->accept();
        return;
    }
    QCustomPlot::mouseReleaseEvent(event);
}

void ScopeGraph::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key >= Qt::Key_1 && key <= Qt::Key_4) {
        selectCursor(QStringLiteral("Cursor%1").arg(key - Qt::Key_0));
        event->accept();
        return;
    }
    if (key == Qt::Key_Escape && m_cursors->selected() >= 0) {
        selectCursor(QString());
        event->accept();
        return;
    }
    const int i = m_cursors->selected();
    if (i >= 0 && m_cursors->shown(i)) {
        const double step =
            event->modifiers().testFlag(Qt::ShiftModifier) ? kCursorFineStep : kCursorStep;
        const bool vertical = m_cursors->at(i).line == Qt::Vertical;
        double delta = 0.0;
        if (vertical && key == Qt::Key_Left)
            delta = -step;
        else if (vertical && key == Qt::Key_Right)
            delta = step;
        else if (!vertical && key == Qt::Key_Down)
            delta = -step;
        else if (!vertical && key == Qt::Key_Up)
            delta = step;
        if (delta != 0.0) {
            moveCursorByUser(i, steppedPosition(m_cursors->position(i), delta));
            event->accept();
            return;
        }
    }
    QCustomPlot::keyPressEvent(event);
}

} // namespace zorvik
