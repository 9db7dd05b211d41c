#include "carto/model/feature_store.h"

#include <stdexcept>

namespace carto {

std::ptrdiff_t FeatureStore::liveRow(qint64 fid) const {
    if (!columns_)
        return -1;
    const std::ptrdiff_t row = columns_->rowOf(fid);
    return row >= 0 && !gone_[size_t(row)] ? row : -1;
}

FeaturePtr FeatureStore::find(qint64 fid) const {
    if (const auto it = changed_.find(fid); it != changed_.end())
        return it->second;
    const std::ptrdiff_t row = liveRow(fid);
    return row >= 0 ? columns_->data(size_t(row)) : nullptr;
}

std::optional<FeatureStore::Ref> FeatureStore::ref(qint64 fid) const {
    if (const auto it = changed_.find(fid); it != changed_.end())
        return Ref(&it->second);
    const std::ptrdiff_t row = liveRow(fid);
    if (row < 0)
        return std::nullopt;
    return Ref(columns_.get(), size_t(row));
}

FeatureStore::Ref FeatureStore::at(qint64 fid) const {
    const auto r = ref(fid);
    if (!r)
        throw std::out_of_range("no feature of that FID");
    return *r;
}

void FeatureStore::put(qint64 fid, FeaturePtr data) {
    if (const std::ptrdiff_t row = liveRow(fid); row >= 0) {
        gone_[size_t(row)] = true;
        --live_;
    }
    changed_.insert_or_assign(fid, std::move(data));
}

void FeatureStore::erase(qint64 fid) {
    if (const auto it = changed_.find(fid); it != changed_.end()) {
        changed_.erase(it);
    } else if (const std::ptrdiff_t row = liveRow(fid); row >= 0) {
        gone_[size_t(row)] = true;
        --live_;
    }
}

void FeatureStore::clear() {
    columns_.reset();
    gone_.clear();
    live_ = 0;
    changed_.clear();
}

void FeatureStore::load(FeatureColumns::Rows rows, size_t columns) {
    auto held = FeatureColumns::take(rows, columns);
    load(std::move(held), std::move(rows));
}

void FeatureStore::load(std::shared_ptr<const FeatureColumns> columns, FeatureColumns::Rows rows) {
    clear();
    columns_ = std::move(columns);
    live_ = columns_ ? columns_->size() : 0;
    gone_.assign(live_, false);
    for (auto& [fid, data] : rows)
        put(fid, std::move(data));
}

void FeatureStore::fold(size_t columns) {
    constexpr size_t kFewest = 1024; // below that, data of their own costs little
    if (changed_.size() < kFewest || changed_.size() * 4 < size())
        return;
    FeatureColumns::Builder built(columns);
    built.reserve(size());
    std::map<qint64, FeaturePtr> left;
    forEach([&](qint64 fid, const Ref& r) {
        const FeaturePtr data = r.data();
        if (!built.add(fid, *data))
            left.emplace_hint(left.end(), fid, data);
    });
    // Renders and features that still hold the old columns keep them alive.
    columns_ = built.finish();
    live_ = columns_ ? columns_->size() : 0;
    gone_.assign(live_, false);
    changed_ = std::move(left);
}

} // namespace carto
