#include "simulator/driver/worker.h"

#include "simulator/driver/sensor_device.h"
#include "simulator/driver/transfers.h"

namespace zyr::simulator {
namespace {

constexpr uint64_t kLongestWait = 60'000'000;

struct {
  KEVENT wake;
  PVOID thread;
  PDEVICE_OBJECT bus;
  bool reportChange;
  bool stop;
} state;

// Takes the order to report; false if there is none.
bool MustReport() {
  const Guard guard;
  const bool must = state.reportChange;
  state.reportChange = false;
  return must;
}

bool MustStop() {
  const Guard guard;
  return state.stop;
}

// Perhaps only a part of the time: the caller looks again.
void WaitUntil(uint64_t due) {
  const uint64_t now = Now();
  uint64_t wait = due > now ? due - now : 0;
  if (wait > kLongestWait) wait = kLongestWait;
  LARGE_INTEGER interval;  // of 100 ns; negative is from now on
  interval.QuadPart = -static_cast<int64_t>(wait * 10);
  KeWaitForSingleObject(&state.wake, Executive, KernelMode, FALSE,
                        due == kNever ? nullptr : &interval);
}

VOID NTAPI Work(PVOID) {
  while (!MustStop()) {
    if (MustReport()) IoInvalidateDeviceRelations(state.bus, BusRelations);
    const uint64_t answer = AnswerDue();
    const uint64_t free = DeleteUnneeded(Now());
    WaitUntil(answer < free ? answer : free);
  }
  PsTerminateSystemThread(STATUS_SUCCESS);
}

}  // namespace

void InitializeWorker() { KeInitializeEvent(&state.wake, SynchronizationEvent, FALSE); }

NTSTATUS StartWorker(PDEVICE_OBJECT bus) {
  state.bus = bus;
  state.stop = false;
  state.reportChange = false;
  HANDLE handle = nullptr;
  NTSTATUS status =
      PsCreateSystemThread(&handle, THREAD_ALL_ACCESS, nullptr, nullptr, nullptr, Work, nullptr);
  if (!NT_SUCCESS(status)) return status;
  status = ObReferenceObjectByHandle(handle, THREAD_ALL_ACCESS, nullptr, KernelMode, &state.thread,
                                     nullptr);
  ZwClose(handle);
  return status;
}

void StopWorker() {
  if (state.thread == nullptr) return;
  {
    const Guard guard;
    state.stop = true;
  }
  WakeWorker();
  KeWaitForSingleObject(state.thread, Executive, KernelMode, FALSE, nullptr);
  ObDereferenceObject(state.thread);
  state.thread = nullptr;
}

void WakeWorker() { KeSetEvent(&state.wake, IO_NO_INCREMENT, FALSE); }

void ReportChangeSoon() {
  {
    const Guard guard;
    state.reportChange = true;
  }
  WakeWorker();
}

}  // namespace zyr::simulator
