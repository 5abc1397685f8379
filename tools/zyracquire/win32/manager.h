// The data source manager, as an application uses it.
#pragma once

#include <chrono>
#include <string>

#include "tools/zyracquire/manager_port.h"
#include "tools/zyracquire/win32/watchdog.h"

namespace zyr {

// One thread. Every call counts as a sign of life for the watchdog.
class Manager : public ManagerPort {
 public:
  Manager(bool trace, Watchdog* watchdog);
  ~Manager() override;  // unloads it
  Manager(const Manager&) = delete;
  Manager& operator=(const Manager&) = delete;

  // Loads `path`; without one TWAINDSM.dll, beside the program or in the system, else TWAIN_32.DLL.
  // False if there is none; `*error` says what was looked for.
  bool Load(const std::string& path, std::string* error);

  TW_UINT16 Call(TW_IDENTITY* source, TW_UINT32 dataGroup, TW_UINT16 dataArgumentType,
                 TW_UINT16 message, void* data) override;
  TW_UINT16 conditionCode() const override { return conditionCode_; }

 private:
  using Clock = std::chrono::steady_clock;

  void Trace(const void* data, TW_UINT32 dataGroup, TW_UINT16 dataArgumentType, TW_UINT16 message,
             TW_UINT16 result, Clock::time_point began, Clock::time_point ended);

  const bool trace_;
  Watchdog* const watchdog_;
  const Clock::time_point start_ = Clock::now();
  void* library_ = nullptr;
  DsmEntryProc entry_ = nullptr;
  TW_IDENTITY application_{};
  TW_UINT16 conditionCode_ = TWCC_SUCCESS;
};

}  // namespace zyr
