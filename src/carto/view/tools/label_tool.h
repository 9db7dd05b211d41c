#pragma once
// Tool 1011: drags the label of a feature to another place. A press near a label, or else
// on a feature of a layer whose labels are shown, takes that feature's label; on release
// its offset from the feature's centre (map units) is kept in the layer's label settings
// and the map is redrawn. A press and release closer than kDragPixels changes nothing.

#include "carto/geometry/point.h"
#include "carto/model/style.h"
#include "carto/view/tools/tool.h"

#include <QPointF>
#include <QString>

namespace carto {

class Layer;

class LabelTool : public Tool {
public:
    using Tool::Tool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseRelease(QMouseEvent& e) override;
    bool keyPress(QKeyEvent& e) override;
    void paintOverlay(QPainter& painter) const override;

private:
    enum class State { Idle, Pressed, Dragging };

    // Where the label would go if released at the mouse.
    Point labelAt() const;

    State state_ = State::Idle;
    QPointF start_;
    QPointF mouse_;
    Layer* layer_ = nullptr; // owned by the map
    qint64 fid_ = -1;
    Point centre_; // of the feature
    Point offset_; // of its label when the drag began
    QString text_;
    Style style_; // of the layer's labels
};

} // namespace carto
