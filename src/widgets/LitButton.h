// A front-panel push button with a caption and a built-in lamp that is lit while its value is on.
#pragma once

#include "support/TextFit.h"

#include <QAbstractButton>
#include <QColor>

namespace zorvik {

/// A panel push button. Its value is shown by a lamp on the key.
/// - Toggle (latching): each click flips the value.
/// - Momentary: the value is on while the button is held down and off when it is let go
///   (also when the pointer slides off the key or the window loses focus while it is held).
/// Space, Enter and Return work the button from the keyboard: for a momentary button the key
/// going down switches the value on and the key coming up switches it off.
class LitButton : public QAbstractButton, public FitsText {
    Q_OBJECT

public:
    enum class Mode { Toggle, Momentary };

    explicit LitButton(const QString& caption = QString(), Mode mode = Mode::Toggle,
                       QWidget* parent = nullptr);

    void setMode(Mode mode);
    Mode mode() const { return m_mode; }

    bool value() const;
    /// Sets the value; emits valueChanged when it changes.
    void setValue(bool value);
    /// Sets the value without emitting valueChanged.
    void setValueSilently(bool value);

    /// The colour of the lit lamp (default a bright green).
    void setLampColor(const QColor& color);
    /// Shows or hides the built-in lamp (a button with a separate Led may do without).
    void setLampVisible(bool visible);

    /// Where the caption is drawn: the key below its lamp.
    QRectF captionRect() const;
    /// The caption fits on one line below the lamp.
    bool textFits() const override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void valueChanged(bool value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    QRectF keyRect() const;
    QRectF lampRect() const;
    void onPressed();
    void onReleased();
    void onToggled(bool checked);
    void store(bool value, bool notify);

    Mode m_mode;
    bool m_momentaryValue = false;
    bool m_silent = false;
    QColor m_lampColor{80, 255, 80};
    bool m_lampVisible = true;
};

} // namespace zorvik
