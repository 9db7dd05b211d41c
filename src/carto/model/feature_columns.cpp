#include "carto/model/feature_columns.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace carto {

namespace {

constexpr size_t kMaxIndex = std::numeric_limits<std::uint32_t>::max();
constexpr size_t kMaxStyles = std::numeric_limits<std::uint16_t>::max();

// A column that only some rows need, kept empty until the first of them comes: then
// filled for the rows before it, and from there on given a value for every row.
template <typename T> void pushSparse(std::vector<T>& column, size_t row, bool needed, T value) {
    if (column.empty() && !needed)
        return;
    if (column.empty())
        column.resize(row);
    column.push_back(std::move(value));
}

} // namespace

// The styles met so far, by address: rows share the few a layer has.
struct FeatureColumns::Builder::Styles {
    std::unordered_map<const Style*, std::uint16_t> index;
};

FeatureColumns::Builder::Builder(size_t columns)
    : styles_(std::make_unique<Styles>()), columns_(columns) {}
FeatureColumns::Builder::Builder(Builder&&) noexcept = default;
FeatureColumns::Builder& FeatureColumns::Builder::operator=(Builder&&) noexcept = default;
FeatureColumns::Builder::~Builder() = default;

void FeatureColumns::Builder::reserve(size_t rows) {
    if (!c_) {
        c_.reset(new FeatureColumns);
        c_->columns_ = columns_;
    }
    c_->kinds_.reserve(rows);
    c_->styles_.reserve(rows);
    c_->valueEnds_.reserve(rows);
}

bool FeatureColumns::Builder::add(qint64 fid, const FeatureData& d) {
    if (!c_)
        reserve(0);
    FeatureColumns& c = *c_;
    if (!c.kinds_.empty() && fid <= c.fid(c.size() - 1))
        return false;
    const auto [slot, added] = styles_->index.try_emplace(d.style.get(), 0);
    if (added) {
        if (c.styleTable_.size() == kMaxStyles) {
            styles_->index.erase(slot);
            return false;
        }
        slot->second = std::uint16_t(c.styleTable_.size());
        c.styleTable_.push_back(d.style);
    }
    return c.add(fid, d, slot->second);
}

std::shared_ptr<const FeatureColumns> FeatureColumns::Builder::finish() {
    std::shared_ptr<FeatureColumns> done = std::move(c_);
    styles_->index.clear();
    if (!done || done->kinds_.empty())
        return nullptr;
    done->shrink();
    return done;
}

std::shared_ptr<const FeatureColumns> FeatureColumns::take(Rows& rows, size_t columns) {
    Builder b(columns);
    b.reserve(rows.size());
    Rows left;
    for (auto& row : rows)
        if (!b.add(row.first, *row.second))
            left.push_back(std::move(row));
    rows = std::move(left);
    return b.finish();
}

bool FeatureColumns::add(qint64 fid, const FeatureData& d, std::uint16_t style) {
    const auto points = d.parts.points();
    const size_t several = d.parts.size() > 1 ? d.parts.size() : 0;
    if (d.attributes.size() != columns_ || points_.size() + points.size() > kMaxIndex ||
        ends_.size() + several > kMaxIndex)
        return false;
    const size_t valuesBefore = values_.size(), boxedBefore = boxed_.size();
    d.attributes.appendPacked(values_, boxed_);
    if (values_.size() > kMaxIndex || boxed_.size() > kMaxIndex) {
        values_.resize(valuesBefore);
        boxed_.resize(boxedBefore);
        return false;
    }
    const size_t row = kinds_.size();
    if (row == 0)
        firstFid_ = fid;
    if (fids_.empty() && fid != firstFid_ + qint64(row)) {
        // A gap: the FIDs are kept from here on.
        fids_.reserve(kinds_.capacity());
        for (size_t i = 0; i < row; ++i)
            fids_.push_back(firstFid_ + qint64(i));
    }
    if (!fids_.empty())
        fids_.push_back(fid);

    std::uint8_t kind = std::uint8_t(d.kind);
    if (d.parts.empty())
        kind |= kNoParts;
    if (several) {
        kind |= kSeveralParts;
        several_.emplace_back(std::uint32_t(row), std::uint32_t(ends_.size()));
        const auto ends = d.parts.view().ends();
        ends_.insert(ends_.end(), ends.begin(), ends.end());
    }
    kinds_.push_back(kind);
    styles_.push_back(style);
    if (lonePoints_ && !(d.parts.size() == 1 && points.size() == 1)) {
        // The first row that is not a point of its own: every row before it was one.
        lonePoints_ = false;
        pointEnds_.reserve(kinds_.capacity());
        for (size_t i = 0; i < row; ++i)
            pointEnds_.push_back(std::uint32_t(i + 1));
    }
    points_.insert(points_.end(), points.begin(), points.end());
    if (!lonePoints_)
        pointEnds_.push_back(std::uint32_t(points_.size()));
    valueEnds_.push_back(std::uint32_t(values_.size()));
    pushSparse(boxedEnds_, row, boxed_.size() > boxedBefore, std::uint32_t(boxed_.size()));
    pushSparse(texts_, row, d.kind == FeatureKind::Text, d.text);
    pushSparse(extents_, row, d.kind == FeatureKind::Text || d.kind == FeatureKind::Symbol,
               d.extent);
    return true;
}

