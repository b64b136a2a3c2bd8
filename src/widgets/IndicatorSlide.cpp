// A read-only slide that mirrors a setting of the probe: values, named pointers, state lamps.
#include "widgets/IndicatorSlide.h"

#include "widgets/PanelLook.h"
#include "widgets/ScopeGraph.h"

#include <QAccessible>
#include <QEvent>

#include <cmath>
#include <limits>

namespace zorvik {

IndicatorSlide::IndicatorSlide(QWidget* parent) : QWidget(parent) {
    PanelLook::setUpControl(this);
    installEventFilter(this);
}

void IndicatorSlide::setPositionLabels(const QStringList& labels) {
    m_mode = Mode::Discrete;
    m_labels = labels;
    if (!m_labels.isEmpty())
        m_value = qBound(1.0, m_value, static_cast<double>(m_labels.size()));
    changed();
    updateGeometry();
}

void IndicatorSlide::setRange(double minimum, double maximum) {
    if (std::isnan(minimum) || std::isnan(maximum))
        return;
    if (maximum < minimum)
        std::swap(minimum, maximum);
    m_mode = Mode::Continuous;
    m_minimum = minimum;
    m_maximum = maximum;
    m_value = qBound(m_minimum, m_value, m_maximum);
    changed();
}

double IndicatorSlide::minimum() const {
    return m_mode == Mode::Discrete ? 1.0 : m_minimum;
}

double IndicatorSlide::maximum() const {
    return m_mode == Mode::Discrete ? static_cast<double>(positionCount()) : m_maximum;
}

void IndicatorSlide::setOrientation(Qt::Orientation orientation) {
    m_orientation = orientation;
    if (orientation == Qt::Vertical && (m_edge == Qt::TopEdge || m_edge == Qt::BottomEdge))
        m_edge = Qt::RightEdge;
    if (orientation == Qt::Horizontal && (m_edge == Qt::LeftEdge || m_edge == Qt::RightEdge))
        m_edge = Qt::BottomEdge;
    updateGeometry();
    update();
}

bool IndicatorSlide::setValue(double value) {
    if (std::isnan(value) || value < minimum() || value > maximum())
        return false;
    if (m_mode == Mode::Discrete && value != std::floor(value))
        return false;
    if (value != m_value) {
        m_value = value;
        changed();
        emit valueChanged(value);
    }
    return true;
}

void IndicatorSlide::setValueSilently(double value) {
    if (std::isnan(value) || value < minimum() || value > maximum() || value == m_value)
        return;
    if (m_mode == Mode::Discrete && value != std::floor(value))
        return;
    m_value = value;
    changed();
}

QString IndicatorSlide::valueText() const {
    if (m_mode == Mode::Discrete) {
        const int k = static_cast<int>(m_value);
        return (k >= 1 && k <= positionCount()) ? m_labels.at(k - 1).trimmed() : QString();
    }
    return QString::number(m_value, 'f', 2);
}

void IndicatorSlide::setPointerVisible(bool visible) {
    if (visible != m_pointerVisible) {
        m_pointerVisible = visible;
        changed();
    }
}

bool IndicatorSlide::addPointer(const QString& name, const QString& label, const QColor& color) {
    if (name.isEmpty() || indexOf(name) >= 0)
        return false;
    Pointer p;
    p.name = name;
    p.label = label.isEmpty() ? name : label;
    p.color = color.isValid() ? color : QColor(Qt::white);
    p.value = std::numeric_limits<double>::quiet_NaN();
    m_pointers.append(p);
    updateGeometry();
    changed();
    return true;
}

QStringList IndicatorSlide::pointerNames() const {
    QStringList names;
    for (const Pointer& p : m_pointers)
        names.append(p.name);
    return names;
}

int IndicatorSlide::indexOf(const QString& name) const {
    for (int i = 0; i < m_pointers.size(); ++i) {
        if (m_pointers.at(i).name == name)
            return i;
    }
    return -1;
}

int IndicatorSlide::find(const QString& name) const {
    const int i = indexOf(name);
    if (i < 0 && m_strictNames) {
        qWarning("%s: no pointer is named \"%s\"", qPrintable(objectName()), qPrintable(name));
        Q_ASSERT_X(false, "IndicatorSlide", "a pointer name the scale does not know");
    }
    return i;
}

void IndicatorSlide::setStrictNames(bool strict) {
    m_strictNames = strict;
}

bool IndicatorSlide::setPointerValue(const QString& name, double value) {
    const int i = find(name);
    if (i < 0 || std::isnan(value))
        return false;
    if (m_pointers[i].value != value) {
        m_pointers[i].value = value;
        changed();
    }
    return true;
}

double IndicatorSlide::pointerValue(const QString& name) const {
    const int i = find(name);
    return i < 0 ? std::numeric_limits<double>::quiet_NaN() : m_pointers.at(i).value;
}

bool IndicatorSlide::setPointerVisible(const QString& name, bool visible) {
    const int i = find(name);
    if (i < 0)
        return false;
    if (m_pointers[i].visible != visible) {
        m_pointers[i].visible = visible;
        changed();
    }
    return true;
}

bool IndicatorSlide::pointerVisible(const QString& name) const {
    const int i = find(name);
    return i >= 0 && m_pointers.at(i).visible;
}

bool IndicatorSlide::setPointerColor(const QString& name, const QColor& color) {
    const int i = find(name);
    if (i < 0 || !color.isValid())
        return false;
    m_pointers[i].color = color;
    update();
    return true;
}

QColor IndicatorSlide::pointerColor(const QString& name) const {
    const int i = find(name);
    return i < 0 ? QColor() : m_pointers.at(i).color;
}

QString IndicatorSlide::pointerLabel(const QString& name) const {
    const int i = find(name);
    return i < 0 ? QString() : m_pointers.at(i).label;
}

bool IndicatorSlide::addPointerStateMark(const QString& name, double value, const QString& text,
                                         const QColor& color) {
    const int i = find(name);
    if (i < 0 || std::isnan(value))
        return false;
    QVector<StateMark>& marks = m_pointers[i].marks;
    for (StateMark& m : marks) {
        if (m.value == value) {
            m.text = text;
            m.color = color;
            changed();
            return true;
        }
    }
    marks.append(StateMark{value, text, color.isValid() ? color : QColor(Qt::white)});
    updateGeometry();
    changed();
    return true;
}

const IndicatorSlide::StateMark* IndicatorSlide::litMark(const Pointer& pointer) const {
    if (!pointer.visible)
        return nullptr;
    for (const StateMark& m : pointer.marks) {
        if (m.value == pointer.value)
            return &m;
    }
    return nullptr;
}

QString IndicatorSlide::pointerStateText(const QString& name) const {
    const int i = find(name);
    const StateMark* mark = i < 0 ? nullptr : litMark(m_pointers.at(i));
    return mark ? mark->text : QString();
}

QColor IndicatorSlide::pointerStateColor(const QString& name) const {
    const int i = find(name);
    const StateMark* mark = i < 0 ? nullptr : litMark(m_pointers.at(i));
    return mark ? mark->color : QColor();
}

bool IndicatorSlide::hasLamps() const {
    for (const Pointer& p : m_pointers) {
        if (!p.marks.isEmpty())
            return true;
    }
    return false;
}

void IndicatorSlide::setTrackInsets(int start, int end) {
    m_insetStart = qMax(0, start);
    m_insetEnd = qMax(0, end);
    update();
}

ScopeGraph* IndicatorSlide::guide() const {
    return qobject_cast<ScopeGraph*>(m_guide.data());
}

void IndicatorSlide::alignTrackWith(ScopeGraph* graph) {
    if (ScopeGraph* old = guide()) {
        old->removeEventFilter(this);
        disconnect(old, &ScopeGraph::plotAreaChanged, this, nullptr);
    }
    m_guide = graph;
    if (graph) {
        graph->installEventFilter(this);
        connect(graph, &ScopeGraph::plotAreaChanged, this, qOverload<>(&QWidget::update),
                Qt::UniqueConnection);
    }
    update();
}

bool IndicatorSlide::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_guide.data() || watched == this) {
        switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
        case QEvent::ParentChange:
            update();
            break;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

QString IndicatorSlide::accessibleValueText() const {
    QStringList parts;
    if (m_mode == Mode::Discrete) {
        if (m_pointerVisible && !valueText().isEmpty())
            parts.append(valueText());
    } else {
        for (const Pointer& p : m_pointers) {
            if (p.visible && p.marks.isEmpty() && !std::isnan(p.value))
                parts.append(p.name + QLatin1Char(' ') + QString::number(p.value, 'f', 2));
        }
    }
    for (const Pointer& p : m_pointers) {
        if (const StateMark* m = litMark(p))
            parts.append(m->text);
    }
    return parts.join(QStringLiteral(", "));
}

void IndicatorSlide::changed() {
    update();
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(this, m_value);
    QAccessible::updateAccessibility(&event);
}

void IndicatorSlide::focusInEvent(QFocusEvent* event) {
    update();
    QWidget::focusInEvent(event);
}

void IndicatorSlide::focusOutEvent(QFocusEvent* event) {
    update();
    QWidget::focusOutEvent(event);
}

} // namespace zorvik
