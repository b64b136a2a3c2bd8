// What assistive technology sees of the scope graph.
#include "widgets/AccessibleScopeGraph.h"

#include "widgets/ScopeGraph.h"

namespace zorvik {

AccessibleScopeGraph::AccessibleScopeGraph(ScopeGraph* graph)
    : QAccessibleWidget(graph, QAccessible::Chart) {}

ScopeGraph* AccessibleScopeGraph::graph() const {
    return qobject_cast<ScopeGraph*>(object());
}

QString AccessibleScopeGraph::text(QAccessible::Text t) const {
    if (t == QAccessible::Description) {
        const QString own = widget()->accessibleDescription();
        const QString summary = graph()->accessibleSummary();
        return own.isEmpty() ? summary : own + QStringLiteral(". ") + summary;
    }
    if (t == QAccessible::Help)
        return QStringLiteral("Keys 1 to 4 choose a cursor, the arrow keys move it.");
    return QAccessibleWidget::text(t);
}

} // namespace zorvik
