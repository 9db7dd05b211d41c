#include "draw_tools.h"

#include "base/erreur.h"
#include "carto/model/edit_commands.h"
#include "carto/view/map_view.h"
#include "carto/view/tools/tool_support.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace carto {

DrawTool::DrawTool(MapView& view, int number, FeatureKind kind)
    : Tool(view), number_(number), kind_(kind) {}

LineDrawTool::LineDrawTool(MapView& view) : DrawTool(view, tool::DrawLine, FeatureKind::Line) {}

PolygonDrawTool::PolygonDrawTool(MapView& view)
    : DrawTool(view, tool::DrawPolygon, FeatureKind::Region) {}

void DrawTool::cancel() {
    if (state_ != State::Idle)
        view_.updateOverlay();
    state_ = State::Idle;
    points_.clear();
    mouse_.reset();
}

Feature DrawTool::sketch() const {
    auto data = MutableFeaturePtr::make();
    data->kind = kind_;
    data->parts = Parts{points_.points()};
    data->style = StylePtr::make(view_.map().defaultStyle);
    refreshDerived(*data);
    return Feature(nullptr, -1, std::move(data));
}

void DrawTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    mouse_ = e.position();
    if (!points_.add(view_, e.position()))
        return;
    view_.updateOverlay();
    if (state_ == State::Drawing)
        return;
    state_ = State::Drawing;
    Feature feature = sketch();
    bool enableDefault = true;
    emit view_.featureDrawing(number_, phase::Started, feature, hasShift(e), hasControl(e),
                              enableDefault);
    if (!enableDefault)
        cancel();
}

void DrawTool::mouseMove(QMouseEvent& e) {
    if (state_ != State::Drawing)
        return;
    mouse_ = e.position();
    view_.updateOverlay();
}

void DrawTool::mouseDoubleClick(QMouseEvent& e) {
    if (state_ != State::Drawing || !isLeft(e))
        return;
    points_.add(view_, e.position()); // nothing when its press already added it
    finish(hasShift(e), hasControl(e));
}

bool DrawTool::keyPress(QKeyEvent& e) {
    if (e.key() != Qt::Key_Escape || state_ == State::Idle)
        return false;
    abandon(e.modifiers().testFlag(Qt::ShiftModifier), e.modifiers().testFlag(Qt::ControlModifier));
    return true;
}

void DrawTool::abandon(bool shift, bool control) {
    Feature feature = sketch();
    cancel();
    bool enableDefault = true;
    emit view_.featureDrawing(number_, phase::Cancelled, feature, shift, control, enableDefault);
}

void DrawTool::finish(bool shift, bool control) {
    std::vector<Point> points = points_.distinct(isRegion());
    if (points.size() < (isRegion() ? 3u : 2u)) {
        abandon(shift, control);
        return;
    }
    cancel();
    if (isRegion())
        points.push_back(points.front()); // rings are stored closed
    // The default style as the host left it, maybe changed since the drawing started.
    const Style& style = view_.map().defaultStyle;
    std::optional<Feature> feature;
    try {
        feature = isRegion() ? Feature::region({points}, style) : Feature::line({points}, style);
    } catch (const veldra::Erreur& err) {
        view_.reportFailure(err);
        return;
    }
    bool enableDefault = true;
    emit view_.featureDrawing(number_, phase::Finished, *feature, shift, control, enableDefault);
    Layer* layer = view_.insertionLayer();
    if (!enableDefault || !layer)
        return;
    runEdit(view_, std::make_unique<AddFeatures>(*layer, std::vector<Feature>{*feature}));
}

void DrawTool::paintOverlay(QPainter& painter) const {
    if (state_ != State::Drawing)
        return;
    painter.save();
    painter.setPen(rubberBandPen());
    painter.setBrush(isRegion() ? QBrush(QColor(0, 0, 160, 24)) : QBrush(Qt::NoBrush));
    paintRubberLine(painter, view_.viewport(), points_.points(), mouse_, isRegion());
    painter.restore();
}

} // namespace carto
