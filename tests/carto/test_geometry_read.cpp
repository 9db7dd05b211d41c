// A geometry read from its WKB reads exactly as the OGR geometry made of the same bytes,
// whatever the type, dimensions and byte order; bytes that are not WKB are refused
// without reading past their end.
#include "carto/storage/gdal_handles.h"
#include "carto/storage/geometry_read.h"

#include <gtest/gtest.h>
#include <memory>
#include <ogr_geometry.h>
#include <vector>

using namespace carto;

namespace {

struct Read {
    bool ok = false;
    FeatureKind kind = FeatureKind::Region;
    Shape parts;
};

Read fromWkb(const std::vector<unsigned char>& wkb) {
    Read r;
    ShapeBuilder b;
    r.ok = readWkb(std::as_bytes(std::span(wkb)), r.kind, b);
    r.parts = b.build();
    return r;
}

std::unique_ptr<OGRGeometry> fromWkt(const char* wkt) {
    OGRGeometry* g = nullptr;
    EXPECT_EQ(OGRGeometryFactory::createFromWkt(wkt, nullptr, &g), OGRERR_NONE) << wkt;
    return std::unique_ptr<OGRGeometry>(g);
}

std::vector<unsigned char> wkbOf(const OGRGeometry& g, OGRwkbByteOrder order,
                                 OGRwkbVariant variant) {
    std::vector<unsigned char> out(g.WkbSize());
    EXPECT_EQ(g.exportToWkb(order, out.data(), variant), OGRERR_NONE);
    return out;
}

const char* const kGeometries[] = {
    "POINT (1 2)",
    "POINT EMPTY",
    "POINT Z (1 2 3)",
    "POINT M (1 2 4)",
    "POINT ZM (1 2 3 4)",
    "LINESTRING (0 0,1 1,2 0)",
    "LINESTRING Z (0 0 1,1 1 2)",
    "LINESTRING EMPTY",
    "POLYGON ((0 0,4 0,4 4,0 4,0 0),(1 1,2 1,2 2,1 1))",
    "POLYGON ZM ((0 0 1 2,4 0 1 2,4 4 1 2,0 0 1 2))",
    "POLYGON EMPTY",
    "MULTIPOINT ((1 1),(2 2))",
    "MULTILINESTRING ((0 0,1 1),(2 2,3 3,4 4))",
    "MULTIPOLYGON (((0 0,1 0,1 1,0 0)),((5 5,6 5,6 6,5 5),(5.2 5.1,5.5 5.1,5.5 5.4,5.2 5.1)))",
    "MULTIPOLYGON EMPTY",
    "GEOMETRYCOLLECTION (POINT (1 1),LINESTRING (0 0,2 2),POLYGON ((0 0,1 0,1 1,0 0)))",
    "GEOMETRYCOLLECTION (MULTIPOINT ((1 1)),GEOMETRYCOLLECTION (POINT (3 3)))",
    "CIRCULARSTRING (0 0,1 1,2 0)",
    "COMPOUNDCURVE ((0 0,1 0),CIRCULARSTRING (1 0,2 1,3 0))",
    "CURVEPOLYGON (CIRCULARSTRING (0 0,2 0,2 2,0 2,0 0))",
    "MULTISURFACE (CURVEPOLYGON (CIRCULARSTRING (0 0,2 0,2 2,0 2,0 0)))",
    "GEOMETRYCOLLECTION (CIRCULARSTRING Z (0 0 1,1 1 1,2 0 1),POINT (9 9))",
    "TIN (((0 0 0,0 0 1,0 1 0,0 0 0)))",
};

} // namespace

TEST(WkbRead, ReadsAsTheOgrGeometryOfTheSameBytes) {
    for (const char* wkt : kGeometries) {
        const auto g = fromWkt(wkt);
        ASSERT_TRUE(g);
        for (const OGRwkbByteOrder order : {wkbNDR, wkbXDR})
            for (const OGRwkbVariant variant : {wkbVariantIso, wkbVariantOldOgc}) {
                if (variant == wkbVariantOldOgc && g->IsMeasured())
                    continue; // the old flags have no M
                const std::vector<unsigned char> wkb = wkbOf(*g, order, variant);
                OGRGeometry* made = nullptr;
                ASSERT_EQ(OGRGeometryFactory::createFromWkb(wkb.data(), nullptr, &made, wkb.size(),
                                                            variant),
                          OGRERR_NONE);
                const std::unique_ptr<OGRGeometry> ogr(made);
                FeatureKind kind = FeatureKind::Region;
                ShapeBuilder b;
                readGeometry(*ogr, kind, b);
                const Read r = fromWkb(wkb);
                SCOPED_TRACE(testing::Message()
                             << wkt << " order " << order << " variant " << variant);
                ASSERT_TRUE(r.ok);
                EXPECT_EQ(r.kind, kind);
                EXPECT_EQ(r.parts, b.build());
            }
    }
    // The hole of the polygon is its second part, the empty point no part at all.
    EXPECT_EQ(fromWkb(wkbOf(*fromWkt(kGeometries[8]), wkbNDR, wkbVariantIso)).parts.size(), 2u);
    EXPECT_TRUE(fromWkb(wkbOf(*fromWkt("POINT EMPTY"), wkbNDR, wkbVariantIso)).parts.empty());
    EXPECT_EQ(fromWkb(wkbOf(*fromWkt("CIRCULARSTRING (0 0,1 1,2 0)"), wkbNDR, wkbVariantIso)).kind,
              FeatureKind::Line);
}

TEST(WkbRead, RefusesWhatIsNotWkbWithoutReadingPastItsEnd) {
    const gdal::QuietErrors quiet;
    // Every cut short of the whole: a copy of exactly that length, so that a read past it
    // shows under the address sanitizer.
    for (const char* wkt : kGeometries) {
        const std::vector<unsigned char> whole = wkbOf(*fromWkt(wkt), wkbNDR, wkbVariantIso);
        for (size_t n = 0; n < whole.size(); ++n) {
            const std::vector<unsigned char> cut(whole.begin(), whole.begin() + long(n));
            EXPECT_FALSE(fromWkb(cut).ok) << wkt << " cut to " << n;
        }
    }
    const auto refused = [](std::vector<unsigned char> wkb) { return !fromWkb(wkb).ok; };
    // A byte order that is neither, an unknown type.
    EXPECT_TRUE(refused({2, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(refused({1, 99, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(refused({1, 0xA9, 0x1B, 0, 0})); // 7081: no such dimension
    // Four billion points announced in a few bytes.
    EXPECT_TRUE(refused({1, 2, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}));
    // A multipolygon holding a line, as OGR refuses it.
    std::vector<unsigned char> mixed{1, 6, 0, 0, 0, 1, 0, 0, 0};
    const auto line = wkbOf(*fromWkt("LINESTRING (0 0,1 1)"), wkbNDR, wkbVariantIso);
    mixed.insert(mixed.end(), line.begin(), line.end());
    EXPECT_TRUE(refused(mixed));
    // Collections nested beyond reason.
    std::vector<unsigned char> deep;
    for (int i = 0; i < 100; ++i)
        deep.insert(deep.end(), {1, 7, 0, 0, 0, 1, 0, 0, 0});
    const auto point = wkbOf(*fromWkt("POINT (1 1)"), wkbNDR, wkbVariantIso);
    deep.insert(deep.end(), point.begin(), point.end());
    EXPECT_TRUE(refused(deep));
}
