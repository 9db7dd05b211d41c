#pragma once
// Tools 1003 and 1004. Zoom in: a click centres the view on the point and halves the width
// shown; a dragged rectangle becomes the view. Zoom out: a click centres the view on the
// point and doubles the width shown.

#include "carto/view/tools/tool.h"

#include <QPointF>

namespace carto {

class ZoomInTool : public Tool {
public:
    using Tool::Tool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseRelease(QMouseEvent& e) override;
    void paintOverlay(QPainter& painter) const override;
    QCursor cursor() const override;

private:
    enum class State { Idle, Pressed, Framing };

    State state_ = State::Idle;
    QPointF start_;
    QPointF mouse_;
};

class ZoomOutTool : public Tool {
public:
    using Tool::Tool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseRelease(QMouseEvent& e) override;
    QCursor cursor() const override;

private:
    enum class State { Idle, Pressed };

    State state_ = State::Idle;
};

} // namespace carto
