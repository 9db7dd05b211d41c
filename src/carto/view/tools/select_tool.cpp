#include "select_tool.h"

#include "base/erreur.h"
#include "carto/model/edit_commands.h"
#include "carto/view/map_view.h"
#include "carto/view/tools/tool_support.h"

#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

namespace carto {

namespace {

bool hasVertices(const Feature& f) {
    return f.kind() == FeatureKind::Region || f.kind() == FeatureKind::Line;
}

// A region's ring stored closed repeats its first point last; that copy is not a vertex
// of its own.
size_t vertexCount(const Feature& f, PartView part) {
    const bool closed =
        f.kind() == FeatureKind::Region && part.size() > 1 && part.front() == part.back();
    return closed ? part.size() - 1 : part.size();
}

// Where along the segment ab the point nearest to p lies, from 0 to 1.
double along(QPointF p, QPointF a, QPointF b) {
    const QPointF d = b - a;
    const double length2 = QPointF::dotProduct(d, d);
    if (length2 == 0)
        return 0;
    return std::clamp(QPointF::dotProduct(p - a, d) / length2, 0.0, 1.0);
}

void useHandleStyle(QPainter& painter) {
    QPen pen(Qt::black, 1);
    pen.setCosmetic(true);
    painter.setPen(pen);
    painter.setBrush(Qt::white);
}

// Counter-clockwise from the bottom left, so the corner opposite i is (i + 2) % 4.
std::array<Point, 4> corners(const Rect& r) {
    return {Point{r.xmin, r.ymin}, Point{r.xmax, r.ymin}, Point{r.xmax, r.ymax},
            Point{r.xmin, r.ymax}};
}

} // namespace

void SelectTool::cancel() {
    const bool drawing = state_ != State::Idle;
    state_ = State::Idle;
    grab_ = Grab::Nothing;
    layer_ = nullptr;
    if (drawing)
        view_.updateOverlay();
}

void SelectTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    cancel();
    start_ = mouse_ = e.position();
    shift_ = hasShift(e);
    selectedOnPress_ = false;
    state_ = State::Pressed;

    const int mode = view_.editingMode();
    if (mode == editmode::Vertices || mode == editmode::AddVertices) {
        std::optional<VertexAt> v = vertexAt(start_);
        if (!v && mode == editmode::AddVertices)
            v = insertVertexAt(start_);
        if (v) {
            grab_ = Grab::Vertex;
            layer_ = v->layer;
            fid_ = v->fid;
            part_ = v->part;
            index_ = v->index;
            return;
        }
    }
    if (mode == editmode::Features && grabCorner(start_)) {
        grab_ = Grab::Corner;
        return;
    }
    if (Layer* layer = selectedEditableAt(start_)) {
        grab_ = Grab::Features;
        layer_ = layer;
        return;
    }
    if (shift_)
        return; // Shift toggles on release
    const std::optional<Hit> hit = featureAt(view_, start_);
    if (!hit)
        return; // the selection is cleared on release, unless the press becomes a drag
    selectIn(view_.map(), *hit->layer, Features(hit->layer, {hit->feature.fid()}), false);
    selectedOnPress_ = true;
    if (hit->layer->editable()) {
        grab_ = Grab::Features;
        layer_ = hit->layer;
    }
}

void SelectTool::mouseMove(QMouseEvent& e) {
    if (state_ == State::Idle)
        return;
    mouse_ = e.position();
    if (state_ == State::Pressed) {
        if (!isDrag(start_, mouse_))
            return;
        switch (grab_) {
        case Grab::Nothing:
            return;
        case Grab::Features:
            state_ = State::Moving;
            break;
        case Grab::Corner:
            state_ = State::Resizing;
            break;
        case Grab::Vertex:
            state_ = State::MovingVertex;
            break;
        }
    }
    view_.updateOverlay();
}

void SelectTool::mouseRelease(QMouseEvent& e) {
    if (state_ == State::Idle || !isLeft(e))
        return;
    mouse_ = e.position();
    if (state_ == State::Pressed) {
        // A click: it selects, unless it grabbed a handle or already selected on the press.
        const bool selects = !selectedOnPress_ && grab_ != Grab::Corner && grab_ != Grab::Vertex;
        cancel();
        if (selects)
            click(start_, shift_);
        return;
    }
    std::unique_ptr<EditCommand> command;
    try {
        command = editCommand();
    } catch (const veldra::Erreur& err) {
        cancel();
        view_.reportFailure(err);
        return;
    }
    cancel();
    if (command)
        runEdit(view_, std::move(command));
}

