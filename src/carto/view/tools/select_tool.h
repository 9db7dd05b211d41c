#pragma once
// Tool 1007: selects with a click and edits what is selected by dragging.
//
// A click selects the topmost feature under the mouse in the topmost selectable layer
// that has one, replacing every selection; with Shift it toggles that feature in its
// layer's selection and leaves the other layers alone. A click on nothing clears every
// selection (with Shift it keeps them). Pressing on an unselected feature selects it at
// once, so it can be dragged in the same gesture.
//
// Only layers marked editable are edited. Dragging a selected feature moves all the
// selected features of its layer. The editing mode adds: Features (1), corner handles on
// the one selected region or line, dragged to scale it about the opposite corner;
// Vertices (2), the vertices of the selected regions and lines, each dragged alone;
// AddVertices (64), a press on an edge inserts a vertex there, which the same drag moves
// (vertices stay draggable). A press and release closer than kDragPixels moves nothing.
// Each drag is written when the button is released, as one transaction.

#include "carto/model/feature.h"
#include "carto/view/tools/tool.h"

#include <QPointF>
#include <memory>
#include <optional>
#include <vector>

namespace carto {

class EditCommand;
class Layer;

class SelectTool : public Tool {
public:
    using Tool::Tool;

    void cancel() override;
    void mousePress(QMouseEvent& e) override;
    void mouseMove(QMouseEvent& e) override;
    void mouseRelease(QMouseEvent& e) override;
    bool keyPress(QKeyEvent& e) override;
    void paintOverlay(QPainter& painter) const override;

private:
    // Pressed: the button is down but the mouse has not gone far enough to drag.
    enum class State { Idle, Pressed, Moving, Resizing, MovingVertex };
    // What a drag from the press would change.
    enum class Grab { Nothing, Features, Corner, Vertex };

    struct VertexAt {
        Layer* layer;
        qint64 fid;
        int part;
        int index;
    };

    std::optional<VertexAt> vertexAt(QPointF screen) const;
    std::optional<VertexAt> insertVertexAt(QPointF screen);
    bool grabCorner(QPointF screen);
    Layer* selectedEditableAt(QPointF screen) const;
    std::optional<Feature> singleEditableSelection(Layer** layer = nullptr) const;
    std::vector<Layer*> editableLayers() const;
    void click(QPointF screen, bool shift);
    // The features as they would be written if the drag ended where the mouse is.
    std::vector<Feature> edited() const;
    // The command that writes the drag; nullptr when it changes nothing.
    std::unique_ptr<EditCommand> editCommand() const;
    std::optional<Feature> resized(Point to) const;

    State state_ = State::Idle;
    Grab grab_ = Grab::Nothing;
    QPointF start_;
    QPointF mouse_;
    bool shift_ = false;
    bool selectedOnPress_ = false;
    Layer* layer_ = nullptr; // the layer a drag edits; owned by the map
    qint64 fid_ = -1;        // the feature resized or whose vertex moves
    int part_ = 0;
    int index_ = 0;
    Point fixed_;  // the corner that stays put while resizing
    Point corner_; // the corner dragged
};

} // namespace carto
