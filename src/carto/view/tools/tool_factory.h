#pragma once
// Makes the tools of a map view.

#include "carto/view/map_view.h"

#include <memory>

namespace carto {

// A standard tool by number (1001 ... 1014); nullptr for a number that is not one.
std::unique_ptr<Tool> makeStandardTool(MapView& view, int number);
// A custom tool: it reports its use through toolUsed (point, circle, rectangle) or
// polyToolUsed (broken line). Cursor codes 2 and 22 are a cross and a pointing hand.
std::unique_ptr<Tool> makeCustomTool(MapView& view, int number, CustomToolType type, int cursor);

// The cursor of a tool cursor code.
QCursor toolCursor(int code);

} // namespace carto
