// Requests that wait for their time. The answer of each is settled when it comes in; the worker
// hands it over when it is due, unless the caller cancels, closes or the sensor is pulled out
// first.
#pragma once

#include "simulator/driver/driver.h"

namespace zyr::simulator {

void InitializeTransfers();

// With the lock held, and the worker to be woken afterwards. The caller must return STATUS_PENDING
// and leave the request alone from then on. False: it has been cancelled already, and the caller
// still has to end it, without the lock.
bool AnswerLater(PIRP irp, uint64_t due, NTSTATUS status, ULONG information);

// The worker's share: answers what is due, and tells when to look again.
uint64_t AnswerDue();

// End those that wait for this device, those by this file, or all, with that status.
void EndTransfersOf(PDEVICE_OBJECT device, NTSTATUS status);
void EndTransfersBy(PFILE_OBJECT file, NTSTATUS status);
void EndAllTransfers(NTSTATUS status);

}  // namespace zyr::simulator
