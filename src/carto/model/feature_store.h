#pragma once
// A layer's features by FID: those read from storage, held in columns that never change,
// and those added or changed since, each in data of its own. Changing or deleting a
// feature of the columns marks its row gone; its new data, if any, joins the others.
// Walks go in FID order across both.

#include "carto/model/feature_columns.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <type_traits>
#include <vector>

namespace carto {

class FeatureStore {
public:
    // One feature where it is held, read without making its data.
    class Ref {
    public:
        Ref(const FeatureColumns* columns, size_t row) : columns_(columns), row_(row) {}
        explicit Ref(const FeaturePtr* data) : data_(data) {}

        FeatureView view() const { return data_ ? (*data_)->view() : columns_->view(row_); }
        FeatureKind kind() const { return data_ ? (*data_)->kind : columns_->kind(row_); }
        Rect bounds() const { return view().bounds(); }
        const Style* style() const {
            return (data_ ? (*data_)->style : columns_->style(row_)).get();
        }
        size_t attributeCount() const {
            return data_ ? (*data_)->attributes.size() : columns_->attributeCount();
        }
        QVariant attribute(size_t column) const {
            return data_ ? (*data_)->attributes[column] : columns_->attribute(row_, column);
        }
        // The feature's data: shared when it has its own, made anew from the columns.
        FeaturePtr data() const { return data_ ? *data_ : columns_->data(row_); }
        // Its own data; null for a row of the columns.
        const FeaturePtr* held() const { return data_; }
        size_t row() const { return row_; }

    private:
        const FeatureColumns* columns_ = nullptr;
        size_t row_ = 0;
        const FeaturePtr* data_ = nullptr;
    };

    size_t size() const { return live_ + changed_.size(); }
    bool empty() const { return size() == 0; }
    bool contains(qint64 fid) const { return changed_.count(fid) > 0 || liveRow(fid) >= 0; }
    // Null when absent.
    FeaturePtr find(qint64 fid) const;
    std::optional<Ref> ref(qint64 fid) const;
    Ref at(qint64 fid) const; // std::out_of_range when absent
    // Adds or replaces the feature of that FID.
    void put(qint64 fid, FeaturePtr data);
    void erase(qint64 fid);
    void clear();
    // Replaces every feature by the rows, in FID order; each FID once.
    void load(FeatureColumns::Rows rows, size_t columns);
    // Replaces every feature by those of the columns and the rows (which win when they
    // share a FID).
    void load(std::shared_ptr<const FeatureColumns> columns, FeatureColumns::Rows rows);
    // Folds the features changed since the columns were made into new columns, once they
    // are a quarter of all: each change then costs its data only until the next fold.
    void fold(size_t columns);
    // Shared with renders, which read them on another thread.
    const std::shared_ptr<const FeatureColumns>& columns() const { return columns_; }

    // f(fid, const Ref&) in FID order; a callback returning bool stops the walk on false.
    // The callback may change or delete the features it is given: the walk goes on from
    // the next FID, and leaves out features added meanwhile.
    template <typename F> void forEach(F&& f) const {
        const size_t rows = columns_ ? columns_->size() : 0;
        const qint64 last =
            std::max(rows ? columns_->fid(rows - 1) : qint64(-1),
                     changed_.empty() ? qint64(-1) : std::prev(changed_.end())->first);
        size_t row = 0;
        qint64 next = std::numeric_limits<qint64>::min();
        while (true) {
            while (row < rows && gone_[row])
                ++row;
            // Looked up again at each step: the callback may have changed the table.
            const auto other = changed_.empty() ? changed_.end() : changed_.lower_bound(next);
            const bool fromRows =
                row < rows && (other == changed_.end() || columns_->fid(row) < other->first);
            if (!fromRows && other == changed_.end())
                return;
            const qint64 fid = fromRows ? columns_->fid(row) : other->first;
            if (fid > last)
                return;
            const Ref r = fromRows ? Ref(columns_.get(), row) : Ref(&other->second);
            if (fromRows)
                ++row;
            next = fid + 1;
            if constexpr (std::is_same_v<std::invoke_result_t<F&, qint64, const Ref&>, bool>) {
                if (!f(fid, r))
                    return;
            } else {
                f(fid, r);
            }
        }
    }

private:
    // The row of a FID not gone from the columns; -1 when none.
    std::ptrdiff_t liveRow(qint64 fid) const;

    std::shared_ptr<const FeatureColumns> columns_;
    std::vector<bool> gone_; // by row of the columns
    size_t live_ = 0;        // rows not gone
    // Added or changed since the columns were read, in any order: a tree, where a sorted
    // vector would move half of itself for each change out of order.
    std::map<qint64, FeaturePtr> changed_;
};

} // namespace carto
