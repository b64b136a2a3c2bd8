// The graph's bottom paint buffer: an opaque picture that every replot paints over completely.
#pragma once

#include <qcustomplot.h>

namespace zorvik {

/// A paint buffer without transparency for a plot whose bottom layer paints every pixel (the
/// scope graph's GraphBackdrop). It is not cleared before a replot, as everything in it is
/// painted over anyway, and being opaque it is copied onto the screen rather than blended.
/// At 1600 x 1200 pixels this saves two full passes over the picture and turns a third into a
/// plain copy.
class OpaquePaintBuffer : public QCPPaintBufferPixmap {
public:
    OpaquePaintBuffer(const QSize& size, double devicePixelRatio);

    /// Does nothing: the backdrop paints every pixel, and a transparent fill would give the
    /// picture an alpha channel that then has to be blended.
    void clear(const QColor& color) override;
};

} // namespace zorvik
