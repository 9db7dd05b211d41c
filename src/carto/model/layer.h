#pragma once
// A layer of a map: a table of features held in memory, indexed by FID and by an R-tree
// of their bounds. A stored layer writes through to the map set's storage; a memory
// layer never touches storage.
//
// Features change only through the map's edit commands, inside an update bracket
// (UpdateAccess): addFeature, updateFeature and deleteFeature are such commands run on
// this layer. A host's beginAccess(1) / endAccess pair opens and closes one bracket.
//
// Settings (visible, selectable, editable, labels, key column...) change through setters
// that report the change (Map::changed), so views follow without being told.
//
// Searches (condition, value, point, rectangle, feature) go through the R-tree or, for
// values, through per-column value indexes built on first use; every edit keeps the
// R-tree current and drops what was derived from the old state (value indexes, prepared
// geometries, the layer's union).

#include "carto/geometry/geometry.h"
#include "carto/geometry/prepared.h"
#include "carto/model/condition.h"
#include "carto/model/feature_store.h"
#include "carto/model/features.h"
#include "carto/model/layer_info.h"
#include "carto/model/point_cells.h"
#include "carto/model/spatial_index.h"
#include "carto/model/style.h"

#include <QHash>
#include <QString>
#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>

namespace carto {

class Map;
class Dataset;

// Search modes of searches within a rectangle or a feature.
namespace searchmode {
inline constexpr int CentreWithin = 0;
inline constexpr int PartlyWithin = 1;
inline constexpr int EntirelyWithin = 2;
} // namespace searchmode

struct LabelSettings {
    const Dataset* dataset = nullptr;
    QString field;
    bool visible = false;
    Style style = defaultLabelStyle();
    // Labels moved by hand: FID -> offset from the feature's centre, in map units.
    std::map<qint64, Point> offsets;
};

// Result of a name look-up: code 1 for an exact match (code % 10 == 1), 2 for a match
// found by its beginning, 0 for none.
struct FindResult {
    int code = 0;
    Feature feature;
    Rect bounds;
    bool exact() const { return code % 10 == 1; }
};

class Layer {
public:
    Layer(Map* map, QString name, FieldList fields, bool memory);
    ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    Map* map() const { return map_; }
    const QString& name() const { return name_; }
    bool isMemory() const { return memory_; }

    // ---- settings; each setter reports a change when the value changes
    bool visible() const { return visible_; }
    void setVisible(bool v);
    bool selectable() const { return selectable_; }
    void setSelectable(bool v);
    bool editable() const { return editable_; }
    void setEditable(bool v);
    bool autoLabel() const { return autoLabel_; }
    void setAutoLabel(bool v);
    const LabelSettings& labels() const { return labels_; }
    void setLabelDataset(const Dataset* dataset);
    void setLabelField(const QString& field);
    void setLabelsVisible(bool v);
    void setLabelStyle(const Style& style);
    // Where a moved label sits, as an offset from its feature's centre.
    void setLabelOffset(qint64 fid, Point offset);
    // The column that keyValue() reads and writes; the FID when empty.
    const QString& keyField() const { return keyField_; }
    void setKeyField(const QString& column);
    // The column find() searches; none until set.
    const QString& findField() const { return findField_; }
    void setFindField(const QString& column);
    // The column that holds the text of text features, when the layer has one; styles
    // then refer to it instead of carrying the text.
    const QString& textField() const { return textField_; }
    void setTextField(const QString& column);
    // A raster layer: a georeferenced image drawn under the vector layers.
    const QString& rasterSource() const { return rasterSource_; }
    bool isRaster() const { return !rasterSource_.isEmpty(); }

    const FieldList& fields() const { return fields_; }
    qsizetype fieldIndex(QStringView name) const; // -1 when unknown

