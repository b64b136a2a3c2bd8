// What assistive technology sees of the scope graph: a chart described in words.
#pragma once

#include <QAccessibleWidget>

namespace zorvik {

class ScopeGraph;

/// The graph as a chart whose description lists the axis ranges, the traces and the visible
/// cursors with their positions (the graph's keys move the cursors).
class AccessibleScopeGraph : public QAccessibleWidget {
public:
    explicit AccessibleScopeGraph(ScopeGraph* graph);

    QString text(QAccessible::Text t) const override;

private:
    ScopeGraph* graph() const;
};

} // namespace zorvik
