#pragma once
// An ordered collection of features of one layer, without duplicates: search results,
// selections and working sets. It holds FIDs and reads the features from the layer when
// iterated, so it stays cheap whatever its size. While its FIDs come in ascending order
// (what every search returns) membership is a binary search; a hash set is built only
// once a collection gets out of order.

#include "base/index_iterator.h"
#include "carto/model/feature.h"

#include <unordered_set>
#include <vector>

namespace carto {

class Features {
public:
    Features() = default;
    explicit Features(const Layer* layer) : layer_(layer) {}
    Features(const Layer* layer, std::vector<qint64> fids);

    const Layer* layer() const { return layer_; }
    int count() const { return int(fids_.size()); }
    bool isEmpty() const { return fids_.empty(); }
    bool contains(qint64 fid) const;
    const std::vector<qint64>& fids() const { return fids_; }

    // A feature of another layer, or a detached one, is refused with Erreur.
    void add(const Feature& f);
    void add(qint64 fid);
    void add(const Features& other);
    void remove(qint64 fid);
    void clear();
    // Keeps the features present in both, in this collection's order.
    void intersect(const Features& other);

    Feature at(int index) const; // 0-based
    Rect bounds() const;

    // The same as at(), for iterating.
    Feature operator[](size_t index) const { return at(int(index)); }
    using const_iterator = veldra::IndexIterator<Features, Feature>;
    const_iterator begin() const { return {this, 0}; }
    const_iterator end() const { return {this, fids_.size()}; }

private:
    const Layer* layer_ = nullptr;
    std::vector<qint64> fids_;
    bool ascending_ = true; // fids_ strictly increasing
    // The FIDs again, kept only once they are out of order; empty until then.
    std::unordered_set<qint64> members_;
};

} // namespace carto
