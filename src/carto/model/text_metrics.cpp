#include "text_metrics.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QSizeF>
#include <QtMath>

namespace carto {
namespace {

// Metrics are taken at a fixed reference size and scaled: fonts hint small sizes.
constexpr double kReferencePixels = 100.0;

struct FontWidths {
    QFontMetricsF metrics;
    QHash<QString, double> widths; // width per unit of height
};

double widthOf(FontWidths& font, const QString& text) {
    auto width = font.widths.constFind(text);
    if (width == font.widths.constEnd()) {
        if (font.widths.size() > 20000)
            font.widths.clear();
        width =
            font.widths.insert(text, font.metrics.horizontalAdvance(text) / font.metrics.height());
    }
    return *width;
}

} // namespace

QSizeF textSize(const QString& text, const Style& style) {
    const double height = std::max(style.textSize, 0.0) / 100.0;
    if (text.isEmpty() || height <= 0)
        return {0, height};
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return {height * 0.6 * double(text.size()), height};
    // Building metrics costs far more than using them, and shaping a text costs more than
    // looking it up: a plan uses a handful of fonts and its numbers repeat.
    thread_local QHash<QString, FontWidths> memo;
    thread_local struct {
        QString font;
        bool bold = false, underline = false;
        FontWidths* widths = nullptr;
    } last;
    if (last.widths && last.font == style.textFont && last.bold == style.textBold &&
        last.underline == style.textUnderline)
        return {widthOf(*last.widths, text) * height, height};
    const QString key = style.textFont + QLatin1Char(style.textBold ? 'b' : '-') +
                        QLatin1Char(style.textUnderline ? 'u' : '-');
    auto it = memo.find(key);
    if (it == memo.end()) {
        QFont font(style.textFont);
        font.setPixelSize(int(kReferencePixels));
        font.setBold(style.textBold);
        font.setUnderline(style.textUnderline);
        it = memo.insert(key, FontWidths{QFontMetricsF(font), {}});
    }
    last = {style.textFont, style.textBold, style.textUnderline, &*it};
    return {widthOf(*it, text) * height, height};
}

Point textExtent(const QString& text, const Style& style) {
    const QSizeF size = textSize(text, style);
    const double hw = size.width() / 2, hh = size.height() / 2;
    const double a = qDegreesToRadians(style.textRotation);
    const double c = std::fabs(std::cos(a)), s = std::fabs(std::sin(a));
    return {hw * c + hh * s, hw * s + hh * c};
}

Rect textBounds(Point anchor, const QString& text, const Style& style) {
    const Point e = textExtent(text, style);
    return Rect{anchor.x - e.x, anchor.y - e.y, anchor.x + e.x, anchor.y + e.y};
}

} // namespace carto
