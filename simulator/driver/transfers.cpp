#include "simulator/driver/transfers.h"

namespace zyr::simulator {
namespace {

// What a waiting request will be told, in the room that a request has for its driver.
struct Settled {
  uint64_t due;
  NTSTATUS status;
  ULONG information;
};
static_assert(sizeof(Settled) <= 4 * sizeof(PVOID));

LIST_ENTRY waiting;

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
  for (PLIST_ENTRY link = waiting.Flink; link != &waiting;) {
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

}  // namespace

void InitializeTransfers() { InitializeListHead(&waiting); }

bool AnswerLater(PIRP irp, uint64_t due, NTSTATUS status, ULONG information) {
  IoMarkIrpPending(irp);
  *SettledOf(irp) = {due, status, information};
  InsertTailList(&waiting, &irp->Tail.Overlay.ListEntry);
  IoSetCancelRoutine(irp, CancelTransfer);
  // Cancelled before there was a routine to tell?
  return !irp->Cancel || !TakeOut(irp);
}

uint64_t AnswerDue() {
  LIST_ENTRY out;
  InitializeListHead(&out);
  uint64_t next = kNever;
  {
    const Guard guard;
    const uint64_t now = Now();
    TakeOutAll(&out, [now](PIRP irp) { return SettledOf(irp)->due <= now; });
    for (PLIST_ENTRY link = waiting.Flink; link != &waiting; link = link->Flink) {
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

void EndTransfersOf(PDEVICE_OBJECT device, NTSTATUS status) {
  EndAll(status,
         [device](PIRP irp) { return IoGetCurrentIrpStackLocation(irp)->DeviceObject == device; });
}

void EndTransfersBy(PFILE_OBJECT file, NTSTATUS status) {
  EndAll(status,
         [file](PIRP irp) { return IoGetCurrentIrpStackLocation(irp)->FileObject == file; });
}

void EndAllTransfers(NTSTATUS status) {
  EndAll(status, [](PIRP) { return true; });
}

}  // namespace zyr::simulator
