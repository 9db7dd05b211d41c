#include "carto/render/scene.h"

#include "carto/render/feature_painter.h"

#include <map>

namespace carto {

namespace {

// Labels are drawn only on features at least this wide on screen; smaller ones would
// bury the plan under text.
constexpr double kMinLabelledPixels = 14;

// The theme that colours a layer: the last one added to the last dataset bound to it.
const Theme* themeOf(const Map& map, const Layer& layer) {
    const Theme* found = nullptr;
    for (const Dataset* d : map.datasetsOf(layer))
        if (!d->themes().empty())
            found = d->themes().back().get();
    return found;
}

// A feature's style with the fill of its theme category, made once per pair.
class ThemeStyles {
public:
    ThemeStyles(const Theme& theme, Scene& scene) : theme_(theme), scene_(scene) {}

    const Style* styleFor(const Feature& f, const Style& own) {
        const int category = theme_.categoryOf(f);
        if (category < 0)
            return &own;
        auto [it, added] = made_.try_emplace({&own, category}, nullptr);
        if (added) {
            const Style& c = theme_.categories()[size_t(category)].style;
            auto s = std::make_unique<Style>(own);
            s->regionColor = c.regionColor;
            s->regionPattern = c.regionPattern;
            s->regionBackColor = c.regionBackColor;
            s->regionTransparent = c.regionTransparent;
            s->lineColor = c.regionColor;
            s->symbolColor = c.regionColor;
            it->second = s.get();
            scene_.themeStyles.push_back(std::move(s));
        }
        return it->second;
    }

private:
    const Theme& theme_;
    Scene& scene_;
    std::map<std::pair<const Style*, int>, const Style*> made_;
};

void collectLayer(const Map& map, const Layer& layer, const Viewport& viewport, const Rect& area,
                  Scene& scene, SceneLayer& out) {
    const Theme* theme = themeOf(map, layer);
    std::optional<ThemeStyles> themed;
    if (theme)
        themed.emplace(*theme, scene);
    const LabelSettings& labels = layer.labels();
    const bool labelled =
        layer.autoLabel() && labels.visible && labels.dataset != nullptr && !labels.field.isEmpty();
    const double k = viewport.pixelsPerUnit();
    if (labelled)
        out.labelStyle = labels.style;

    out.columns = layer.columns();
    layer.visitInBox(area, [&](qint64 fid, const FeatureStore::Ref& r) {
        const Style& own = *r.style();
        // A text too small to read is neither drawn nor an obstacle to labels: the
        // numbers of a whole plan seen from afar stay out of the scene.
        if (r.kind() == FeatureKind::Text && !FeaturePainter::textShows(own, k))
            return;
        SceneItem item;
        item.style = &own;
        if (themed || labelled) {
            const Feature f = layer.featureAt(fid, r);
            if (themed)
                item.style = themed->styleFor(f, own);
            if (labelled && r.bounds().width() * k >= kMinLabelledPixels) {
                item.label = labels.dataset->value(f, labels.field).toString();
                const auto offset = labels.offsets.find(fid);
                const Point c = f.centre();
                item.labelAt = offset == labels.offsets.end()
                                   ? c
                                   : Point{c.x + offset->second.x, c.y + offset->second.y};
            }
        }
        if (const FeaturePtr* held = r.held())
            item.data = *held;
        else
            item.row = std::uint32_t(r.row());
        out.items.push_back(std::move(item));
    });
}

} // namespace

Scene buildScene(const Map& map, const Viewport& viewport, const Rect& area,
                 const RasterLookup& rasters) {
    Scene scene;
    scene.viewport = viewport;
    scene.area = area;
    for (const Layer* layer : map.layers()) {
        if (!layer->visible())
            continue;
        SceneLayer& out = scene.layers.emplace_back();
        if (layer->isRaster()) {
            if (rasters)
                out.raster = rasters(layer->rasterSource());
            continue;
        }
        collectLayer(map, *layer, viewport, area, scene, out);
    }
    return scene;
}

std::vector<QRectF> paintScene(QPainter& painter, const Scene& scene,
                               const std::atomic<bool>* cancel) {
    FeaturePainter fp(painter, scene.viewport);
    LabelPlacer placer(scene.viewport.size);
    fp.setPlacer(&placer);
    const Viewport& v = scene.viewport;
    size_t n = 0;
    const auto cancelled = [&] {
        return (++n & 511) == 0 && cancel && cancel->load(std::memory_order_relaxed);
    };
    for (const SceneLayer& layer : scene.layers) {
        if (!layer.raster.isNull()) {
            const Rect& e = layer.raster.extent;
            const QRectF target(v.toScreen({e.xmin, e.ymax}), v.toScreen({e.xmax, e.ymin}));
            fp.flush();
            painter.drawImage(target, layer.raster.image);
        }
        for (const SceneItem& item : layer.items) {
            if (cancelled())
                return {};
            fp.draw(item.data ? item.data->view() : layer.columns->view(item.row), *item.style);
        }
    }
    // Labels last, over every layer, once all the plan's texts are known.
    for (const SceneLayer& layer : scene.layers)
        for (const SceneItem& item : layer.items) {
            if (cancelled())
                return {};
            if (!item.label.isEmpty())
                fp.drawLabel(item.labelAt, item.label, layer.labelStyle);
        }
    return placer.placed();
}

} // namespace carto
