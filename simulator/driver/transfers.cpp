#include "simulator/driver/transfers.h"

namespace zyr::simulator {
namespace {

constexpr uint64_t kNever = ~uint64_t{0};
constexpr uint64_t kLongestWait = 60'000'000;

// What a waiting request will be told, in the room that a request has for its driver.
struct Settled {
  uint64_t due;
  NTSTATUS status;
  ULONG information;
};
static_assert(sizeof(Settled) <= 4 * sizeof(PVOID));

// Of the worker and of what waits.
struct {
  LIST_ENTRY waiting;
  KEVENT wake;
  PVOID thread;
  PDEVICE_OBJECT reportedBus;
  bool reportChange;
  bool stop;
} state;

Settled* SettledOf(PIRP irp) { return reinterpret_cast<Settled*>(irp->Tail.Overlay.DriverContext); }

PIRP RequestOf(PLIST_ENTRY link) { return CONTAINING_RECORD(link, IRP, Tail.Overlay.ListEntry); }

// The lock is held. A request that is being cancelled belongs to its cancel routine, which finds it
// unlinked already.
bool TakeOut(PIRP irp) {
  RemoveEntryList(&irp->Tail.Overlay.ListEntry);
  InitializeListHead(&irp->Tail.Overlay.ListEntry);
  return IoSetCancelRoutine(irp, nullptr) != nullptr;
}

VOID NTAPI CancelTransfer(PDEVICE_OBJECT, PIRP irp) {
  IoReleaseCancelSpinLock(irp->CancelIrql);
  {
    const Guard guard;
    RemoveEntryList(&irp->Tail.Overlay.ListEntry);
    InitializeListHead(&irp->Tail.Overlay.ListEntry);
  }
  Complete(irp, STATUS_CANCELLED);
}

// Moves the matching ones to `out`.
template <typename Matches>
void TakeOutAll(PLIST_ENTRY out, Matches matches) {
  for (PLIST_ENTRY link = state.waiting.Flink; link != &state.waiting;) {
    const PIRP irp = RequestOf(link);
    link = link->Flink;
    if (matches(irp) && TakeOut(irp)) InsertTailList(out, &irp->Tail.Overlay.ListEntry);
  }
}

template <typename Matches>
void EndAll(NTSTATUS status, Matches matches) {
  LIST_ENTRY out;
  InitializeListHead(&out);
  {
    const Guard guard;
    TakeOutAll(&out, matches);
  }
  while (!IsListEmpty(&out)) Complete(RequestOf(RemoveHeadList(&out)), status);
}

// Answers what is due and returns when to look again.
uint64_t AnswerDue() {
  LIST_ENTRY out;
  InitializeListHead(&out);
  uint64_t next = kNever;
  {
    const Guard guard;
    const uint64_t now = Now();
    TakeOutAll(&out, [now](PIRP irp) { return SettledOf(irp)->due <= now; });
    for (PLIST_ENTRY link = state.waiting.Flink; link != &state.waiting; link = link->Flink) {
      const uint64_t due = SettledOf(RequestOf(link))->due;
      if (due < next) next = due;
    }
  }
  while (!IsListEmpty(&out)) {
    const PIRP irp = RequestOf(RemoveHeadList(&out));
    const Settled settled = *SettledOf(irp);
    Complete(irp, settled.status, settled.information);
  }
  return next;
}

void ReportChange() {
  PDEVICE_OBJECT bus = nullptr;
  {
    const Guard guard;
    if (state.reportChange) bus = state.reportedBus;
    state.reportChange = false;
  }
  if (bus != nullptr) IoInvalidateDeviceRelations(bus, BusRelations);
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

bool MustStop() {
  const Guard guard;
  return state.stop;
}

VOID NTAPI Work(PVOID) {
  while (!MustStop()) {
    ReportChange();
    WaitUntil(AnswerDue());
  }
  PsTerminateSystemThread(STATUS_SUCCESS);
}

}  // namespace

void InitializeTransfers() {
  InitializeListHead(&state.waiting);
  KeInitializeEvent(&state.wake, SynchronizationEvent, FALSE);
}

NTSTATUS StartWorker() {
  state.stop = false;
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

void SetReportedBus(PDEVICE_OBJECT bus) {
  const Guard guard;
  state.reportedBus = bus;
}

void ReportChangeSoon() {
  {
    const Guard guard;
    state.reportChange = true;
  }
  WakeWorker();
}

bool AnswerLater(PIRP irp, uint64_t due, NTSTATUS status, ULONG information) {
  IoMarkIrpPending(irp);
  *SettledOf(irp) = {due, status, information};
  InsertTailList(&state.waiting, &irp->Tail.Overlay.ListEntry);
  IoSetCancelRoutine(irp, CancelTransfer);
  // Cancelled before there was a routine to tell?
  return !irp->Cancel || !TakeOut(irp);
}

void EndTransfersOf(PDEVICE_OBJECT device, NTSTATUS status) {
  EndAll(status,
         [device](PIRP irp) { return IoGetCurrentIrpStackLocation(irp)->DeviceObject == device; });
}

void EndTransfersBy(PFILE_OBJECT file, NTSTATUS status) {
  EndAll(status,
         [file](PIRP irp) { return IoGetCurrentIrpStackLocation(irp)->FileObject == file; });
}

}  // namespace zyr::simulator
