// A data source manager such as imaging programs ship beside themselves, as small as it can be. It
// knows the one source that is installed, forwards everything to it, and writes what it hears of it
// into TWAINDSM.txt beside itself. It is strict in one thing: a notification of the source goes to
// the application only with a message WM_NULL of the thread, which is what a source has to post. An
// application that sleeps in GetMessage would get it no earlier.
#include <windows.h>

#include <cstdio>
#include <string>

#include "twain/twain_types.h"

namespace zyr {
namespace {

constexpr TW_UINT32 kApplicationId = 5;
constexpr TW_UINT32 kSourceId = 9;

HMODULE ownModule = nullptr;
HMODULE sourceModule = nullptr;
DsEntryProc sourceEntry = nullptr;
TW_UINT16 pending = MSG_NULL;

void Note(const char* text) {
  char path[MAX_PATH] = "";
  GetModuleFileNameA(ownModule, path, sizeof path);
  std::string name = path;
  name.replace(name.size() - 4, 4, ".txt");
  if (std::FILE* file = std::fopen(name.c_str(), "a")) {
    std::fprintf(file, "%s\n", text);
    std::fclose(file);
  }
}

std::string SourcePath() {
  char windows[MAX_PATH] = "";
  GetWindowsDirectoryA(windows, sizeof windows);
  return std::string(windows) + (sizeof(void*) == 8 ? "\\twain_64" : "\\twain_32") +
         "\\ZYR\\ZYRTWAIN.ds";
}

bool LoadSource() {
  if (sourceEntry != nullptr) return true;
  sourceModule = LoadLibraryA(SourcePath().c_str());
  if (sourceModule == nullptr) return false;
  sourceEntry = reinterpret_cast<DsEntryProc>(
      reinterpret_cast<void*>(GetProcAddress(sourceModule, "DS_Entry")));
  return sourceEntry != nullptr;
}

void UnloadSource() {
  sourceEntry = nullptr;
  if (sourceModule != nullptr) FreeLibrary(sourceModule);
  sourceModule = nullptr;
}

// A program that has a function of this name wants to hear of a notification while the source still
// waits for the manager's answer.
void TellAtOnce(TW_UINT16 message) {
  const auto tell = reinterpret_cast<void (*)(TW_UINT16)>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(nullptr), "OnNotification")));
  if (tell != nullptr) tell(message);
}

// Without an origin, as the first question of a manager may come.
TW_UINT16 Identify(TW_IDENTITY* identity) {
  if (!LoadSource()) return TWRC_FAILURE;
  const TW_UINT16 result = sourceEntry(nullptr, DG_CONTROL, DAT_IDENTITY, MSG_GET, identity);
  identity->Id = kSourceId;
  return result;
}

TW_UINT16 Identity(TW_IDENTITY* origin, TW_UINT16 message, TW_IDENTITY* identity) {
  switch (message) {
    case MSG_GETFIRST:
    case MSG_GETDEFAULT:
      return Identify(identity);
    case MSG_GETNEXT:
      return TWRC_ENDOFLIST;
    case MSG_OPENDS:
      return LoadSource() ? sourceEntry(origin, DG_CONTROL, DAT_IDENTITY, message, identity)
                          : TWRC_FAILURE;
    case MSG_CLOSEDS: {
      if (sourceEntry == nullptr) return TWRC_FAILURE;
      const TW_UINT16 result = sourceEntry(origin, DG_CONTROL, DAT_IDENTITY, message, identity);
      UnloadSource();
      return result;
    }
    default:
      return TWRC_FAILURE;
  }
}

TW_UINT16 Notification(TW_IDENTITY* origin, TW_IDENTITY* destination, TW_UINT16 message) {
  const bool addressed = origin != nullptr && origin->Id == kSourceId && destination != nullptr &&
                         destination->Id == kApplicationId;
  Note(message == MSG_XFERREADY    ? "XFERREADY"
       : message == MSG_CLOSEDSREQ ? "CLOSEDSREQ"
                                   : "other notification");
  if (!addressed) Note("WRONG IDENTITIES");
  pending = message;
  TellAtOnce(message);
  return TWRC_SUCCESS;
}

TW_UINT16 ProcessEvent(TW_IDENTITY* origin, TW_EVENT* event) {
  if (sourceEntry == nullptr) return TWRC_NOTDSEVENT;
  const MSG* message = static_cast<const MSG*>(event->pEvent);
  if (pending != MSG_NULL && message->message == WM_NULL && message->hwnd == nullptr) {
    Note("delivered with WM_NULL");
    event->TWMessage = pending;
    pending = MSG_NULL;
    return TWRC_DSEVENT;
  }
  return sourceEntry(origin, DG_CONTROL, DAT_EVENT, MSG_PROCESSEVENT, event);
}

}  // namespace

TW_UINT16 Enter(TW_IDENTITY* origin, TW_IDENTITY* destination, TW_UINT32 dataGroup,
                TW_UINT16 dataArgumentType, TW_UINT16 message, TW_MEMREF data) {
  switch (dataArgumentType) {
    case DAT_PARENT:
      origin->Id = kApplicationId;
      return TWRC_SUCCESS;
    case DAT_NULL:
      return Notification(origin, destination, message);
    case DAT_IDENTITY:
      return Identity(origin, message, static_cast<TW_IDENTITY*>(data));
    case DAT_EVENT:
      return ProcessEvent(origin, static_cast<TW_EVENT*>(data));
    default:
      return sourceEntry != nullptr
                 ? sourceEntry(origin, dataGroup, dataArgumentType, message, data)
                 : TWRC_FAILURE;
  }
}

void Remember(void* module) { ownModule = static_cast<HMODULE>(module); }

}  // namespace zyr

extern "C" zyr::TW_UINT16 ZYR_PASCAL DSM_Entry(zyr::pTW_IDENTITY origin,
                                               zyr::pTW_IDENTITY destination,
                                               zyr::TW_UINT32 dataGroup,
                                               zyr::TW_UINT16 dataArgumentType,
                                               zyr::TW_UINT16 message, zyr::TW_MEMREF data) {
  return zyr::Enter(origin, destination, dataGroup, dataArgumentType, message, data);
}

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) zyr::Remember(module);
  return TRUE;
}
