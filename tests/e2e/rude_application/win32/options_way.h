// The source's user opens the options and what lies behind them, and there something happens.
#pragma once

#include <functional>
#include <vector>

#include "tests/e2e/rude_application/win32/application.h"

namespace zyr {

// Steps from the source's idle dialog until that stands.
using OptionsWay = std::vector<Application::Step>;
OptionsWay WayToOptions(Application& application);
OptionsWay WayToPassword(Application& application);
OptionsWay WayToDirectories(Application& application);

// Goes that way, does it from inside the message loop there, and returns when all loops have ended.
void DuringOptions(Application& application, OptionsWay way, const std::function<void()>& deed);
void RequireNoOptions(const Application& application);

}  // namespace zyr
