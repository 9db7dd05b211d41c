#pragma once
// A GeoPackage layer's rows read a batch at a time through GDAL's columnar stream, with no
// OGRFeature made per row: the FID, the fields asked for, the style column and the
// geometry as WKB. It reads the common column kinds only; for any other the layer is read
// feature by feature instead. A stream seen going wrong fails; the caller then reads
// feature by feature too.

#include "carto/model/attribute_values.h"

#include <QByteArrayView>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <vector>

class OGRLayer;

namespace carto {

class ArrowRows {
public:
    // `fields` are OGR field indexes, -1 for a field the layer lacks; `style` is the style
    // column's index or -1. Null when the layer has a column asked for of another kind
    // than integer, 64-bit integer, real or text, or no stream can be had.
    static std::unique_ptr<ArrowRows> open(OGRLayer& layer, std::span<const int> fields, int style);
    ~ArrowRows();
    ArrowRows(const ArrowRows&) = delete;
    ArrowRows& operator=(const ArrowRows&) = delete;

    // Moves to the next row; false at the end or on an error, which failed() tells apart.
    bool next();
    bool failed() const { return failed_; }
    // Rows read so far without a geometry. GDAL gives none as well for a geometry that is
    // not a GeoPackage blob (another format's, or one stored as text), which OGR reads
    // feature by feature: the caller compares with the table's own count of NULLs.
    qint64 nullGeometries() const { return nullGeometries_; }

    qint64 fid() const;
    // The row's WKB, empty when it has no geometry.
    std::span<const std::byte> geometry() const;
    // The style column's text, empty when null or absent.
    QByteArrayView style() const;
    std::size_t fieldCount() const { return fields_.size(); }
    // Field i of those asked for, added as the feature-by-feature read adds it.
    void addField(AttributeValues::Builder& values, std::size_t i) const;

private:
    struct Stream;
    // One column of the current batch, read in place.
    struct Column {
        int child = -1; // in the schema; -1: absent, always null
        char format = 0;
        const std::uint8_t* validity = nullptr;
        const void* values = nullptr;
        const std::int32_t* offsets = nullptr;
        const char* bytes = nullptr;
        std::int64_t offset = 0;
        bool isNull(std::int64_t row) const;
        QByteArrayView text(std::int64_t row) const;
    };

    explicit ArrowRows(std::unique_ptr<Stream> stream);
    bool nextBatch();
    bool fail();

    std::unique_ptr<Stream> stream_;
    Column fid_;
    Column geometry_;
    Column style_;
    std::vector<Column> fields_;
    std::int64_t row_ = -1;
    std::int64_t length_ = 0;
    qint64 lastFid_ = std::numeric_limits<qint64>::min();
    qint64 nullGeometries_ = 0;
    bool failed_ = false;
};

} // namespace carto
