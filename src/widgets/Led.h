// A round panel lamp (LED) that is lit in a chosen colour or dark.
#pragma once

#include <QColor>
#include <QWidget>

namespace zorvik {

/// A round lamp beside a panel button. Lit it glows in its on-colour; out it shows dark glass.
/// The lamp takes keyboard focus so that a screen reader can tell whether it is lit, and in
/// which colour (POWER's lamp is yellow while the probe is searched for, green once it runs).
class Led : public QWidget {
    Q_OBJECT

public:
    explicit Led(QWidget* parent = nullptr);

    void setOnColor(const QColor& color);
    QColor onColor() const { return m_onColor; }

    bool value() const { return m_value; }
    /// Lights (true) or puts out (false) the lamp; emits valueChanged when that changes.
    void setValue(bool lit);

    /// "lit yellow", "lit green", ... or "out" (for screen readers).
    QString stateText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void valueChanged(bool lit);

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void notifyAccessibility();

    QColor m_onColor{0, 255, 0};
    bool m_value = false;
};

} // namespace zorvik