    int featureCount() const { return int(features_.size()); }
    Rect bounds() const; // of all features
    Features allFeatures() const;
    Feature firstFeature() const; // the lowest FID's; invalid when the layer is empty
    // Every feature in FID order, without looking each one up again.
    template <typename F> void forEachFeature(F&& f) const {
        features_.forEach([&](qint64 fid, const FeatureStore::Ref& r) { f(featureAt(fid, r)); });
    }
    // The feature a walk of the store (visitInBox) came to.
    Feature featureAt(qint64 fid, const FeatureStore::Ref& r) const {
        return r.held() ? Feature(this, fid, *r.held()) : Feature(this, fid, columns(), r.row());
    }
    bool hasFeature(qint64 fid) const;
    Feature feature(qint64 fid) const;                 // Erreur when absent
    Feature featureByKey(QStringView uniqueKey) const; // the FID as text

    // 0 read, 1 update: an update bracket of the map until the matching endAccess.
    void beginAccess(int mode);
    void endAccess();
    bool inUpdateAccess() const { return updateDepth_ > 0; }

    // Edit commands on this layer, each run by the map in a bracket of its own (or in the
    // bracket already open). addFeature stores a copy (attributes matched to this layer's
    // columns by name) and returns it as stored, with its new FID.
    Feature addFeature(const Feature& f);
    void updateFeature(const Feature& f);
    void deleteFeature(qint64 fid);
    void deleteFeature(QStringView uniqueKey);

    // Selection, in the order features were selected.
    const Features& selection() const { return selection_; }
    void selectOnly(const Features& f);
    void selectAdd(qint64 fid); // append mode
    void selectRemove(qint64 fid);
    void clearSelection();

    // Searches
    Features search(QStringView condition) const;
    // The features whose column equals the value, compared as search() compares: numbers
    // as numbers (in a numeric column), texts without regard to case. The value is never
    // parsed as a condition; a null value, or a text that is not a number in a numeric
    // column, matches nothing. Erreur (ChampInconnu) for an unknown column.
    Features searchEqual(QStringView column, const QVariant& value) const;
    Features searchAtPoint(Point p) const;
    // The first feature (lowest FID) at the point; an invalid Feature when none.
    Feature firstAtPoint(Point p) const;
    Features searchWithinRectangle(const Rect& r, int mode) const;
    Features searchWithinFeature(const Feature& container, int mode) const;
    FindResult find(QStringView name) const;
    // The stored data of the features whose bounds meet the box, without a geometric test:
    // what a renderer draws.
    std::vector<std::pair<qint64, FeaturePtr>> dataInBox(const Rect& box) const;
    // The same without making data: f(fid, const FeatureStore::Ref&) in FID order. The
    // refs read the layer's columns (columns()) or data the layer shares.
    template <typename F> void visitInBox(const Rect& box, F&& f) const;
    const std::shared_ptr<const FeatureColumns>& columns() const { return features_.columns(); }

    // The union of all features, cached until the layer changes. Erreur on an empty layer.
    const Geometry& unionAll() const;
    // A prepared geometry of one feature, cached until that feature changes.
    const PreparedGeometry& prepared(qint64 fid) const;

    // Storage side: load without writing through.
    void loadFeatures(std::vector<std::pair<qint64, FeaturePtr>> rows);
    // The same from columns read for this layer's fields, and the rows they could not hold.
    void loadFeatures(std::shared_ptr<const FeatureColumns> columns,
                      std::vector<std::pair<qint64, FeaturePtr>> rest);

    // What a stored copy of the feature holds in this layer, as conform.h settles it: its
    // attributes matched to this layer's columns by name and made what the columns hold,
    // the map's default style when it has none, its shape checked and settled, its
    // derived parts computed. `replaced` is the feature it replaces, if any: a geometry
    // taken over unchanged is not checked again. Erreur naming the feature and the reason.
    FeaturePtr conform(const Feature& f, const FeatureData* replaced = nullptr) const;

private:
    friend class Map;
    friend class AddFeatures;
    friend class DeleteFeatures;
    friend class ReplaceFeatures;