std::unique_ptr<EditCommand> SelectTool::editCommand() const {
    if (!layer_)
        return nullptr;
    if (state_ == State::Moving) {
        std::vector<qint64> fids;
        for (const qint64 fid : layer_->selection().fids())
            if (layer_->hasFeature(fid))
                fids.push_back(fid);
        const Point a = view_.toMap(start_), b = view_.toMap(mouse_);
        return fids.empty() ? nullptr
                            : std::make_unique<MoveFeatures>(*layer_, fids, b.x - a.x, b.y - a.y);
    }
    const std::vector<Feature> shapes = edited();
    if (shapes.empty())
        return nullptr;
    return std::make_unique<ReshapeFeature>(*layer_, shapes.front().fid(), shapes.front().parts());
}

bool SelectTool::keyPress(QKeyEvent& e) {
    if (e.key() != Qt::Key_Escape || state_ == State::Idle)
        return false;
    cancel();
    return true;
}

void SelectTool::click(QPointF screen, bool shift) {
    Map& map = view_.map();
    const std::optional<Hit> hit = featureAt(view_, screen);
    if (!hit) {
        if (!shift)
            clearSelections(map);
        return;
    }
    const qint64 fid = hit->feature.fid();
    if (!shift)
        selectIn(map, *hit->layer, Features(hit->layer, {fid}), false);
    else if (hit->layer->selection().contains(fid))
        hit->layer->selectRemove(fid);
    else
        hit->layer->selectAdd(fid);
}

std::vector<Layer*> SelectTool::editableLayers() const {
    std::vector<Layer*> layers = view_.layersTopDown();
    std::erase_if(layers, [](const Layer* l) {
        return !l->visible() || !l->editable() || l->isRaster() || l->selection().isEmpty();
    });
    return layers;
}

std::optional<SelectTool::VertexAt> SelectTool::vertexAt(QPointF screen) const {
    std::optional<VertexAt> best;
    double nearest = kPickPixels;
    for (Layer* layer : editableLayers())
        for (const Feature& f : layer->selection()) {
            if (!hasVertices(f))
                continue;
            const Shape& parts = f.parts();
            for (size_t p = 0; p < parts.size(); ++p)
                for (size_t i = 0; i < vertexCount(f, parts[p]); ++i) {
                    const double d = QLineF(view_.toScreen(parts[p][i]), screen).length();
                    if (d <= nearest) {
                        nearest = d;
                        best = VertexAt{layer, f.fid(), int(p), int(i)};
                    }
                }
        }
    return best;
}

std::optional<SelectTool::VertexAt> SelectTool::insertVertexAt(QPointF screen) {
    struct Edge {
        Layer* layer;
        Feature feature;
        size_t part;
        size_t insertAt; // the index the new vertex takes
        Point at;
    };
    std::optional<Edge> best;
    double nearest = kPickPixels;
    for (Layer* layer : editableLayers())
        for (const Feature& f : layer->selection()) {
            if (!hasVertices(f))
                continue;
            const Shape& parts = f.parts();
            for (size_t p = 0; p < parts.size(); ++p) {
                const PartView part = parts[p];
                const size_t n = part.size();
                // An open ring of a region also has the edge from its last point to its first.
                const bool wraps =
                    f.kind() == FeatureKind::Region && n > 2 && !(part.front() == part.back());
                for (size_t i = 0; i + 1 < n + (wraps ? 1 : 0); ++i) {
                    const Point a = part[i], b = part[(i + 1) % n];
                    const QPointF sa = view_.toScreen(a), sb = view_.toScreen(b);
                    const double t = along(screen, sa, sb);
                    const double d = QLineF(sa + t * (sb - sa), screen).length();
                    if (d <= nearest) {
                        nearest = d;
                        best = Edge{layer, f, p, i + 1,
                                    Point{a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)}};
                    }
                }
            }
        }
    if (!best)
        return std::nullopt;
    Parts parts = best->feature.parts();
    Part& part = parts[best->part];
    part.insert(part.begin() + std::ptrdiff_t(best->insertAt), best->at);
    std::unique_ptr<EditCommand> command;
    try {
        command =
            std::make_unique<ReshapeFeature>(*best->layer, best->feature.fid(), std::move(parts));
    } catch (const veldra::Erreur& e) {
        view_.reportFailure(e);
        return std::nullopt;
    }
    if (!runEdit(view_, std::move(command)))
        return std::nullopt;
    return VertexAt{best->layer, best->feature.fid(), int(best->part), int(best->insertAt)};
}

std::optional<Feature> SelectTool::singleEditableSelection(Layer** owner) const {
    std::optional<Feature> single;
    Layer* found = nullptr;
    for (Layer* layer : view_.map().layers()) {
        const Features& s = layer->selection();
        if (s.isEmpty())
            continue;
        if (single || s.count() > 1)
            return std::nullopt;
        single = s.at(0);
        found = layer;
    }
    if (!single || !found->visible() || !found->editable() || !hasVertices(*single))
        return std::nullopt;
    if (owner)
        *owner = found;
    return single;
}

