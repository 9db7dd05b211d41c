#include "themes/vue_image.h"

#include <QPaintEvent>
#include <QPainter>

namespace veldra {

namespace {

// A smoothed copy is made up to this many pixels; beyond, the visible part is drawn.
constexpr qint64 kPixelsCopieMax = 16LL * 1024 * 1024;

} // namespace

VueImage::VueImage(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void VueImage::setImage(const QImage& image) {
    if (image.cacheKey() == image_.cacheKey())
        return;
    image_ = image;
    reduite_ = QImage();
    update();
}

void VueImage::vide() {
    image_ = QImage();
    reduite_ = QImage();
    update();
}

void VueImage::paintEvent(QPaintEvent* event) {
    QPainter p(this);
    const QRect zone = event->rect();
    if (image_.isNull() || width() <= 0 || height() <= 0) {
        p.fillRect(zone, palette().color(QPalette::Window));
        return;
    }
    const bool plusPetite = width() <= image_.width() && height() <= image_.height();
    if (plusPetite && qint64(width()) * height() <= kPixelsCopieMax) {
        if (reduite_.size() != size())
            reduite_ = image_.scaled(size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        p.drawImage(zone.topLeft(), reduite_, zone);
        return;
    }
    reduite_ = QImage();
    const double kx = double(image_.width()) / width(), ky = double(image_.height()) / height();
    const QRectF source(zone.x() * kx, zone.y() * ky, zone.width() * kx, zone.height() * ky);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.drawImage(QRectF(zone), image_, source);
}

} // namespace veldra
