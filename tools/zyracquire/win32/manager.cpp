#include "tools/zyracquire/win32/manager.h"

#include <windows.h>

#include <cstdio>
#include <cstring>

#include "tools/zyracquire/report.h"

namespace zyr {
namespace {

TW_IDENTITY Ourselves() {
  TW_IDENTITY identity{};
  identity.Version.MajorNum = 1;
  identity.Version.MinorNum = 1;
  identity.Version.Language = TWLG_USA;
  identity.Version.Country = TWCY_USA;
  std::strcpy(identity.Version.Info, "v1.1");
  identity.ProtocolMajor = 1;
  identity.ProtocolMinor = 9;
  identity.SupportedGroups = DG_CONTROL | DG_IMAGE;
  std::strcpy(identity.Manufacturer, "ZYR");
  std::strcpy(identity.ProductFamily, "Tools");
  std::strcpy(identity.ProductName, "zyracquire");
  return identity;
}

double Seconds(std::chrono::steady_clock::duration span) {
  return std::chrono::duration<double>(span).count();
}

TW_UINT16 EventMessage(const void* data) {
  TW_EVENT event;
  std::memcpy(&event, data, sizeof event);
  return event.TWMessage;
}

}  // namespace

Manager::Manager(bool trace, Watchdog* watchdog)
    : trace_(trace), watchdog_(watchdog), application_(Ourselves()) {}

Manager::~Manager() {
  if (library_ != nullptr) FreeLibrary(static_cast<HMODULE>(library_));
}

bool Manager::Load(const std::string& path, std::string* error) {
  HMODULE library = nullptr;
  if (!path.empty()) {
    library = LoadLibraryA(path.c_str());
    *error = "The data source manager " + path + " cannot be loaded.";
  } else {
    library = LoadLibraryA("TWAINDSM.dll");
    if (library == nullptr) library = LoadLibraryA("TWAIN_32.DLL");
    *error = "There is no data source manager, neither TWAINDSM.dll nor TWAIN_32.DLL.";
  }
  if (library == nullptr) return false;
  library_ = library;
  entry_ =
      reinterpret_cast<DsmEntryProc>(reinterpret_cast<void*>(GetProcAddress(library, "DSM_Entry")));
  if (entry_ == nullptr) {
    *error = "What was loaded is no data source manager: it has no DSM_Entry.";
    return false;
  }
  char name[MAX_PATH] = "";
  GetModuleFileNameA(library, name, sizeof name);
  if (trace_) std::printf("The data source manager is %s\n", name);
  return true;
}

TW_UINT16 Manager::Call(TW_IDENTITY* source, TW_UINT32 dataGroup, TW_UINT16 dataArgumentType,
                        TW_UINT16 message, void* data) {
  const Clock::time_point began = Clock::now();
  const TW_UINT16 result =
      entry_(&application_, source, dataGroup, dataArgumentType, message, data);
  const Clock::time_point ended = Clock::now();
  watchdog_->SignOfLife();
  if (result == TWRC_FAILURE) {
    TW_STATUS status{};
    entry_(&application_, source, DG_CONTROL, DAT_STATUS, MSG_GET, &status);
    conditionCode_ = status.ConditionCode;
  }
  if (trace_) Trace(data, dataGroup, dataArgumentType, message, result, began, ended);
  return result;
}

void Manager::Trace(const void* data, TW_UINT32 dataGroup, TW_UINT16 dataArgumentType,
                    TW_UINT16 message, TW_UINT16 result, Clock::time_point began,
                    Clock::time_point ended) {
  // Every message of every window comes by here; only what the source made of it is of interest.
  const bool isEvent = message == MSG_PROCESSEVENT;
  if (isEvent && EventMessage(data) == MSG_NULL) return;
  TripletName triplet{dataGroup, dataArgumentType, message, 0};
  if (dataArgumentType == DAT_CAPABILITY && data != nullptr) {
    std::memcpy(&triplet.capability, data, sizeof triplet.capability);
  }
  std::string line = DescribeCall(triplet, result, Seconds(began - start_), Seconds(ended - began));
  if (result == TWRC_FAILURE) line += "  " + DescribeConditionCode(conditionCode_);
  if (isEvent) line += "  gives " + DescribeMessage(EventMessage(data));
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

}  // namespace zyr
