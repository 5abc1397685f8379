// Who may write the settings of the source.
#pragma once

namespace zyr {

// False if that cannot be told to the registry. It holds until the session ends.
bool AllowWritingSettings(bool allow);

}  // namespace zyr
