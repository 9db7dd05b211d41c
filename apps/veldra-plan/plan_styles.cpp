#include "veldra-plan/plan_styles.h"

#include "carto/storage/style_string.h"

namespace veldra::plantool {

namespace {

// Metres to the engine's points.
double points(double metres) {
    return metres * 100;
}

QString written(carto::FeatureKind kind, const carto::Style& s, const QString& textField = {}) {
    return QString::fromUtf8(carto::styleString(kind, s, {}, textField));
}

} // namespace

QString regionStyle(const RegionStyle& r) {
    carto::Style s;
    s.regionBorderColor = r.border;
    s.regionColor = r.fill;
    s.regionPattern = r.pattern;
    s.regionTransparent = !r.hatchBackground.has_value();
    s.regionBackColor = r.hatchBackground.value_or(0xFFFFFF);
    return written(carto::FeatureKind::Region, s);
}

QString lineStyle(Colour c) {
    carto::Style s;
    s.lineColor = c;
    s.lineWidth = 2;
    return written(carto::FeatureKind::Line, s);
}

QString symbolStyle(char32_t character, Colour c, double size) {
    carto::Style s;
    s.symbolCharacter = int(character);
    s.symbolColor = c;
    s.symbolSize = points(size);
    return written(carto::FeatureKind::Symbol, s);
}

QString textStyle(const TextStyle& t) {
    carto::Style s;
    s.textSize = points(t.size);
    s.textRotation = t.angle;
    s.textColor = t.colour;
    s.textBold = t.bold;
    s.textHalo = t.halo;
    s.textBackColor = t.back;
    return written(carto::FeatureKind::Text, s, QString::fromLatin1(TextColumn));
}

} // namespace veldra::plantool
