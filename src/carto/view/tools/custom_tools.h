#pragma once
// Custom tools: they draw nothing into the map and report their use to the host, in map
// units, through the view's notifications.
//   Point (0): a click reports toolUsed(x, y, x, y, 0), the press's point, on release
//   (so that a host opening a dialog from it does not swallow the release).
//   Circle (2): press at the centre, drag, release: toolUsed(cx, cy, x, y, radius).
//   Rectangle (3): press at a corner, drag, release: toolUsed(x1, y1, x2, y2, diagonal).
//   Broken line (4): each click adds a point and reports polyToolUsed with all the points
//   (Started for the first, PointAdded after); a double-click reports Finished, Escape
//   Cancelled.
// A circle or a rectangle released within kDragPixels of its press has no size and is not
// reported.

#include "carto/view/map_view.h"
#include "carto/view/tools/tool.h"
#include "carto/view/tools/tool_support.h"

#include <QPointF>
#include <optional>

namespace carto {

class CustomTool : public Tool {
public:
    CustomTool(MapView& view, int number, int cursor)
        : Tool(view), number_(number), cursor_(cursor) {}
    QCursor cursor() const override;

protected:
    // Reports a use to the host; enableDefault has no default action to enable here.
    void used(Point a, Point b, double distance, const QMouseEvent& e) const;

    const int number_;

private:
    const int cursor_;
};

class CustomPointTool : public CustomTool {
public:
    using CustomTool::CustomTool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseRelease(QMouseEvent& e) override;

private:
    enum class State { Idle, Pressed };

    State state_ = State::Idle;
    QPointF start_;
};

// What the circle and the rectangle share: a drag from a press to a release.
class CustomDragTool : public CustomTool {
public:
    using CustomTool::CustomTool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseRelease(QMouseEvent& e) override;
    bool keyPress(QKeyEvent& e) override;

protected:
    enum class State { Idle, Dragging };

    virtual void report(Point from, Point to, const QMouseEvent& e) const = 0;

    State state_ = State::Idle;
    QPointF start_;
    QPointF mouse_;
};

class CustomCircleTool : public CustomDragTool {
public:
    using CustomDragTool::CustomDragTool;
    void paintOverlay(QPainter& painter) const override;

private:
    void report(Point from, Point to, const QMouseEvent& e) const override;
};

class CustomRectangleTool : public CustomDragTool {
public:
    using CustomDragTool::CustomDragTool;
    void paintOverlay(QPainter& painter) const override;

private:
    void report(Point from, Point to, const QMouseEvent& e) const override;
};

class CustomBrokenLineTool : public CustomTool {
public:
    using CustomTool::CustomTool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseDoubleClick(QMouseEvent& e) override;
    bool keyPress(QKeyEvent& e) override;
    void paintOverlay(QPainter& painter) const override;

private:
    enum class State { Idle, Collecting };

    // Reports the points; a last report (Finished, Cancelled) also ends the line.
    void report(int flags, bool shift, bool control);

    State state_ = State::Idle;
    ClickedPoints points_;
    std::optional<QPointF> mouse_;
};

} // namespace carto
