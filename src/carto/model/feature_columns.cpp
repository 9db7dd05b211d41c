#include "carto/model/feature_columns.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace carto {

namespace {

constexpr size_t kMaxIndex = std::numeric_limits<std::uint32_t>::max();
constexpr size_t kMaxStyles = std::numeric_limits<std::uint16_t>::max();

bool onePoint(const FeatureData& d) {
    return d.parts.size() == 1 && d.parts.points().size() == 1;
}

} // namespace

std::shared_ptr<const FeatureColumns> FeatureColumns::take(Rows& rows, size_t columns) {
    if (rows.empty())
        return nullptr;
    const auto any = [&](auto test) {
        return std::any_of(rows.begin(), rows.end(),
                           [&](const auto& r) { return test(*r.second); });
    };
    const bool texts = any([](const FeatureData& d) { return d.kind == FeatureKind::Text; });
    const bool anchors = any([](const FeatureData& d) {
        return d.kind == FeatureKind::Text || d.kind == FeatureKind::Symbol;
    });
    const bool lonePoints =
        std::all_of(rows.begin(), rows.end(), [](const auto& r) { return onePoint(*r.second); });

    std::shared_ptr<FeatureColumns> c(new FeatureColumns);
    c->columns_ = columns;
    c->firstFid_ = rows.front().first;
    c->kinds_.reserve(rows.size());
    c->styles_.reserve(rows.size());
    c->lonePoints_ = lonePoints;
    if (!lonePoints)
        c->pointEnds_.reserve(rows.size());
    c->valueEnds_.reserve(rows.size());
    if (texts)
        c->texts_.reserve(rows.size());
    if (anchors)
        c->extents_.reserve(rows.size());

    std::unordered_map<const Style*, std::uint16_t> styleIndex;
    Rows left;
    for (auto& row : rows) {
        const FeatureData& d = *row.second;
        const auto [slot, added] = styleIndex.try_emplace(d.style.get(), 0);
        if (added) {
            if (c->styleTable_.size() == kMaxStyles) {
                styleIndex.erase(slot);
                left.push_back(std::move(row));
                continue;
            }
            slot->second = std::uint16_t(c->styleTable_.size());
            c->styleTable_.push_back(d.style);
        }
        if (!c->add(row.first, d, texts, anchors)) {
            left.push_back(std::move(row));
            continue;
        }
        c->styles_.push_back(slot->second);
    }
    rows = std::move(left);
    if (c->kinds_.empty())
        return nullptr;
    c->finish();
    return c;
}

bool FeatureColumns::add(qint64 fid, const FeatureData& d, bool texts, bool anchors) {
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
    if (boxed_.size() > boxedBefore && boxedEnds_.empty())
        boxedEnds_.assign(row, 0); // the first row with variants: none before it
    if (!boxedEnds_.empty())
        boxedEnds_.push_back(std::uint32_t(boxed_.size()));
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
    points_.insert(points_.end(), points.begin(), points.end());
    if (!lonePoints_)
        pointEnds_.push_back(std::uint32_t(points_.size()));
    valueEnds_.push_back(std::uint32_t(values_.size()));
    if (texts)
        texts_.push_back(d.text);
    if (anchors)
        extents_.push_back(d.extent);
    return true;
}

void FeatureColumns::finish() {
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
