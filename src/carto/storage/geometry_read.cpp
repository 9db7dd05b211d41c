#include "geometry_read.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ogr_geometry.h>

namespace carto {

namespace {

void appendRing(const OGRSimpleCurve& curve, ShapeBuilder& parts) {
    for (int i = 0; i < curve.getNumPoints(); ++i)
        parts.addPoint(Point{curve.getX(i), curve.getY(i)});
    parts.endPart();
}

// Reads the common shapes of WKB in place, with no OGR geometry made: points, lines and
// polygons, single or in collections, 2D or with Z and M under their ISO codes or the old
// Z flag. Anything else, or anything it cannot read, it leaves to OGR.
class WkbCursor {
public:
    explicit WkbCursor(std::span<const std::byte> wkb) : wkb_(wkb) {}

    // False when these bytes are not of what is read here. `only` is the one type a
    // member may have (0 for any), as OGR insists.
    bool geometry(FeatureKind& kind, ShapeBuilder& parts, int depth, std::uint32_t only = 0) {
        std::uint8_t order = 0;
        std::uint32_t type = 0;
        if (depth > kMaxDepth || !byte(order) || order > 1)
            return false;
        swap_ = (order == 1) != (std::endian::native == std::endian::little);
        std::uint32_t base = 0;
        if (!u32(type) || !known(type, base) || (only != 0 && base != only))
            return false;
        switch (base) {
        case wkbPoint: {
            Point p;
            if (!point(p))
                return false;
            if (!(std::isnan(p.x) && std::isnan(p.y))) { // both NaN: an empty point
                parts.addPoint(p);
                parts.endPart();
            }
            kind = FeatureKind::Symbol;
            return true;
        }
        case wkbLineString:
            kind = FeatureKind::Line;
            return run(parts);
        case wkbPolygon: {
            std::uint32_t rings = 0;
            if (!count(rings, 4))
                return false;
            for (std::uint32_t r = 0; r < rings; ++r)
                if (!run(parts))
                    return false;
            kind = FeatureKind::Region;
            return true;
        }
        default: { // the four collections
            std::uint32_t members = 0;
            if (!count(members, 9))
                return false;
            const std::uint32_t member = base == wkbGeometryCollection ? 0 : base - 3;
            for (std::uint32_t m = 0; m < members; ++m)
                if (!geometry(kind, parts, depth + 1, member))
                    return false;
            return true;
        }
        }
    }

private:
    static constexpr int kMaxDepth = 16;

    // The type codes read here, and how many ordinates each of their points has.
    bool known(std::uint32_t type, std::uint32_t& base) {
        if ((type & 0x80000000U) != 0) { // the old Z flag
            base = type & 0x7FFFFFFFU;
            stride_ = 3;
            return base >= wkbPoint && base <= wkbGeometryCollection;
        }
        base = type % 1000;
        stride_ = std::array{2, 3, 3, 4}[std::min<std::uint32_t>(type / 1000, 3)];
        return type / 1000 <= 3 && base >= wkbPoint && base <= wkbGeometryCollection;
    }
    bool byte(std::uint8_t& v) {
        if (at_ >= wkb_.size())
            return false;
        v = std::uint8_t(wkb_[at_++]);
        return true;
    }
    bool u32(std::uint32_t& v) {
        if (wkb_.size() - at_ < 4)
            return false;
        std::memcpy(&v, wkb_.data() + at_, 4);
        if (swap_)
            v = __builtin_bswap32(v);
        at_ += 4;
        return true;
    }
    double f64(std::size_t offset) const {
        std::uint64_t bits = 0;
        std::memcpy(&bits, wkb_.data() + offset, 8);
        if (swap_)
            bits = __builtin_bswap64(bits);
        return std::bit_cast<double>(bits);
    }
    // A count, refused when even its smallest members would not fit in what is left.
    bool count(std::uint32_t& n, std::size_t smallest) {
        return u32(n) && n <= (wkb_.size() - at_) / smallest;
    }
    bool point(Point& p) {
        const std::size_t bytes = std::size_t(stride_) * 8;
        if (wkb_.size() - at_ < bytes)
            return false;
        p = Point{f64(at_), f64(at_ + 8)};
        at_ += bytes;
        return true;
    }
    bool run(ShapeBuilder& parts) {
        std::uint32_t n = 0;
        if (!count(n, std::size_t(stride_) * 8))
            return false;
        for (std::uint32_t i = 0; i < n; ++i) {
            Point p;
            point(p);
            parts.addPoint(p);
        }
        parts.endPart();
        return true;
    }

    std::span<const std::byte> wkb_;
    std::size_t at_ = 0;
    bool swap_ = false;
    int stride_ = 2;
};

} // namespace

void readGeometry(const OGRGeometry& g, FeatureKind& kind, ShapeBuilder& parts) {
    switch (wkbFlatten(g.getGeometryType())) {
    case wkbPoint: {
        const auto& p = static_cast<const OGRPoint&>(g);
        if (!p.IsEmpty()) {
            parts.addPoint(Point{p.getX(), p.getY()});
            parts.endPart();
        }
        kind = FeatureKind::Symbol;
        break;
    }
    case wkbLineString:
        appendRing(static_cast<const OGRLineString&>(g), parts);
        kind = FeatureKind::Line;
        break;
    case wkbPolygon: {
        const auto& poly = static_cast<const OGRPolygon&>(g);
        for (const OGRLinearRing* ring : poly)
            appendRing(*ring, parts);
        kind = FeatureKind::Region;
        break;
    }
    case wkbMultiPoint:
    case wkbMultiLineString:
    case wkbMultiPolygon:
    case wkbGeometryCollection: {
        const auto& coll = static_cast<const OGRGeometryCollection&>(g);
        for (const OGRGeometry* member : coll)
            readGeometry(*member, kind, parts);
        break;
    }
    default: {
        const std::unique_ptr<OGRGeometry> linear(g.getLinearGeometry());
        if (linear && wkbFlatten(linear->getGeometryType()) != wkbFlatten(g.getGeometryType()))
            readGeometry(*linear, kind, parts);
        break;
    }
    }
}

bool readWkb(std::span<const std::byte> wkb, FeatureKind& kind, ShapeBuilder& parts) {
    const FeatureKind given = kind;
    if (WkbCursor(wkb).geometry(kind, parts, 0))
        return true;
    // Not read in place: what OGR makes of it, if anything.
    parts.clear();
    kind = given;
    OGRGeometry* made = nullptr;
    if (OGRGeometryFactory::createFromWkb(wkb.data(), nullptr, &made, wkb.size(), wkbVariantIso) !=
        OGRERR_NONE)
        return false;
    const std::unique_ptr<OGRGeometry> g(made);
    readGeometry(*g, kind, parts);
    return true;
}

} // namespace carto
