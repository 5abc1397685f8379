// The driver's one thread of its own: hands over answers that are due, tells the system of changes,
// frees what is no longer needed.
#pragma once

#include "simulator/driver/driver.h"

namespace zyr::simulator {

void InitializeWorker();
// `bus` is the root enumerator's device below this driver's own.
NTSTATUS StartWorker(PDEVICE_OBJECT bus);
// Returns when it has ended.
void StopWorker();

// Makes it look at everything again.
void WakeWorker();
// The sensors on the bus are others now.
void ReportChangeSoon();

}  // namespace zyr::simulator
