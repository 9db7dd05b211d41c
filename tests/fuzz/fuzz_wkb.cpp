// Any bytes read as WKB read as OGR reads them: refused alike, or the same kind and parts.
#include "carto/storage/geometry_read.h"

#include <cpl_error.h>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ogr_geometry.h>

namespace {

// Equal to the bit: a NaN read is the same NaN.
bool sameBits(const carto::Shape& a, const carto::Shape& b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i].size() != b[i].size() ||
            (a[i].size() &&
             std::memcmp(a[i].data(), b[i].data(), a[i].size() * sizeof(carto::Point)) != 0))
            return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool quiet = [] {
        CPLSetErrorHandler(CPLQuietErrorHandler);
        return true;
    }();
    (void)quiet;
    carto::FeatureKind kind = carto::FeatureKind::Region;
    carto::ShapeBuilder parts;
    const bool ours = carto::readWkb(std::as_bytes(std::span(data, size)), kind, parts);

    OGRGeometry* made = nullptr;
    const bool theirs =
        OGRGeometryFactory::createFromWkb(data, nullptr, &made, size, wkbVariantIso) == OGRERR_NONE;
    const std::unique_ptr<OGRGeometry> g(made);
    if (ours != theirs)
        __builtin_trap();
    if (g) {
        carto::FeatureKind ogrKind = carto::FeatureKind::Region;
        carto::ShapeBuilder ogrParts;
        carto::readGeometry(*g, ogrKind, ogrParts);
        if (ogrKind != kind || !sameBits(ogrParts.build(), parts.build()))
            __builtin_trap();
    }
    return 0;
}
