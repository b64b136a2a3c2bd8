// The up-down spinner with a buddy label.
#include "widgets/UpDown.h"

#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace zorvik {

UpDown::UpDown(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_up = new QToolButton(this);
    m_up->setArrowType(Qt::UpArrow);
    m_up->setAutoRepeat(true);
    m_down = new QToolButton(this);
    m_down->setArrowType(Qt::DownArrow);
    m_down->setAutoRepeat(true);
    for (QToolButton* button : {m_up, m_down}) {
        button->setFocusPolicy(Qt::NoFocus);
        button->setFixedSize(18, 11);
        layout->addWidget(button);
    }
    connect(m_up, &QToolButton::clicked, this, &UpDown::stepUp);
    connect(m_down, &QToolButton::clicked, this, &UpDown::stepDown);
}

void UpDown::setRange(int minimum, int maximum) {
    m_minimum = minimum;
    m_maximum = std::max(minimum, maximum);
    m_value = std::clamp(m_value, m_minimum, m_maximum);
}

void UpDown::setValue(int value) {
    m_value = std::clamp(value, m_minimum, m_maximum);
}

void UpDown::stepBy(int steps) {
    if (m_buddy) {
        bool ok = false;
        const double shown = m_buddy->text().trimmed().toDouble(&ok);
        if (ok)
            setValue(static_cast<int>(shown));
    }
    const int next = std::clamp(m_value + steps * m_step, m_minimum, m_maximum);
    if (next == m_value)
        return;
    m_value = next;
    if (m_buddy)
        m_buddy->setText(QString::number(m_value));
    emit Change();
}

void UpDown::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Up)
        stepUp();
    else if (event->key() == Qt::Key_Down)
        stepDown();
    else
        QWidget::keyPressEvent(event);
}

} // namespace zorvik
