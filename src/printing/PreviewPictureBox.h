// The preview's picture box: shows its persistent image, the drawn page.
#pragma once

#include <QImage>
#include <QWidget>

namespace zorvik {

class PreviewPictureBox : public QWidget {
public:
    explicit PreviewPictureBox(QWidget* parent = nullptr);

    /// The persistent image painted whenever the box is exposed.
    const QImage& image() const { return m_image; }
    void setImage(const QImage& image);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_image;
};

} // namespace zorvik
