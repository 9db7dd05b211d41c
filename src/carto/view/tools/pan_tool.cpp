#include "pan_tool.h"

#include "carto/view/map_view.h"
#include "carto/view/tools/tool_support.h"

#include <QMouseEvent>

namespace carto {

void PanTool::cancel() {
    state_ = State::Idle;
}

void PanTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    state_ = State::Dragging;
    start_ = e.position();
    startView_ = view_.viewport();
}

void PanTool::mouseMove(QMouseEvent& e) {
    if (state_ == State::Dragging)
        follow(e.position());
}

void PanTool::mouseRelease(QMouseEvent& e) {
    if (state_ != State::Dragging || !isLeft(e))
        return;
    follow(e.position());
    state_ = State::Idle;
}

QCursor PanTool::cursor() const {
    return Qt::OpenHandCursor;
}

void PanTool::follow(QPointF mouse) {
    // Measured in the view as it was at the press, so the point grabbed stays under the
    // mouse however many moves come in.
    const Point grabbed = startView_.toMap(start_);
    const Point now = startView_.toMap(mouse);
    const Point c = startView_.centre;
    const Point centre{c.x + grabbed.x - now.x, c.y + grabbed.y - now.y};
    if (!(centre == view_.centre()))
        view_.setCentre(centre);
}

} // namespace carto
