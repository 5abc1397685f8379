#include "platform/thread.h"

#include <memory>
#include <utility>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

using Procedure = std::function<uint32_t()>;

DWORD Run(std::unique_ptr<Procedure> procedure) { return (*procedure)(); }

// The thread has a reference of the module that its code is in. The system lets go of it when no
// code of the module is left to run: it may be the last one.
DWORD WINAPI RunProcedure(void* parameter) {
  const DWORD result = Run(std::unique_ptr<Procedure>(static_cast<Procedure*>(parameter)));
  FreeLibraryAndExitThread(OwnModule(), result);
}

// Runs the handlers of messages that other threads have sent to this one's windows; posted messages
// stay where they are.
void HandleSentMessages() {
  MSG message;
  PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
}

class SystemThread : public Thread {
 public:
  explicit SystemThread(HANDLE handle) : handle_(handle) {}
  ~SystemThread() override { CloseHandle(handle_); }
  SystemThread(const SystemThread&) = delete;
  SystemThread& operator=(const SystemThread&) = delete;

  // The class belongs to processes, so the first call is refused for a thread's handle and the host
  // program keeps its own: in the real-time class it would starve everything else.
  void MakeTimeCritical() override {
    SetPriorityClass(handle_, REALTIME_PRIORITY_CLASS);
    SetThreadPriority(handle_, THREAD_PRIORITY_TIME_CRITICAL);
  }

  bool Join(uint32_t milliseconds) override {
    const ULONGLONG start = GetTickCount64();
    for (;;) {
      // The wait returns for new messages only, and somebody may have seen these.
      HandleSentMessages();
      const ULONGLONG passed = GetTickCount64() - start;
      const DWORD left = passed < milliseconds ? static_cast<DWORD>(milliseconds - passed) : 0;
      const DWORD what = MsgWaitForMultipleObjects(1, &handle_, FALSE, left, QS_SENDMESSAGE);
      if (what != WAIT_OBJECT_0 + 1) return what == WAIT_OBJECT_0;
      if (left == 0) return WaitForSingleObject(handle_, 0) == WAIT_OBJECT_0;
    }
  }

 private:
  HANDLE handle_;
};

}  // namespace

std::unique_ptr<Thread> StartThread(Procedure procedure, uint32_t* error) {
  auto parameter = std::make_unique<Procedure>(std::move(procedure));
  const HMODULE module = ReferenceOwnModule();
  const HANDLE handle = CreateThread(nullptr, 0, RunProcedure, parameter.get(), 0, nullptr);
  if (handle == nullptr) {
    if (error != nullptr) *error = GetLastError();
    FreeLibrary(module);
    return nullptr;
  }
  parameter.release();
  return std::make_unique<SystemThread>(handle);
}

}  // namespace zyr::platform
