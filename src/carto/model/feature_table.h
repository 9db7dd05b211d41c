#pragma once
// A layer's features by FID: a vector kept sorted by FID. Half the memory of a tree and a
// walk in FID order without pointer chasing; look-ups are binary searches. New features
// take growing FIDs, so adding appends; only deletes move entries.

#include "carto/model/feature_data.h"

#include <QtGlobal>
#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace carto {

class FeatureTable {
public:
    using Entry = std::pair<qint64, FeaturePtr>;
    using iterator = std::vector<Entry>::iterator;
    using const_iterator = std::vector<Entry>::const_iterator;

    iterator begin() { return entries_.begin(); }
    iterator end() { return entries_.end(); }
    const_iterator begin() const { return entries_.begin(); }
    const_iterator end() const { return entries_.end(); }
    size_t size() const { return entries_.size(); }
    bool empty() const { return entries_.empty(); }
    void clear() { entries_.clear(); }
    void reserve(size_t n) { entries_.reserve(n); }

    iterator find(qint64 fid) {
        const auto it = lower(fid);
        return it != entries_.end() && it->first == fid ? it : entries_.end();
    }
    const_iterator find(qint64 fid) const {
        const auto it = lower(fid);
        return it != entries_.end() && it->first == fid ? it : entries_.end();
    }
    bool contains(qint64 fid) const { return find(fid) != end(); }
    const FeaturePtr& at(qint64 fid) const {
        const auto it = find(fid);
        if (it == end())
            throw std::out_of_range("no feature of that FID");
        return it->second;
    }

    // Adds or replaces the feature of that FID.
    void put(qint64 fid, FeaturePtr data) {
        if (entries_.empty() || entries_.back().first < fid) {
            entries_.emplace_back(fid, std::move(data));
            return;
        }
        const auto it = lower(fid);
        if (it != entries_.end() && it->first == fid)
            it->second = std::move(data);
        else
            entries_.emplace(it, fid, std::move(data));
    }
    void erase(iterator it) { entries_.erase(it); }

private:
    iterator lower(qint64 fid) {
        return std::lower_bound(entries_.begin(), entries_.end(), fid,
                                [](const Entry& e, qint64 f) { return e.first < f; });
    }
    const_iterator lower(qint64 fid) const {
        return std::lower_bound(entries_.begin(), entries_.end(), fid,
                                [](const Entry& e, qint64 f) { return e.first < f; });
    }

    std::vector<Entry> entries_;
};

} // namespace carto
