// Requests that wait for their time. The answer of each is settled when it comes in; the worker
// hands it over when it is due, unless the caller cancels, closes or the sensor is pulled out
// first.
#pragma once

#include "simulator/driver/driver.h"

namespace zyr::simulator {

void InitializeTransfers();

// The worker ends nothing and reports nothing unless it runs.
NTSTATUS StartWorker();
// Returns when it has ended. Nothing may wait any more.
void StopWorker();
void WakeWorker();
// The worker tells the system that the sensors on the bus are others now. `bus` is the root
// enumerator's device below this driver's own, or null.
void ReportChangeSoon();
void SetReportedBus(PDEVICE_OBJECT bus);

// With the lock held, and the worker to be woken afterwards. The caller must return STATUS_PENDING
// and leave the request alone from then on. False: it has been cancelled already, and the caller
// still has to end it, without the lock.
bool AnswerLater(PIRP irp, uint64_t due, NTSTATUS status, ULONG information);

// End all that wait for this device, or by this file, with that status. Take the lock.
void EndTransfersOf(PDEVICE_OBJECT device, NTSTATUS status);
void EndTransfersBy(PFILE_OBJECT file, NTSTATUS status);

}  // namespace zyr::simulator
