// The program's own holder for a captured picture, read and emptied by whoever asked for it.
#pragma once

#include <QImage>

namespace zorvik {

/// Where a Print Screen lands. The picture is kept inside the program instead of on the system
/// clipboard: putting it there would throw away whatever the user had copied in other programs,
/// and the printing chain only needs the picture itself, right after taking it.
class CaptureHolder {
public:
    bool hasPicture() const { return !m_picture.isNull(); }
    const QImage& picture() const { return m_picture; }
    void setPicture(const QImage& picture) { m_picture = picture; }
    /// Hands the picture over and leaves the holder empty.
    QImage takePicture();
    void clear() { m_picture = QImage(); }

private:
    QImage m_picture;
};

} // namespace zorvik
