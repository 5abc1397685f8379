// The controls of a page that stands on the screen.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/messages.h"
#include "settings/settings_list.h"

namespace zyr {

// A mask is square.
struct MaskOperation {
  uint32_t size = 3;
  int32_t factor = 50;
};

// Fields go by the numbers of their page. Once the window is gone, operations do nothing, and what
// they give is empty. User-interface thread only.
class PageControls {
 public:
  virtual ~PageControls() = default;

  // A check box 0 or 1; a radio, a choice or a line its index, -1 for none selected; a slider its
  // position. A value that the control does not have: false, and it stays as it is.
  virtual bool SetValue(uint32_t field, int32_t value) = 0;
  virtual int32_t Value(uint32_t field) const = 0;
  // Of a number or a picked text, as the user sees it.
  virtual void SetText(uint32_t field, const std::string& text) = 0;
  virtual std::string Text(uint32_t field) const = 0;
  virtual void SetMask(uint32_t field, const MaskOperation& mask) = 0;
  virtual MaskOperation Mask(uint32_t field) const = 0;
  // Of kLines, ready to be shown, in place of those before; none is selected then.
  virtual void SetLines(uint32_t field, const std::vector<std::string>& lines) = 0;
  virtual SettingsListControl& Table(uint32_t field) = 0;
  // With what belongs to it, and its label.
  virtual void SetEnabled(uint32_t field, bool enabled) = 0;

  // For questions of the page.
  virtual platform::Window window() const = 0;
};

}  // namespace zyr
