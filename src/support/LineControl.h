// A line drawn between two end points given in its parent's twips; the widget's own geometry
// follows the end points. Used wherever a form shows a plain separator or rule.
#pragma once

#include <QColor>
#include <QWidget>

namespace zorvik {

class LineControl : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double X1 READ X1 WRITE setX1)
    Q_PROPERTY(double Y1 READ Y1 WRITE setY1)
    Q_PROPERTY(double X2 READ X2 WRITE setX2)
    Q_PROPERTY(double Y2 READ Y2 WRITE setY2)
    Q_PROPERTY(QColor BorderColor READ BorderColor WRITE setBorderColor)
    Q_PROPERTY(int BorderWidth READ BorderWidth WRITE setBorderWidth)

public:
    explicit LineControl(QWidget* parent = nullptr);

    /// End points in the parent's twips.
    double X1() const { return m_x1; }
    double Y1() const { return m_y1; }
    double X2() const { return m_x2; }
    double Y2() const { return m_y2; }
    void setX1(double twips);
    void setY1(double twips);
    void setX2(double twips);
    void setY2(double twips);
    void setEndPoints(double x1, double y1, double x2, double y2);

    /// Colour of the line and its width in pixels (at least 1).
    QColor BorderColor() const { return m_color; }
    void setBorderColor(const QColor& color);
    int BorderWidth() const { return m_penWidth; }
    void setBorderWidth(int pixels);

    /// The end points in the parent's pixels.
    QPoint startPixel() const;
    QPoint endPixel() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void followEndPoints();

    double m_x1 = 0;
    double m_y1 = 0;
    double m_x2 = 0;
    double m_y2 = 0;
    QColor m_color{Qt::black};
    int m_penWidth = 1;
};

} // namespace zorvik
