// Gives screen readers and other assistive technology access to the front-panel widgets.
#include "widgets/PanelAccessibility.h"

#include "widgets/AccessibleLed.h"
#include "widgets/AccessibleLitButton.h"
#include "widgets/AccessibleScopeGraph.h"
#include "widgets/AccessibleValueControl.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QAccessible>

namespace zorvik {

namespace {

QAccessibleInterface* panelFactory(const QString&, QObject* object) {
    if (!object || !object->isWidgetType())
        return nullptr;
    if (auto* knob = qobject_cast<Knob*>(object))
        return new AccessibleValueControl(knob);
    if (auto* slide = qobject_cast<Slide*>(object))
        return new AccessibleValueControl(slide);
    if (auto* indicator = qobject_cast<IndicatorSlide*>(object))
        return new AccessibleValueControl(indicator);
    if (auto* button = qobject_cast<LitButton*>(object))
        return new AccessibleLitButton(button);
    if (auto* led = qobject_cast<Led*>(object))
        return new AccessibleLed(led);
    if (auto* graph = qobject_cast<ScopeGraph*>(object))
        return new AccessibleScopeGraph(graph);
    return nullptr;
}

} // namespace

void installPanelAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(panelFactory);
        return true;
    }();
    Q_UNUSED(installed);
}

} // namespace zorvik
