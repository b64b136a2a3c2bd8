// The preview's picture box.
#include "printing/PreviewPictureBox.h"

#include <QPainter>

namespace zorvik {

PreviewPictureBox::PreviewPictureBox(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PreviewPictureBox::setImage(const QImage& image) {
    m_image = image;
    update();
}

void PreviewPictureBox::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    if (!m_image.isNull())
        painter.drawImage(QPoint(0, 0), m_image);
    (void)event;
}

} // namespace zorvik
