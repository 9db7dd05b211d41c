#pragma once
// Tool 1001: dragging moves the map with the mouse. The view follows every move; the
// cached drawing is shifted meanwhile, so nothing is read while dragging.

#include "carto/render/viewport.h"
#include "carto/view/tools/tool.h"

#include <QPointF>

namespace carto {

class PanTool : public Tool {
public:
    using Tool::Tool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseRelease(QMouseEvent& e) override;
    QCursor cursor() const override;

private:
    enum class State { Idle, Dragging };
    void follow(QPointF mouse);

    State state_ = State::Idle;
    QPointF start_;
    Viewport startView_; // where the view looked when the drag began
};

} // namespace carto
