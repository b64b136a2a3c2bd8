// A front-panel push button with a caption and a built-in lamp.
#include "widgets/LitButton.h"

#include "widgets/PanelLook.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>

namespace zorvik {

LitButton::LitButton(const QString& caption, Mode mode, QWidget* parent)
    : QAbstractButton(parent), m_mode(mode) {
    PanelLook::setUpControl(this);
    setText(caption);
    setCheckable(mode == Mode::Toggle);
    connect(this, &QAbstractButton::pressed, this, &LitButton::onPressed);
    connect(this, &QAbstractButton::released, this, &LitButton::onReleased);
    connect(this, &QAbstractButton::toggled, this, &LitButton::onToggled);
}

void LitButton::setMode(Mode mode) {
    if (mode == m_mode)
        return;
    const bool v = value();
    m_mode = mode;
    m_silent = true;
    setCheckable(mode == Mode::Toggle);
    if (mode == Mode::Toggle)
        setChecked(v);
    m_momentaryValue = v;
    m_silent = false;
    update();
}

bool LitButton::value() const {
    return m_mode == Mode::Toggle ? isChecked() : m_momentaryValue;
}

void LitButton::setValue(bool value) {
    store(value, true);
}

void LitButton::setValueSilently(bool value) {
    store(value, false);
}

void LitButton::store(bool value, bool notify) {
    if (m_mode == Mode::Toggle) {
        if (isChecked() == value)
            return;
        m_silent = !notify;
        setChecked(value); // onToggled emits valueChanged unless silent
        m_silent = false;
        return;
    }
    if (m_momentaryValue == value)
        return;
    m_momentaryValue = value;
    update();
    if (QAccessible::isActive()) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
    if (notify)
        emit valueChanged(value);
}

void LitButton::onPressed() {
    if (m_mode == Mode::Momentary)
        store(true, true);
    update();
}

void LitButton::onReleased() {
    if (m_mode == Mode::Momentary)
        store(false, true);
    update();
}

void LitButton::onToggled(bool checked) {
    update();
    if (m_mode == Mode::Toggle && !m_silent)
        emit valueChanged(checked);
}

void LitButton::setLampColor(const QColor& color) {
    m_lampColor = color;
    update();
}

void LitButton::setLampVisible(bool visible) {
    m_lampVisible = visible;
    update();
}

// Enter and Return work the button exactly as Space does.
void LitButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, event->modifiers(), QStringLiteral(" "),
                        event->isAutoRepeat());
        QAbstractButton::keyPressEvent(&space);
        event->setAccepted(space.isAccepted());
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void LitButton::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        QKeyEvent space(QEvent::KeyRelease, Qt::Key_Space, event->modifiers(), QStringLiteral(" "),
                        event->isAutoRepeat());
        QAbstractButton::keyReleaseEvent(&space);
        event->setAccepted(space.isAccepted());
        return;
    }
    QAbstractButton::keyReleaseEvent(event);
}

QRectF LitButton::keyRect() const {
    return QRectF(rect()).adjusted(3.0, 3.0, -3.0, -3.0);
}

// The lamp: a lit window across the top of the key.
QRectF LitButton::lampRect() const {
    const QRectF key = keyRect();
    const qreal lampH =
        qBound<qreal>(4.0, key.height() * 0.2, QFontMetricsF(font()).height() * 0.6);
    return QRectF(key.left() + key.width() * 0.2, key.top() + lampH * 0.6, key.width() * 0.6,
                  lampH);
}

QRectF LitButton::captionRect() const {
    QRectF caption = keyRect().adjusted(2, 2, -2, -2);
    if (m_lampVisible)
        caption.setTop(lampRect().bottom());
    return caption;
}

bool LitButton::textFits() const {
    const QFontMetricsF fm(font());
    const QRectF room = captionRect();
    const QString caption = QString(text()).remove(QLatin1Char('&'));
    return fm.horizontalAdvance(caption) <= room.width() && fm.height() <= room.height() + 1.0;
}

void LitButton::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing, true);
    const bool on = isEnabled();
    const QRectF key = keyRect();
    const bool down = isDown();

    // Key body: a raised dark cap, sunk while held down.
    QLinearGradient body(key.topLeft(), key.bottomLeft());
    if (down) {
        body.setColorAt(0.0, QColor(34, 36, 40));
        body.setColorAt(1.0, QColor(62, 65, 70));
    } else {
        body.setColorAt(0.0, on ? QColor(96, 100, 106) : QColor(70, 72, 76));
        body.setColorAt(1.0, on ? QColor(44, 46, 50) : QColor(50, 52, 55));
    }
    p.setPen(QPen(QColor(10, 10, 12), 1.0));
    p.setBrush(body);
    p.drawRoundedRect(key, 4.0, 4.0);
    p.setPen(QPen(down ? QColor(20, 20, 22) : QColor(140, 144, 150, on ? 160 : 80), 1.0));
    p.drawLine(key.topLeft() + QPointF(4, 1), key.topRight() + QPointF(-4, 1));

    if (m_lampVisible)
        PanelLook::drawBarLamp(p, lampRect().translated(0, down ? 1 : 0), m_lampColor, value(),
                               QString(), on);
    p.setPen(on ? PanelLook::textColor() : PanelLook::disabledTextColor());
    p.drawText(captionRect().translated(0, down ? 1 : 0), Qt::AlignCenter | Qt::TextShowMnemonic,
               text());

    if (hasFocus())
        PanelLook::drawFocusFrame(p, rect());
}

QSize LitButton::sizeHint() const {
    const QFontMetrics fm(font());
    return QSize(qMax(fm.horizontalAdvance(text()) + fm.height() * 2, fm.height() * 4),
                 fm.height() * 3);
}

QSize LitButton::minimumSizeHint() const {
    const QFontMetrics fm(font());
    return QSize(fm.horizontalAdvance(text()) + 10, fm.height() + 10);
}

} // namespace zorvik
