#include "label_tool.h"

#include "carto/model/dataset.h"
#include "carto/render/feature_painter.h"
#include "carto/view/map_view.h"
#include "carto/view/tools/tool_support.h"

#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QPainter>
#include <optional>

namespace carto {

namespace {

// A press this near a label's anchor takes it, even off its feature.
constexpr double kLabelPickPixels = 10;

bool labelled(const Layer& layer) {
    return layer.visible() && (layer.autoLabel() || layer.labels().visible) &&
           layer.labels().dataset != nullptr && !layer.labels().field.isEmpty();
}

Point offsetOf(const Layer& layer, qint64 fid) {
    const auto it = layer.labels().offsets.find(fid);
    return it == layer.labels().offsets.end() ? Point{} : it->second;
}

struct Grabbed {
    Layer* layer;
    Feature feature;
};

// The label nearest to the press within kLabelPickPixels, else the topmost feature under
// it, in the topmost labelled layer that has one.
std::optional<Grabbed> grab(const MapView& view, QPointF screen) {
    std::vector<Layer*> layers = view.layersTopDown();
    std::erase_if(layers, [](const Layer* l) { return !labelled(*l) || l->isRaster(); });
    const double reach = kLabelPickPixels * view.viewport().unitsPerPixel();
    const Point p = view.toMap(screen);
    for (Layer* layer : layers) {
        std::optional<Grabbed> best;
        double nearest = kLabelPickPixels;
        const auto consider = [&](const Feature& f) {
            const Point c = f.centre();
            const Point o = offsetOf(*layer, f.fid());
            const double d = QLineF(view.toScreen({c.x + o.x, c.y + o.y}), screen).length();
            if (d <= nearest) {
                nearest = d;
                best = Grabbed{layer, f};
            }
        };
        // Labels in place sit on their feature's centre; moved ones are few and looked at
        // one by one.
        const Rect around{p.x - reach, p.y - reach, p.x + reach, p.y + reach};
        for (const Feature& f : layer->searchWithinRectangle(around, searchmode::CentreWithin))
            consider(f);
        for (const auto& [fid, offset] : layer->labels().offsets)
            if (layer->hasFeature(fid))
                consider(layer->feature(fid));
        if (best)
            return best;
    }
    for (Layer* layer : layers)
        if (std::optional<Feature> f = featureAt(view, *layer, screen))
            return Grabbed{layer, std::move(*f)};
    return std::nullopt;
}

} // namespace

void LabelTool::cancel() {
    if (state_ == State::Dragging)
        view_.updateOverlay();
    state_ = State::Idle;
    layer_ = nullptr;
}

void LabelTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    cancel();
    const std::optional<Grabbed> g = grab(view_, e.position());
    if (!g)
        return;
    state_ = State::Pressed;
    start_ = mouse_ = e.position();
    layer_ = g->layer;
    fid_ = g->feature.fid();
    centre_ = g->feature.centre();
    offset_ = offsetOf(*layer_, fid_);
    text_ = layer_->labels().dataset->value(g->feature, layer_->labels().field).toString();
    style_ = layer_->labels().style;
}

void LabelTool::mouseMove(QMouseEvent& e) {
    if (state_ == State::Idle)
        return;
    mouse_ = e.position();
    if (state_ == State::Pressed && isDrag(start_, mouse_))
        state_ = State::Dragging;
    if (state_ == State::Dragging)
        view_.updateOverlay();
}

void LabelTool::mouseRelease(QMouseEvent& e) {
    if (state_ == State::Idle || !isLeft(e))
        return;
    mouse_ = e.position();
    const bool moved = state_ == State::Dragging || isDrag(start_, mouse_);
    Layer* const layer = layer_;
    const Point at = labelAt();
    const qint64 fid = fid_;
    cancel();
    if (!moved || !layer->hasFeature(fid))
        return;
    layer->setLabelOffset(fid, {at.x - centre_.x, at.y - centre_.y});
}

bool LabelTool::keyPress(QKeyEvent& e) {
    if (e.key() != Qt::Key_Escape || state_ == State::Idle)
        return false;
    cancel();
    return true;
}

Point LabelTool::labelAt() const {
    const Point a = view_.toMap(start_), b = view_.toMap(mouse_);
    return {centre_.x + offset_.x + b.x - a.x, centre_.y + offset_.y + b.y - a.y};
}

void LabelTool::paintOverlay(QPainter& painter) const {
    if (state_ != State::Dragging)
        return;
    const Viewport& v = view_.viewport();
    const Point at = labelAt();
    painter.save();
    painter.setPen(rubberBandPen());
    painter.drawLine(v.toScreen(centre_), v.toScreen(at));
    FeaturePainter(painter, v).drawLabel(at, text_, style_);
    painter.restore();
}

} // namespace carto
