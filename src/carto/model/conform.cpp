#include "carto/model/conform.h"

#include "base/erreur.h"
#include "carto/geometry/geometry.h"
#include "carto/geometry/rings.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace carto {

using veldra::Erreur;
namespace err = veldra::err;

namespace {

QString shown(const QVariant& v) {
    if (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float)
        return QString::number(v.toDouble(), 'g', 17);
    const QString text = v.toString();
    return text.size() > 40 ? text.left(40) + QStringLiteral("…") : text;
}

[[noreturn]] void cannotHold(const FieldDef& field, const QVariant& v, const QString& why) {
    throw Erreur(err::TypeIncompatible,
                 QStringLiteral("la colonne « %1 » ne peut pas contenir « %2 » (%3)")
                     .arg(field.name, shown(v), why));
}

bool isTextual(const QVariant& v) {
    return v.typeId() == QMetaType::QString || v.typeId() == QMetaType::QByteArray ||
           v.typeId() == QMetaType::QChar;
}

bool isIntegral(const QVariant& v) {
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

bool isFloating(const QVariant& v) {
    return v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float;
}

// A number written as text, as a host or a user types it: blanks around, a point or a
// comma before the decimals.
std::optional<double> numberIn(const QString& text) {
    bool ok = false;
    const double d = QLocale::c().toDouble(text, &ok);
    if (ok)
        return d;
    const double comma = QLocale::c().toDouble(QString(text).replace(u',', u'.'), &ok);
    return ok ? std::optional<double>(comma) : std::nullopt;
}

qint64 integerValue(const FieldDef& field, const QVariant& v, qint64 low, qint64 high) {
    const QString range = QStringLiteral("un entier de %1 à %2").arg(low).arg(high);
    if (v.typeId() == QMetaType::Bool)
        cannotHold(field, v, range);
    if (isIntegral(v)) {
        if (v.typeId() == QMetaType::ULongLong || v.typeId() == QMetaType::ULong) {
            const quint64 u = v.toULongLong();
            if (u > quint64(high))
                cannotHold(field, v, range);
            return qint64(u);
        }
        const qint64 n = v.toLongLong();
        if (n < low || n > high)
            cannotHold(field, v, range);
        return n;
    }
    std::optional<double> d;
    if (isFloating(v)) {
        d = v.toDouble();
    } else if (isTextual(v)) {
        const QString text = v.toString().trimmed();
        bool ok = false;
        const qint64 n = QLocale::c().toLongLong(text, &ok);
        if (ok) {
            if (n < low || n > high)
                cannotHold(field, v, range);
            return n;
        }
        d = numberIn(text);
    }
    // A double holds an integer exactly or not at all; 2^63 is the first one out of range.
    if (!d || !std::isfinite(*d) || std::trunc(*d) != *d || *d < double(low) ||
        *d >= -double(std::numeric_limits<qint64>::min()) || *d > double(high))
        cannotHold(field, v, range);
    return qint64(*d);
}

double realValue(const FieldDef& field, const QVariant& v) {
    const QString what = QStringLiteral("un nombre");
    std::optional<double> d;
    if (isIntegral(v) || isFloating(v))
        d = v.toDouble();
    else if (isTextual(v))
        d = numberIn(v.toString().trimmed());
    if (!d || !std::isfinite(*d))
        cannotHold(field, v, what);
    return *d;
}

QDateTime dateValue(const FieldDef& field, const QVariant& v) {
    QDateTime d;
    if (v.typeId() == QMetaType::QDateTime)
        d = v.toDateTime();
    else if (v.typeId() == QMetaType::QDate)
        d = QDateTime(v.toDate(), QTime(0, 0));
    else if (isTextual(v)) {
        const QString text = v.toString().trimmed();
        d = QDateTime::fromString(text, Qt::ISODate);
        if (!d.isValid())
            d = QDateTime(QDate::fromString(text, Qt::ISODate), QTime(0, 0));
    }
    if (!d.isValid())
        cannotHold(field, v, QStringLiteral("une date"));
    // Storage keeps whole seconds and no time zone.
    const QTime t = d.time();
    return QDateTime(d.date(), QTime(t.hour(), t.minute(), t.second()));
}

bool blank(const QVariant& v) {
    return isTextual(v) && v.toString().trimmed().isEmpty();
}

[[noreturn]] void badShape(const QString& why) {
    throw Erreur(err::GeometrieInvalide, why);
}

// As the style reader rounds what it parses: to a whole number of 1 / perUnit.
double rounded(double value, double perUnit) {
    return std::round(value * perUnit) / perUnit;
}

} // namespace

bool readableParts(const Shape& parts) {
    for (const Point& p : parts.points())
        if (!(std::fabs(p.x) <= kCoordinateLimit) || !(std::fabs(p.y) <= kCoordinateLimit))
            return false; // NaN fails every comparison
    return true;
}

QVariant columnValue(const FieldDef& field, const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return {};
    switch (field.type) {
    case FieldType::Text:
        return cutToWidth(value.toString(), field.width);
    case FieldType::Integer:
        if (blank(value))
            return {};
        return QVariant(int(integerValue(field, value, std::numeric_limits<qint32>::min(),
                                         std::numeric_limits<qint32>::max())));
    case FieldType::Integer64:
        if (blank(value))
            return {};
        return QVariant(qlonglong(integerValue(field, value, std::numeric_limits<qint64>::min(),
                                               std::numeric_limits<qint64>::max())));
    case FieldType::Real:
        if (blank(value))
            return {};
        return QVariant(realValue(field, value));
    case FieldType::Date:
        if (blank(value))
            return {};
        return QVariant(dateValue(field, value));
    }
    return value;
}

QString cutToWidth(const QString& text, int width) {
    if (width <= 0 || text.size() <= width)
        return text;
    qsizetype units = 0;
    for (int characters = 0; units < text.size() && characters < width; ++characters)
        units += text[units].isHighSurrogate() && units + 1 < text.size() &&
                         text[units + 1].isLowSurrogate()
                     ? 2
                     : 1;
    return text.left(units);
}

void settleShape(FeatureData& data, bool checkValidity) {
    if (!readableParts(data.parts))
        badShape(QStringLiteral("coordonnées non finies ou hors du plan (au-delà de %1 m)")
                     .arg(kCoordinateLimit, 0, 'g', 3));
    switch (data.kind) {
    case FeatureKind::Region: {
        if (data.parts.empty())
            badShape(QStringLiteral("une surface sans contour ne peut pas être enregistrée"));
        const auto open = [](PartView ring) {
            return !ring.empty() && !(ring.front() == ring.back());
        };
        // A plot is one closed ring: unless it is checked, it is taken as it is, uncopied.
        const bool reshape =
            data.parts.size() > 1 || std::any_of(data.parts.begin(), data.parts.end(), open);
        if (!reshape && !checkValidity)
            break;
        Parts rings = data.parts.toParts();
        if (reshape) {
            for (Part& ring : rings)
                if (open(ring))
                    ring.push_back(ring.front()); // stored closed, as storage closes it
            if (rings.size() > 1) {
                Parts ordered;
                ordered.reserve(rings.size());
                for (const auto& group : polygonsOf(rings))
                    for (const std::size_t i : group)
                        ordered.push_back(std::move(rings[i]));
                rings = std::move(ordered);
            }
            data.parts = rings;
        }
        if (checkValidity) {
            std::vector<std::vector<std::vector<Point>>> polygons;
            for (const auto& group : polygonsOf(rings)) {
                auto& polygon = polygons.emplace_back();
                for (const std::size_t i : group)
                    polygon.push_back(rings[i]);
            }
            const Geometry g = polygons.size() == 1 ? Geometry::polygon(polygons.front())
                                                    : Geometry::multiPolygon(polygons);
            if (!g.isValid())
                badShape(QStringLiteral("le contour n'est pas valide (%1)")
                             .arg(geosContext().lastNotice()));
            if (!(g.area() > 0))
                badShape(QStringLiteral("la surface est nulle"));
        }
        break;
    }
    case FeatureKind::Line:
        if (data.parts.empty())
            badShape(QStringLiteral("une ligne sans points ne peut pas être enregistrée"));
        if (checkValidity)
            for (const PartView line : data.parts)
                if (const Geometry g = Geometry::lineString(line);
                    !g.isValid() || !(g.length() > 0))
                    badShape(QStringLiteral("la ligne n'a pas de longueur"));
        break;
    case FeatureKind::Symbol:
    case FeatureKind::Text:
        if (data.parts.empty() || data.parts[0].empty())
            badShape(QStringLiteral("un objet sans position ne peut pas être enregistré"));
        break;
    }
}

Style storedStyle(const Style& style) {
    Style s = style;
    for (Colour* c : {&s.regionColor, &s.regionBackColor, &s.regionBorderColor, &s.lineColor,
                      &s.symbolColor, &s.textColor, &s.textBackColor})
        *c &= 0xFFFFFF;
    s.regionBorderWidth = std::max(0, s.regionBorderWidth);
    s.lineWidth = std::max(0, s.lineWidth);
    s.symbolSize = rounded(s.symbolSize, 1e3);
    s.textSize = rounded(s.textSize, 1e3);
    s.textRotation = rounded(s.textRotation, 1e6);
    return s;
}

} // namespace carto
