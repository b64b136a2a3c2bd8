// The capture holder: hands its picture over once.
#include "printing/CaptureHolder.h"

#include <utility>

namespace zorvik {

QImage CaptureHolder::takePicture() {
    return std::exchange(m_picture, QImage());
}

} // namespace zorvik
