#include "arrow_rows.h"

#include <cstring>
#include <ogr_recordbatch.h>
#include <ogrsf_frmts.h>

namespace carto {

struct ArrowRows::Stream {
    ArrowArrayStream stream{};
    ArrowSchema schema{};
    ArrowArray batch{};

    Stream() = default;
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() {
        releaseBatch();
        if (schema.release)
            schema.release(&schema);
        if (stream.release)
            stream.release(&stream);
    }
    void releaseBatch() {
        if (batch.release)
            batch.release(&batch);
        batch = ArrowArray{};
    }
    int childNamed(const char* name) const {
        for (std::int64_t i = 0; i < schema.n_children; ++i)
            if (schema.children[i]->name && std::strcmp(schema.children[i]->name, name) == 0)
                return int(i);
        return -1;
    }
    const char* formatOf(int child) const { return schema.children[child]->format; }
};

namespace {

// The Arrow format each OGR field type is read with here.
char formatFor(const OGRFieldDefn& defn) {
    if (defn.GetSubType() != OFSTNone && defn.GetSubType() != OFSTJSON &&
        defn.GetSubType() != OFSTUUID)
        return 0;
    switch (defn.GetType()) {
    case OFTInteger:
        return 'i';
    case OFTInteger64:
        return 'l';
    case OFTReal:
        return 'g';
    case OFTString:
        return 'u';
    default:
        return 0;
    }
}

// A text read feature by feature stops at its first NUL; so does this one.
QByteArrayView untilNul(QByteArrayView text) {
    if (text.isEmpty())
        return text;
    const void* nul = std::memchr(text.data(), 0, std::size_t(text.size()));
    return nul ? text.first(static_cast<const char*>(nul) - text.data()) : text;
}

bool plainFormat(const char* format, char expected) {
    return format && format[0] == expected && format[1] == '\0';
}

} // namespace

bool ArrowRows::Column::isNull(std::int64_t row) const {
    if (child < 0)
        return true;
    const std::int64_t i = offset + row;
    return validity && ((validity[i >> 3] >> (i & 7)) & 1) == 0;
}

QByteArrayView ArrowRows::Column::text(std::int64_t row) const {
    if (isNull(row))
        return {};
    const std::int64_t i = offset + row;
    return {bytes + offsets[i], qsizetype(offsets[i + 1] - offsets[i])};
}

ArrowRows::ArrowRows(std::unique_ptr<Stream> stream) : stream_(std::move(stream)) {}

ArrowRows::~ArrowRows() = default;

std::unique_ptr<ArrowRows> ArrowRows::open(OGRLayer& layer, std::span<const int> fields,
                                           int style) {
    const OGRFeatureDefn& defn = *layer.GetLayerDefn();
    const char* fidName = layer.GetFIDColumn();
    if (!fidName || !*fidName || defn.GetGeomFieldCount() > 1)
        return nullptr;
    auto stream = std::make_unique<Stream>();
    const char* options[] = {"INCLUDE_FID=YES", nullptr};
    layer.ResetReading();
    if (!layer.GetArrowStream(&stream->stream, const_cast<char**>(options)) ||
        stream->stream.get_schema(&stream->stream, &stream->schema) != 0)
        return nullptr;
    const Stream& s = *stream;
    std::unique_ptr<ArrowRows> rows(new ArrowRows(std::move(stream)));
    const auto column = [&](const char* name, char format, Column& out) {
        out.child = s.childNamed(name);
        out.format = format;
        return out.child >= 0 && plainFormat(s.formatOf(out.child), format);
    };
    if (!column(fidName, 'l', rows->fid_))
        return nullptr;
    if (defn.GetGeomFieldCount() == 1 &&
        !column(defn.GetGeomFieldDefn(0)->GetNameRef(), 'z', rows->geometry_))
        return nullptr;
    if (style >= 0 && !column(defn.GetFieldDefn(style)->GetNameRef(), 'u', rows->style_))
        return nullptr;
    rows->fields_.resize(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i] < 0)
            continue;
        const OGRFieldDefn& field = *defn.GetFieldDefn(fields[i]);
        const char format = formatFor(field);
        if (!format || !column(field.GetNameRef(), format, rows->fields_[i]))
            return nullptr;
    }
    return rows;
}

bool ArrowRows::nextBatch() {
    Stream& s = *stream_;
    // An SQL error inside GDAL's reader (a table of more columns than SQLite passes to
    // one function, a damaged page) comes as empty batch after empty batch, never as
    // an error: a second empty batch in a row is taken for one.
    for (int empty = 0;;) {
        s.releaseBatch();
        if (s.stream.get_next(&s.stream, &s.batch) != 0)
            return fail();
        if (!s.batch.release)
            return false; // the end
        if (s.batch.length > 0)
            break;
        if (++empty == 2)
            return fail();
    }
    if (s.batch.n_children != s.schema.n_children)
        return fail();
    const auto bind = [&](Column& c) {
        if (c.child < 0)
            return;
        const ArrowArray& a = *s.batch.children[c.child];
        c.offset = s.batch.offset + a.offset;
        c.validity = a.null_count != 0 ? static_cast<const std::uint8_t*>(a.buffers[0]) : nullptr;
        c.values = a.buffers[1];
        if (c.format == 'u' || c.format == 'z') {
            c.offsets = static_cast<const std::int32_t*>(a.buffers[1]);
            c.bytes = static_cast<const char*>(a.buffers[2]);
        }
    };
    bind(fid_);
    bind(geometry_);
    bind(style_);
    for (Column& c : fields_)
        bind(c);
    length_ = s.batch.length;
    row_ = 0;
    return true;
}

bool ArrowRows::fail() {
    failed_ = true;
    return false;
}

bool ArrowRows::next() {
    if (failed_)
        return false;
    if (row_ >= 0 && row_ + 1 < length_)
        ++row_;
    else if (!nextBatch())
        return false;
    // GDAL trusts the table's stored count of features to step through the FIDs: a stale
    // count over a gap gives rows twice.
    const qint64 id = fid();
    if (id <= lastFid_)
        return fail();
    lastFid_ = id;
    if (geometry_.isNull(row_)) {
        ++nullGeometries_;
    } else if (geometry().empty()) {
        return fail(); // what GDAL 3.6 gives for every row of a layer without fields
    }
    return true;
}

qint64 ArrowRows::fid() const {
    return static_cast<const std::int64_t*>(fid_.values)[fid_.offset + row_];
}

std::span<const std::byte> ArrowRows::geometry() const {
    const QByteArrayView wkb = geometry_.child < 0 ? QByteArrayView() : geometry_.text(row_);
    return {reinterpret_cast<const std::byte*>(wkb.data()), std::size_t(wkb.size())};
}

QByteArrayView ArrowRows::style() const {
    return untilNul(style_.text(row_));
}

void ArrowRows::addField(AttributeValues::Builder& values, std::size_t i) const {
    const Column& c = fields_[i];
    if (c.isNull(row_))
        return values.addNull();
    const std::int64_t at = c.offset + row_;
    switch (c.format) {
    case 'i':
        return values.addInt(static_cast<const std::int32_t*>(c.values)[at]);
    case 'l':
        return values.addInt64(static_cast<const std::int64_t*>(c.values)[at]);
    case 'g':
        return values.addReal(static_cast<const double*>(c.values)[at]);
    default: {
        const QByteArrayView text = untilNul(c.text(row_));
        return values.addUtf8(text.data(), std::size_t(text.size()));
    }
    }
}

} // namespace carto