bool SelectTool::grabCorner(QPointF screen) {
    Layer* layer = nullptr;
    const std::optional<Feature> f = singleEditableSelection(&layer);
    if (!f)
        return false;
    const std::array<Point, 4> c = corners(f->bounds());
    for (size_t i = 0; i < c.size(); ++i)
        if (QLineF(view_.toScreen(c[i]), screen).length() <= kPickPixels) {
            layer_ = layer;
            fid_ = f->fid();
            corner_ = c[i];
            fixed_ = c[(i + 2) % 4];
            return true;
        }
    return false;
}

Layer* SelectTool::selectedEditableAt(QPointF screen) const {
    for (Layer* layer : editableLayers())
        if (const std::optional<Feature> f = featureAt(view_, *layer, screen);
            f && layer->selection().contains(f->fid()))
            return layer;
    return nullptr;
}

std::optional<Feature> SelectTool::resized(Point to) const {
    Feature f = layer_->feature(fid_);
    const double w = corner_.x - fixed_.x, h = corner_.y - fixed_.y;
    const double sx = w != 0 ? (to.x - fixed_.x) / w : 1;
    const double sy = h != 0 ? (to.y - fixed_.y) / h : 1;
    // A side squeezed under a pixel would collapse the feature.
    const double pixel = view_.viewport().unitsPerPixel();
    if ((w != 0 && std::abs(sx * w) < pixel) || (h != 0 && std::abs(sy * h) < pixel))
        return std::nullopt;
    Parts parts = f.parts();
    for (Part& part : parts)
        for (Point& p : part)
            p = {fixed_.x + (p.x - fixed_.x) * sx, fixed_.y + (p.y - fixed_.y) * sy};
    try {
        f.setParts(std::move(parts));
    } catch (const veldra::Erreur&) {
        return std::nullopt;
    }
    return f;
}

std::vector<Feature> SelectTool::edited() const {
    std::vector<Feature> out;
    if (!layer_)
        return out;
    const Point a = view_.toMap(start_), b = view_.toMap(mouse_);
    const double dx = b.x - a.x, dy = b.y - a.y;
    switch (state_) {
    case State::Moving:
        for (const qint64 fid : layer_->selection().fids())
            if (layer_->hasFeature(fid)) {
                Feature f = layer_->feature(fid);
                f.offset(dx, dy);
                out.push_back(std::move(f));
            }
        break;
    case State::Resizing:
        if (!layer_->hasFeature(fid_))
            break;
        if (std::optional<Feature> f = resized({corner_.x + dx, corner_.y + dy}))
            out.push_back(std::move(*f));
        break;
    case State::MovingVertex:
        if (layer_->hasFeature(fid_)) {
            Feature f = layer_->feature(fid_);
            const Point v = f.point(part_, index_);
            f.setPoint(part_, index_, {v.x + dx, v.y + dy});
            out.push_back(std::move(f));
        }
        break;
    case State::Idle:
    case State::Pressed:
        break;
    }
    return out;
}

void SelectTool::paintOverlay(QPainter& painter) const {
    const Viewport& v = view_.viewport();
    const int mode = view_.editingMode();
    painter.save();

    if (state_ == State::Moving) {
        // Outlines shifted by the mouse: cheap however many features move.
        painter.setPen(rubberBandPen());
        painter.setBrush(Qt::NoBrush);
        for (const Feature& f : layer_->selection())
            paintOutline(painter, v, f.data(), mouse_ - start_);
    } else if (state_ == State::Resizing || state_ == State::MovingVertex) {
        painter.setPen(rubberBandPen());
        painter.setBrush(Qt::NoBrush);
        for (const Feature& f : edited())
            paintOutline(painter, v, f.data());
    }

    useHandleStyle(painter);
    if (mode == editmode::Vertices || mode == editmode::AddVertices) {
        for (const Layer* layer : editableLayers())
            for (const Feature& f : layer->selection()) {
                if (!hasVertices(f))
                    continue;
                const bool dragged =
                    state_ == State::MovingVertex && layer == layer_ && f.fid() == fid_;
                const std::vector<Feature> moved = dragged ? edited() : std::vector<Feature>{};
                const Feature& shown = moved.empty() ? f : moved.front();
                for (const PartView part : shown.parts())
                    for (size_t i = 0; i < vertexCount(shown, part); ++i)
                        paintHandle(painter, v.toScreen(part[i]));
            }
    } else if (mode == editmode::Features && state_ != State::Moving) {
        if (const std::optional<Feature> f = singleEditableSelection()) {
            const std::vector<Feature> now = state_ == State::Resizing ? edited() : std::vector{*f};
            if (!now.empty())
                for (const Point& c : corners(now.front().bounds()))
                    paintHandle(painter, v.toScreen(c));
        }
    }
    painter.restore();
}

} // namespace carto