void FeatureColumns::shrink() {
    fids_.shrink_to_fit();
    kinds_.shrink_to_fit();
    styles_.shrink_to_fit();
    styleTable_.shrink_to_fit();
    pointEnds_.shrink_to_fit();
    points_.shrink_to_fit();
    several_.shrink_to_fit();
    ends_.shrink_to_fit();
    texts_.shrink_to_fit();
    extents_.shrink_to_fit();
    valueEnds_.shrink_to_fit();
    values_.shrink_to_fit();
    boxed_.shrink_to_fit();
    boxedEnds_.shrink_to_fit();
}

std::ptrdiff_t FeatureColumns::rowOf(qint64 fid) const {
    if (fids_.empty()) {
        const qint64 row = fid - firstFid_;
        return fid >= firstFid_ && row < qint64(size()) ? std::ptrdiff_t(row) : -1;
    }
    const auto it = std::lower_bound(fids_.begin(), fids_.end(), fid);
    return it != fids_.end() && *it == fid ? it - fids_.begin() : -1;
}

std::pair<size_t, size_t> FeatureColumns::pointRange(size_t row) const {
    if (lonePoints_)
        return {row, row + 1};
    return {row == 0 ? 0 : pointEnds_[row - 1], pointEnds_[row]};
}

ShapeView FeatureColumns::parts(size_t row) const {
    const std::uint8_t k = kinds_[row];
    if (k & kNoParts)
        return {};
    const auto [first, last] = pointRange(row);
    const std::span<const Point> points(points_.data() + first, last - first);
    if (!(k & kSeveralParts))
        return {points, nullptr, 1};
    const auto it =
        std::lower_bound(several_.begin(), several_.end(),
                         std::pair<std::uint32_t, std::uint32_t>(std::uint32_t(row), 0));
    const size_t end = it + 1 == several_.end() ? ends_.size() : (it + 1)->second;
    return {points, ends_.data() + it->second, end - it->second};
}

FeatureView FeatureColumns::view(size_t row) const {
    return {kind(row), parts(row), texts_.empty() ? nullptr : &texts_[row],
            extents_.empty() ? Point{} : extents_[row]};
}

const unsigned char* FeatureColumns::valuesOf(size_t row) const {
    return values_.data() + (row == 0 ? 0 : valueEnds_[row - 1]);
}

const QVariant* FeatureColumns::boxesOf(size_t row) const {
    if (boxedEnds_.empty())
        return nullptr;
    return boxed_.data() + (row == 0 ? 0 : boxedEnds_[row - 1]);
}

QVariant FeatureColumns::attribute(size_t row, size_t column) const {
    return AttributeValues::packedAt(columns_, valuesOf(row), boxesOf(row), column);
}

FeaturePtr FeatureColumns::data(size_t row) const {
    auto d = MutableFeaturePtr::make();
    d->kind = kind(row);
    d->parts = Shape(parts(row));
    d->style = style(row);
    d->attributes = AttributeValues::unpack(columns_, valuesOf(row), boxesOf(row));
    if (!texts_.empty())
        d->text = texts_[row];
    if (!extents_.empty())
        d->extent = extents_[row];
    return d;
}

} // namespace carto
