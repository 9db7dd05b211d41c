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

class RadiusSelectTool : public Tool {
public:
    using Tool::Tool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseRelease(QMouseEvent& e) override;
    bool keyPress(QKeyEvent& e) override;
    void paintOverlay(QPainter& painter) const override;
    QCursor cursor() const override { return Qt::CrossCursor; }

private:
    enum class State { Idle, Dragging };

    State state_ = State::Idle;
    QPointF centre_;
    QPointF mouse_;
};

class RectangleSelectTool : public Tool {
public:
    using Tool::Tool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseRelease(QMouseEvent& e) override;
    bool keyPress(QKeyEvent& e) override;
    void paintOverlay(QPainter& painter) const override;
    QCursor cursor() const override { return Qt::CrossCursor; }

private:
    enum class State { Idle, Dragging };

    State state_ = State::Idle;
    QPointF start_;
    QPointF mouse_;
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
