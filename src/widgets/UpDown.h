// A small up-down spinner that writes its value into a buddy label.
#pragma once

#include <QLabel>
#include <QPointer>
#include <QWidget>

class QToolButton;

namespace zorvik {

/// Two arrow buttons stepping a whole number between a minimum and a maximum. Like a native
/// up-down control with a buddy, each step starts from the number the buddy label shows (so the
/// spinner carries on from a value the program wrote there) and writes the new number back into
/// the label before `Change` is emitted.
class UpDown : public QWidget {
    Q_OBJECT
public:
    explicit UpDown(QWidget* parent = nullptr);

    void setRange(int minimum, int maximum);
    void setSingleStep(int step) { m_step = step; }
    void setBuddy(QLabel* buddy) { m_buddy = buddy; }
    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    int singleStep() const { return m_step; }
    int value() const { return m_value; }
    /// Sets the value (clamped) without writing the buddy or emitting `Change`.
    void setValue(int value);

    /// One step up or down, as a click on an arrow does.
    void stepUp() { stepBy(1); }
    void stepDown() { stepBy(-1); }

signals:
    void Change();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void stepBy(int steps);

    QPointer<QLabel> m_buddy;
    QToolButton* m_up = nullptr;
    QToolButton* m_down = nullptr;
    int m_minimum = 0;
    int m_maximum = 100;
    int m_step = 1;
    int m_value = 0;
};

} // namespace zorvik
