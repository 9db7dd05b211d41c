#pragma once
// Updates of features held back until the transaction commits, then written a few hundred
// rows per statement. A database answers each statement over the network: one UPDATE per
// feature makes a 30,000-plot update last many seconds, one per batch makes it a moment.
// Inserts and deletions are not held: they go at once, and a deletion drops what was held
// for its feature. Rows are locked when written, so another clerk's lock is met at commit.

#include <QString>
#include <map>
#include <memory>
#include <vector>

class GDALDataset;
class OGRFeature;
class OGRLayer;

namespace carto {

struct FeatureDeleter {
    void operator()(OGRFeature* f) const;
};
using OgrFeaturePtr = std::unique_ptr<OGRFeature, FeatureDeleter>;

class BatchedUpdates {
public:
    // The feature as it must be stored, replacing what was held for its FID.
    void hold(OGRLayer& layer, OgrFeaturePtr feature);
    void forget(OGRLayer& layer, qint64 fid);
    void clear() { layers_.clear(); }
    bool empty() const { return layers_.empty(); }

    // Writes and forgets everything held. On failure, the database's message in `why`,
    // the layer it came from in `layer` (the transaction is then to be rolled back), and
    // false.
    bool flush(GDALDataset& ds, QString* why, QString* layer);

private:
    struct Held {
        OGRLayer* layer; // owned by the dataset
        std::map<qint64, OgrFeaturePtr> rows;
    };
    std::vector<Held> layers_;

    bool flushLayer(GDALDataset& ds, Held& held, QString* why);
};

} // namespace carto
