// Page composition shared by printing and the preview.
#include "printing/PageComposer.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPaintDevice>
#include <QPainter>
#include <algorithm>

namespace zorvik {

namespace {
QRectF scaled(const QRectF& inches, double dpiX, double dpiY) {
    return QRectF(inches.x() * dpiX, inches.y() * dpiY, inches.width() * dpiX,
                  inches.height() * dpiY);
}
} // namespace

PageGeometry PageComposer::layout(const PageContent& content, double lineHeight) {
    PageGeometry geometry;
    const double paperW = content.paper.width();
    const double paperH = content.paper.height();
    // Negative margins are read as none.
    const double left = std::max(0.0, content.left);
    const double right = std::max(0.0, content.right);
    double areaTop = std::max(0.0, content.top);
    double areaBottom = paperH - std::max(0.0, content.bottom);
    const double areaLeft = left;
    const double areaRight = paperW - right;
    const double textLeft = areaRight > areaLeft ? areaLeft : 0.0;
    const double textWidth = areaRight > areaLeft ? areaRight - areaLeft : paperW;

    if (!content.header.isEmpty()) {
        double textTop = std::max(0.0, areaTop - kTextGapInches - lineHeight);
        geometry.header = QRectF(textLeft, textTop, textWidth, lineHeight);
        areaTop = std::max(areaTop, geometry.header.bottom() + kTextGapInches);
    }
    if (!content.footer.isEmpty()) {
        double textTop = areaBottom + kTextGapInches;
        textTop = std::min(textTop, paperH - lineHeight);
        geometry.footer = QRectF(textLeft, textTop, textWidth, lineHeight);
        areaBottom = std::min(areaBottom, geometry.footer.top() - kTextGapInches);
    }

    const double areaW = areaRight - areaLeft;
    const double areaH = areaBottom - areaTop;
    if (content.picture.isNull() || areaW <= 0 || areaH <= 0)
        return geometry;

    const double ratio = content.picture.devicePixelRatio();
    double w = content.picture.width() / ratio / content.pictureDpiX;
    double h = content.picture.height() / ratio / content.pictureDpiY;
    if (content.fitToPage) {
        const double fit = std::min(areaW / w, areaH / h);
        w *= fit;
        h *= fit;
    } else {
        const double scale = (content.scalePercent > 0 ? content.scalePercent : 100.0) / 100.0;
        w *= scale;
        h *= scale;
        if (w > areaW || h > areaH) {
            const double fit = std::min(areaW / w, areaH / h);
            w *= fit;
            h *= fit;
        }
    }
    geometry.picture = QRectF(areaLeft + (areaW - w) / 2.0, areaTop, w, h);
    return geometry;
}

PageGeometry PageComposer::paint(QPainter& painter, const PageContent& content, double dpiX,
                                 double dpiY) {
    QFont font = QGuiApplication::font();
    font.setPointSizeF(kTextPointSize);
    painter.setFont(font);
    const QFontMetricsF metrics(font, painter.device());
    const double lineHeight = metrics.height() / dpiY;
    const PageGeometry geometry = layout(content, lineHeight);

    painter.setPen(Qt::black);
    if (!geometry.header.isEmpty())
        painter.drawText(scaled(geometry.header, dpiX, dpiY), Qt::AlignCenter, content.header);
    if (!geometry.footer.isEmpty())
        painter.drawText(scaled(geometry.footer, dpiX, dpiY), Qt::AlignCenter, content.footer);
    if (!geometry.picture.isEmpty()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(scaled(geometry.picture, dpiX, dpiY), content.picture);
    }
    return geometry;
}

} // namespace zorvik
