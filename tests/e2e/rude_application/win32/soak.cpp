#include "tests/e2e/rude_application/win32/soak.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/e2e/rude_application/win32/application.h"

namespace zyr {
namespace {

constexpr unsigned kGroups = 20;
constexpr unsigned kLeastGroup = 4;
constexpr unsigned kSecondsForEach = 15;
constexpr unsigned kSecondsForAll = 60;
constexpr unsigned kPatience = 30'000;  // milliseconds

// The counts are made by hand: Wine answers every question for them with zero.

long Handles() {
  constexpr uintptr_t kHighest = 0x8000;
  long count = 0;
  for (uintptr_t number = 4; number < kHighest; number += 4) {
    DWORD flags = 0;
    count += GetHandleInformation(reinterpret_cast<HANDLE>(number), &flags) != 0;
  }
  return count;
}

// Memory that no file stands behind.
long PrivateKilobytes() {
  SIZE_T bytes = 0;
  MEMORY_BASIC_INFORMATION region;
  const char* at = nullptr;
  while (VirtualQuery(at, &region, sizeof region) == sizeof region) {
    if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    at = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
  }
  return static_cast<long>(bytes / 1024);
}

BOOL CALLBACK CountWindow(HWND window, LPARAM count) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  *reinterpret_cast<long*>(count) += process == GetCurrentProcessId();
  return TRUE;
}

long Windows() {
  long count = 0;
  EnumWindows(CountWindow, reinterpret_cast<LPARAM>(&count));
  HWND window = nullptr;
  while ((window = FindWindowExA(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr) {
    CountWindow(window, reinterpret_cast<LPARAM>(&count));
  }
  return count;
}

// Every number that an object can have is that of its place in a table and of how often the place
// was used; the table is open to its process.
struct GdiPlace {
  UINT64 object;
  DWORD owner;
  WORD timesUsed;
  BYTE type;  // 0: free
  BYTE flags;
  UINT64 user;
};
constexpr size_t kGdiPlaces = 16'384;
constexpr size_t kGdiTableInProcessBlock = sizeof(void*) == 8 ? 0xF8 : 0x94;

const void* ProcessBlock() {
  const auto get = reinterpret_cast<const void*(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "RtlGetCurrentPeb")));
  return get();
}

long GdiObjects() {
  const auto* block = reinterpret_cast<const char*>(ProcessBlock());
  const auto* places = *reinterpret_cast<const GdiPlace* const*>(block + kGdiTableInProcessBlock);
  return std::count_if(places, places + kGdiPlaces,
                       [](const GdiPlace& place) { return place.type != 0; });
}

struct Figure {
  const char* name;
  long most;  // that it may grow by
  long value;
};

// What may come and go by the way: Wine's thread for sounds with its window, a handle of a thread
// that is just ending, what Wine keeps of a font or a theme, the holes of a heap. An image of these
// sensors is half a megabyte and more, and dozens of objects are made for it, so that what is lost
// with each capture shows after ten.
std::vector<Figure> Figures() {
  return {{"handles", 4, Handles()},
          {"threads", 1, static_cast<long>(Threads())},
          {"windows", 1, Windows()},
          {"GDI objects", 4, GdiObjects()},
          {"private KB", 3072, PrivateKilobytes()},
          {"files", 0, static_cast<long>(ImagesOnDisk())}};
}

// Every image that is there, by native transfer.
unsigned TakeImages(Application& application) {
  unsigned taken = 0;
  TW_PENDINGXFERS pending{};
  do {
    HGLOBAL image = nullptr;
    Require(application.Call(DG_IMAGE, DAT_IMAGENATIVEXFER, MSG_GET, &image) == TWRC_XFERDONE &&
                image != nullptr,
            "a transfer");
    GlobalFree(image);
    ++taken;
    Require(application.Call(DG_CONTROL, DAT_PENDINGXFERS, MSG_ENDXFER, &pending) == TWRC_SUCCESS,
            "MSG_ENDXFER");
  } while (pending.Count != 0);
  return taken;
}

// Returns how many images came; there may be one more than was asked for.
unsigned TakeGroup(Application& application, unsigned count) {
  application.SetDeadline(kSecondsForAll + kSecondsForEach * count);
  application.OpenByManager();
  Require(application.Enable(application.window()) == TWRC_SUCCESS, "MSG_ENABLEDS");
  application.Arm(kButtonSeries);
  Require(application.PumpUntil([&] { return ImagesOnDisk() >= count; }, kPatience * count),
          "a series");
  application.Press(kButtonCancel);
  application.Finish();
  const unsigned made = ImagesOnDisk();
  application.Press(kButtonReturn);
  Require(
      application.PumpUntil([&] { return application.TakeEvent() == MSG_XFERREADY; }, kPatience),
      "MSG_XFERREADY");
  const unsigned taken = TakeImages(application);
  Require(taken == made, std::to_string(made) + " images made, returned " + std::to_string(taken));
  Require(application.Disable() == TWRC_SUCCESS, "MSG_DISABLEDS");
  application.Close();
  application.Pump(200);
  return taken;
}

int Compare(const std::vector<Figure>& start, const std::vector<Figure>& end) {
  int grown = 0;
  for (size_t i = 0; i < start.size(); ++i) {
    const long by = end[i].value - start[i].value;
    const bool isTooMuch = by > start[i].most;
    std::printf("%s%s: %ld at the start, %ld at the end, %ld more may be\n",
                isTooMuch ? "FAILED: " : "", start[i].name, start[i].value, end[i].value,
                start[i].most);
    if (isTooMuch) grown = 1;
  }
  return grown;
}

}  // namespace

int Soak(unsigned count) {
  const unsigned group = std::max(count / kGroups, kLeastGroup);
  Application application;
  const ULONGLONG began = GetTickCount64();
  unsigned taken = TakeGroup(application, group);  // the first one warms everything up
  const std::vector<Figure> start = Figures();
  while (taken < count) taken += TakeGroup(application, std::min(group, count - taken));
  const std::vector<Figure> end = Figures();
  std::printf("%u captures in %u s\n", taken,
              static_cast<unsigned>((GetTickCount64() - began) / 1000));
  return Compare(start, end);
}

}  // namespace zyr
