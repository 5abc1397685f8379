// The bus itself: a device that the root enumerator finds, and the control device of zyrsim.
#pragma once

#include "simulator/driver/driver.h"

namespace zyr::simulator {

NTSTATUS NTAPI AddBus(PDRIVER_OBJECT driver, PDEVICE_OBJECT physical);

NTSTATUS BusOpen(PDEVICE_OBJECT device, PIRP irp);
NTSTATUS BusClose(PDEVICE_OBJECT device, PIRP irp);
NTSTATUS BusControl(PDEVICE_OBJECT device, PIRP irp);
NTSTATUS BusPnp(PDEVICE_OBJECT device, PIRP irp);
NTSTATUS BusPower(PDEVICE_OBJECT device, PIRP irp);
NTSTATUS BusSystemControl(PDEVICE_OBJECT device, PIRP irp);

}  // namespace zyr::simulator
