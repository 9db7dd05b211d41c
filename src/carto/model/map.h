#pragma once
// A map: the layers of one map set (in drawing order, bottom first), the memory layers
// added to it, its datasets and its styles. Loading a map set replaces everything; a map
// set that cannot be opened leaves the map as it was. Views connect to the signals.

#include "carto/model/dataset.h"
#include "carto/model/layer.h"

#include <QObject>
#include <memory>
#include <vector>

namespace carto {

class MapStore;

class Map : public QObject {
    Q_OBJECT
public:
    explicit Map(QObject* parent = nullptr);
    ~Map() override;

    // Erreur (PlanIllisible, CoucheInconnue...) when the map set cannot be read.
    void loadMapSet(const QString& pathOrConnection);
    QString mapSet() const;
    MapStore* store() const { return store_.get(); }

    int layerCount() const { return int(layers_.size()); }
    Layer* layerAt(int index) const;      // 0-based, drawing order; Erreur out of range
    Layer* layer(QStringView name) const; // exact name; nullptr when absent
    Layer& requireLayer(QStringView name) const;
    std::vector<Layer*> layers() const;

    // A temporary layer from a creation description (type 6); it lives in memory only
    // and is drawn on top.
    Layer& addLayer(const LayerInfo& info);
    void removeLayer(QStringView name);
    void removeAllLayers();

    Dataset& addDataset(Layer& layer, const QString& name = {});
    Dataset& addDataset(Layer& layer, const recordset::Recordset& rows, const QString& geoField,
                        const QString& name);
    Dataset* dataset(QStringView name) const;
    std::vector<Dataset*> datasets() const;
    std::vector<Dataset*> datasetsOf(const Layer& layer) const;
    void removeDataset(QStringView name);

    Style defaultStyle;
    Style selectionStyle;

    static double distance(Point a, Point b);

signals:
    void layersChanged();
    // Features were added, updated or deleted within the area (their old and new bounds).
    void featuresChanged(carto::Layer* layer, carto::Rect area);
    void selectionChanged(carto::Layer* layer);
    void datasetsChanged();

private:
    std::unique_ptr<MapStore> store_;
    std::vector<std::unique_ptr<Layer>> layers_;
    std::vector<std::unique_ptr<Dataset>> datasets_;
};

} // namespace carto
