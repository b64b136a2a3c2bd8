// The hidden picture holder of the main window: the picture the print control prints.
#pragma once

#include <QImage>

namespace zorvik {

class PictureHolder {
public:
    const QImage& Picture() const { return m_picture; }
    void setPicture(const QImage& picture) { m_picture = picture; }
    bool isEmpty() const { return m_picture.isNull(); }

private:
    QImage m_picture;
};

} // namespace zorvik
