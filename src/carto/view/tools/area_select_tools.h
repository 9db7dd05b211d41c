#pragma once
// Tools 1008, 1009 and 1010: select the features whose centre lies within a shape drawn
// on the map: a circle dragged from its centre, a rectangle dragged between two corners,
// or a polygon clicked vertex by vertex and closed by a double-click (Escape drops it).
// The hits of the topmost selectable layer that has any replace every selection; with
// Shift they are added to that layer's selection. A shape that catches nothing clears
// the selections (with Shift it keeps them).

#include "carto/view/tools/tool.h"
#include "carto/view/tools/tool_support.h"

#include <QPointF>
#include <optional>

namespace carto {

// A shape dragged with the left button from a press to a release; Escape drops it.
class DragSelectTool : public Tool {
public:
    using Tool::Tool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseRelease(QMouseEvent& e) override;
    bool keyPress(QKeyEvent& e) override;
    void paintOverlay(QPainter& painter) const override;
    QCursor cursor() const override { return Qt::CrossCursor; }

protected:
    // Selects with the shape dragged from `from` to `to` (screen pixels).
    virtual void select(QPointF from, QPointF to, bool add) = 0;
    virtual void paintShape(QPainter& painter, QPointF from, QPointF to) const = 0;

private:
    enum class State { Idle, Dragging };

    State state_ = State::Idle;
    QPointF start_;
    QPointF mouse_;
};

// A circle from its centre.
class RadiusSelectTool : public DragSelectTool {
public:
    using DragSelectTool::DragSelectTool;

private:
    void select(QPointF from, QPointF to, bool add) override;
    void paintShape(QPainter& painter, QPointF from, QPointF to) const override;
};

// A rectangle between two corners.
class RectangleSelectTool : public DragSelectTool {
public:
    using DragSelectTool::DragSelectTool;

private:
    void select(QPointF from, QPointF to, bool add) override;
    void paintShape(QPainter& painter, QPointF from, QPointF to) const override;
};

class PolygonSelectTool : public Tool {
public:
    using Tool::Tool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseDoubleClick(QMouseEvent& e) override;
    bool keyPress(QKeyEvent& e) override;
    void paintOverlay(QPainter& painter) const override;
    QCursor cursor() const override { return Qt::CrossCursor; }

private:
    enum class State { Idle, Collecting };

    State state_ = State::Idle;
    ClickedPoints points_;
    std::optional<QPointF> mouse_;
};

} // namespace carto
