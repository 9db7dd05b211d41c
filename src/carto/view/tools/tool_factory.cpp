#include "tool_factory.h"

#include "carto/view/tools/area_select_tools.h"
#include "carto/view/tools/custom_tools.h"
#include "carto/view/tools/draw_tools.h"
#include "carto/view/tools/label_tool.h"
#include "carto/view/tools/pan_tool.h"
#include "carto/view/tools/select_tool.h"
#include "carto/view/tools/zoom_tools.h"

namespace carto {

std::unique_ptr<Tool> makeStandardTool(MapView& view, int number) {
    switch (number) {
    case tool::Pan:
        return std::make_unique<PanTool>(view);
    case tool::ZoomIn:
        return std::make_unique<ZoomInTool>(view);
    case tool::ZoomOut:
        return std::make_unique<ZoomOutTool>(view);
    case tool::Select:
        return std::make_unique<SelectTool>(view);
    case tool::RadiusSelect:
        return std::make_unique<RadiusSelectTool>(view);
    case tool::RectangleSelect:
        return std::make_unique<RectangleSelectTool>(view);
    case tool::PolygonSelect:
        return std::make_unique<PolygonSelectTool>(view);
    case tool::Label:
        return std::make_unique<LabelTool>(view);
    case tool::DrawLine:
        return std::make_unique<LineDrawTool>(view);
    case tool::DrawPolygon:
        return std::make_unique<PolygonDrawTool>(view);
    default:
        return nullptr;
    }
}

std::unique_ptr<Tool> makeCustomTool(MapView& view, int number, CustomToolType type, int cursor) {
    switch (type) {
    case CustomToolType::Point:
        return std::make_unique<CustomPointTool>(view, number, cursor);
    case CustomToolType::Circle:
        return std::make_unique<CustomCircleTool>(view, number, cursor);
    case CustomToolType::Rectangle:
        return std::make_unique<CustomRectangleTool>(view, number, cursor);
    case CustomToolType::BrokenLine:
        return std::make_unique<CustomBrokenLineTool>(view, number, cursor);
    }
    return nullptr;
}

QCursor toolCursor(int code) {
    switch (code) {
    case 2:
        return Qt::CrossCursor;
    case 22:
        return Qt::PointingHandCursor;
    default:
        return Qt::ArrowCursor;
    }
}

} // namespace carto
