#pragma once
// A layer's features as read from storage, held column by column: every point in one
// array, the kind in a byte, the style as an index into the layer's few styles, the
// attribute values packed one feature after the other, the FIDs implied when they run
// without gaps. A plot costs its points and a few dozen bytes besides, where an object
// per feature cost twice as much.
//
// Never changed once built: the layer marks what it changes or deletes and keeps the new
// data apart, so a render may go on reading these columns on another thread.

#include "carto/model/feature_data.h"

#include <QVariant>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace carto {

class FeatureColumns {
public:
    using Rows = std::vector<std::pair<qint64, FeaturePtr>>;

    // Fills columns row by row, as storage reads them.
    class Builder {
    public:
        explicit Builder(size_t columns);
        Builder(Builder&&) noexcept;
        Builder& operator=(Builder&&) noexcept;
        ~Builder();
        void reserve(size_t rows);
        // Copies the row in, or false when the columns cannot hold it: a FID not above the
        // last one's, not `columns` values, more styles than they count.
        bool add(qint64 fid, const FeatureData& d);
        // The columns, then empty again; null when no row went in.
        std::shared_ptr<const FeatureColumns> finish();

    private:
        struct Styles;
        std::shared_ptr<FeatureColumns> c_;
        std::unique_ptr<Styles> styles_;
        size_t columns_;
    };

    // Takes from `rows` the features it can hold, in FID order, and leaves in `rows` those
    // it cannot, their data as it is. Null when it takes none.
    static std::shared_ptr<const FeatureColumns> take(Rows& rows, size_t columns);

    size_t size() const { return kinds_.size(); }
    qint64 fid(size_t row) const { return fids_.empty() ? firstFid_ + qint64(row) : fids_[row]; }
    // The row of that FID; -1 when none.
    std::ptrdiff_t rowOf(qint64 fid) const;

    FeatureKind kind(size_t row) const { return FeatureKind(kinds_[row] & kKindBits); }
    const StylePtr& style(size_t row) const { return styleTable_[styles_[row]]; }
    ShapeView parts(size_t row) const;
    FeatureView view(size_t row) const;
    size_t attributeCount() const { return columns_; }
    QVariant attribute(size_t row, size_t column) const;
    // The row as a FeatureData of its own.
    FeaturePtr data(size_t row) const;

private:
    static constexpr std::uint8_t kKindBits = 0x07;
    static constexpr std::uint8_t kNoParts = 0x80;
    static constexpr std::uint8_t kSeveralParts = 0x40;

    FeatureColumns() = default;
    bool add(qint64 fid, const FeatureData& d, std::uint16_t style);
    void shrink();
    std::pair<size_t, size_t> pointRange(size_t row) const;
    const unsigned char* valuesOf(size_t row) const;
    const QVariant* boxesOf(size_t row) const;

    size_t columns_ = 0;
    qint64 firstFid_ = 0;
    std::vector<qint64> fids_; // empty while FIDs follow firstFid_ without a gap
    std::vector<std::uint8_t> kinds_;
    std::vector<std::uint16_t> styles_;
    std::vector<StylePtr> styleTable_;
    // Where each row's points end; none while every row is one point of its own.
    bool lonePoints_ = true;
    std::vector<std::uint32_t> pointEnds_;
    std::vector<Point> points_;
    // Rows of several parts, by row: where their part ends start in ends_.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> several_;
    std::vector<std::uint32_t> ends_;
    std::vector<FeatureText> texts_; // none before the first text
    std::vector<Point> extents_;     // none before the first text or symbol
    std::vector<std::uint32_t> valueEnds_;
    std::vector<unsigned char> values_;
    // Values kept as variants (dates...), and where each row's end; none before the first.
    std::vector<QVariant> boxed_;
    std::vector<std::uint32_t> boxedEnds_;
};

} // namespace carto