    // The write primitives of the edit commands, inside an open bracket: storage first,
    // then memory, then the map's journal. fid < 0 in storeNew: storage chooses.
    // storeReplace and storeErase return what the feature was.
    Feature storeNew(FeaturePtr data, qint64 fid = -1);
    FeaturePtr storeReplace(qint64 fid, FeaturePtr data);
    FeaturePtr storeErase(qint64 fid);
    // Puts a feature back as a failed bracket's journal kept it (null: absent), in memory
    // and, with inStorage, in storage too.
    void restore(qint64 fid, const FeaturePtr& before, bool inStorage);
    void requireBracket() const;

    void putInMemory(qint64 fid, FeaturePtr data);
    // Once a bracket is over: changes folded back into columns when they are many.
    void foldChanges() { features_.fold(fields_.size()); }
    // Keep the cached bounds of the layer as a feature's box comes or goes.
    void boundsAdded(const Rect& box);
    void boundsRemoved(const Rect& box);
    void eraseFromMemory(qint64 fid);
    void changed(); // drops derived caches
    // What firstAtPoint answers for every point of the cell, or PointCells::kAsk.
    qint64 cellAnswer(const Rect& cell) const;
    void settingChanged(bool display);
    // Whether the feature holds the point: a region's shape, the bounds of anything else.
    bool covers(qint64 fid, const FeatureView& d, Point p) const;
    // Whether most of the layer lies in the box, so that a walk beats the R-tree.
    bool mostlyIn(const Rect& box) const;
    std::vector<qint64> matching(const Condition& c) const;
    Features equalTo(qsizetype column, const QString& key, bool numeric) const;
    const std::vector<qint64>* lookup(qsizetype column, const QString& key, bool numeric) const;
    bool isNumeric(qsizetype column) const;

    Map* map_;
    QString name_;
    FieldList fields_;
    bool memory_;

    bool visible_ = true;
    bool selectable_ = true;
    bool editable_ = false;
    bool autoLabel_ = false;
    LabelSettings labels_;
    QString keyField_;
    QString findField_;
    QString textField_;
    QString rasterSource_;

    FeatureStore features_; // enumerated by FID
    qint64 nextMemoryFid_ = 1;
    SpatialIndex index_;
    Features selection_;

    std::vector<std::size_t> accessMarks_; // per open access: its bracket mark, or none
    std::vector<int> accessModes_;
    int updateDepth_ = 0;

    mutable std::optional<Rect> bounds_; // of all features; walked again when unknown
    mutable std::optional<Geometry> union_;
    mutable std::unordered_map<qint64, std::unique_ptr<PreparedGeometry>> prepared_;
    mutable PointCells cells_;
    // (column, numeric) -> normalised value -> FIDs in ascending order.
    mutable std::map<std::pair<qsizetype, bool>, QHash<QString, std::vector<qint64>>> valueIndex_;
};

template <typename F> void Layer::visitInBox(const Rect& box, F&& f) const {
    if (mostlyIn(box)) {
        // Most of the layer in view (the plan shown whole or nearly): the store walks in
        // FID order, and testing each box as it goes costs less than sorting what the tree
        // would answer. Features without bounds are not in the tree, and stay out here too
        // (a null box meets nothing).
        const bool whole = box.contains(bounds());
        features_.forEach([&](qint64 fid, const FeatureStore::Ref& r) {
            const Rect b = r.bounds();
            if (whole ? !b.isNull() : box.intersects(b))
                f(fid, r);
        });
        return;
    }
    std::vector<qint64> fids = index_.intersecting(box);
    std::sort(fids.begin(), fids.end()); // drawing order is FID order, as stored
    for (const qint64 fid : fids)
        if (const auto r = features_.ref(fid); r && box.intersects(r->bounds()))
            f(fid, *r);
}

} // namespace carto
