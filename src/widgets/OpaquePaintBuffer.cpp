// The graph's bottom paint buffer: an opaque picture that every replot paints over completely.
#include "widgets/OpaquePaintBuffer.h"

namespace zorvik {

OpaquePaintBuffer::OpaquePaintBuffer(const QSize& size, double devicePixelRatio)
    : QCPPaintBufferPixmap(size, devicePixelRatio) {}

void OpaquePaintBuffer::clear(const QColor&) {}

} // namespace zorvik
