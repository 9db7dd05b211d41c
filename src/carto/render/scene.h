#pragma once
// What a render draws, taken from the map on the UI thread: for each visible layer in
// drawing order, the features whose bounds meet the area (through the R-tree), each with
// the style it is drawn in (its own or its theme category's) and its automatic label.
// The features' data and the layers' columns are shared and never changed in place, so a
// scene can be painted on another thread while the map goes on changing.

#include "carto/model/map.h"
#include "carto/render/raster_image.h"
#include "carto/render/viewport.h"

#include <QPainter>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace carto {

// A feature to draw: its own data, or a row of its layer's columns.
struct SceneItem {
    FeaturePtr data;
    std::uint32_t row = 0; // without data
    const Style* style = nullptr;
    QString label; // empty when none
    Point labelAt;
};

struct SceneLayer {
    std::shared_ptr<const FeatureColumns> columns; // held while the scene is painted
    std::vector<SceneItem> items;
    RasterImage raster;
    Style labelStyle; // a copy: the layer's may change while the scene is painted
};

struct Scene {
    Viewport viewport;
    Rect area;
    std::vector<SceneLayer> layers;
    std::vector<std::unique_ptr<Style>> themeStyles; // styles that themes made
};

using RasterLookup = std::function<RasterImage(const QString& source)>;

Scene buildScene(const Map& map, const Viewport& viewport, const Rect& area,
                 const RasterLookup& rasters);

// Paints the scene's layers, then the labels that fit among the texts and each other;
// stops early, leaving the picture unfinished, when cancel becomes true. The screen
// boxes of the labels drawn.
std::vector<QRectF> paintScene(QPainter& painter, const Scene& scene,
                               const std::atomic<bool>* cancel = nullptr);

} // namespace carto
