#pragma once
// Tools 1012 and 1014: draw a line or a polygon into the view's insertion layer. Each
// click adds a point; a double-click finishes; Escape drops the drawing.
//
// The view's featureDrawing notification tells the host what happens: Started at the
// first click, with the feature so far, so that a handler may still change the map's
// default style (clearing enableDefault there drops the drawing); Finished with the
// feature built in the default style as it is at that moment (clearing enableDefault
// there keeps it out of the layer); Cancelled when Escape drops it or when it has too few
// distinct points (a line needs 2, a polygon 3). Without an insertion layer nothing is
// added.

#include "carto/model/feature.h"
#include "carto/view/tools/tool.h"
#include "carto/view/tools/tool_support.h"

#include <QPointF>
#include <optional>

namespace carto {

class DrawTool : public Tool {
public:
    DrawTool(MapView& view, int number, FeatureKind kind);

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseDoubleClick(QMouseEvent& e) override;
    bool keyPress(QKeyEvent& e) override;
    void paintOverlay(QPainter& painter) const override;
    QCursor cursor() const override { return Qt::CrossCursor; }

private:
    enum class State { Idle, Drawing };

    bool isRegion() const { return kind_ == FeatureKind::Region; }
    // The drawing as it stands, valid or not, for the notifications.
    Feature sketch() const;
    // Drops the drawing and tells the host.
    void abandon(bool shift, bool control);
    void finish(bool shift, bool control);

    const int number_;
    const FeatureKind kind_;
    State state_ = State::Idle;
    ClickedPoints points_;
    std::optional<QPointF> mouse_;
};

class LineDrawTool : public DrawTool {
public:
    explicit LineDrawTool(MapView& view);
};

class PolygonDrawTool : public DrawTool {
public:
    explicit PolygonDrawTool(MapView& view);
};

} // namespace carto
