// The viewer's mouse tools.
#pragma once

#include <cstdint>

#include "imaging/viewer/image_viewer_view.h"

namespace zyr {

// Numbers that are no tool have the arrow.
ViewerCursor CursorOfTool(uint32_t tool);

bool IsPanTool(uint32_t tool);
bool IsSpotTool(uint32_t tool);
bool IsRectangleTool(uint32_t tool);

// The panning that stands for a tool while Ctrl is held; the tool itself if it has none.
uint32_t TemporaryPanOf(uint32_t tool);
// And back; other tools stay.
uint32_t ToolBehind(uint32_t temporaryPan);

}  // namespace zyr
