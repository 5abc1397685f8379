#include "simulator/driver/driver.h"

#include "simulator/driver/bus_device.h"
#include "simulator/driver/sensor_device.h"
#include "simulator/driver/transfers.h"
#include "simulator/driver/worker.h"

namespace zyr::simulator {
namespace {

KSPIN_LOCK lock;

// Every request comes here; the device's kind decides who serves it.
using Handler = NTSTATUS (*)(PDEVICE_OBJECT device, PIRP irp);

NTSTATUS Dispatch(PDEVICE_OBJECT device, PIRP irp, Handler bus, Handler sensor) {
  const auto* extension = static_cast<const DeviceExtension*>(device->DeviceExtension);
  return extension->kind == kBusDevice ? bus(device, irp) : sensor(device, irp);
}

NTSTATUS NTAPI DispatchCreate(PDEVICE_OBJECT device, PIRP irp) {
  return Dispatch(device, irp, BusOpen, SensorOpen);
}
NTSTATUS NTAPI DispatchClose(PDEVICE_OBJECT device, PIRP irp) {
  return Dispatch(device, irp, BusClose, SensorClose);
}
NTSTATUS NTAPI DispatchControl(PDEVICE_OBJECT device, PIRP irp) {
  return Dispatch(device, irp, BusControl, SensorControl);
}
NTSTATUS NTAPI DispatchPnp(PDEVICE_OBJECT device, PIRP irp) {
  return Dispatch(device, irp, BusPnp, SensorPnp);
}
NTSTATUS NTAPI DispatchPower(PDEVICE_OBJECT device, PIRP irp) {
  return Dispatch(device, irp, BusPower, SensorPower);
}
NTSTATUS NTAPI DispatchSystemControl(PDEVICE_OBJECT device, PIRP irp) {
  return Dispatch(device, irp, BusSystemControl, SensorSystemControl);
}

VOID NTAPI Unload(PDRIVER_OBJECT) {}

}  // namespace

void InitializeLock() { KeInitializeSpinLock(&lock); }

Guard::Guard() { KeAcquireSpinLock(&lock, &before_); }
Guard::~Guard() { KeReleaseSpinLock(&lock, before_); }

uint64_t Now() {
  LARGE_INTEGER frequency;
  const auto counter = static_cast<uint64_t>(KeQueryPerformanceCounter(&frequency).QuadPart);
  const auto perSecond = static_cast<uint64_t>(frequency.QuadPart);
  // In two parts: the product of the whole would not fit after some weeks.
  return counter / perSecond * 1'000'000 + counter % perSecond * 1'000'000 / perSecond;
}

NTSTATUS Complete(PIRP irp, NTSTATUS status, ULONG_PTR information) {
  irp->IoStatus.Status = status;
  irp->IoStatus.Information = information;
  IoCompleteRequest(irp, IO_NO_INCREMENT);
  return status;
}

NTSTATUS StatusOfError(uint32_t error) {
  switch (error) {
    case kDriverOk:
      return STATUS_SUCCESS;
    case kDriverInvalidFunction:
      return STATUS_INVALID_DEVICE_REQUEST;
    case kDriverInvalidParameter:
      return STATUS_INVALID_PARAMETER;
    case kDriverTimedOut:
      return STATUS_IO_TIMEOUT;
    case kDriverNotConnected:
      return STATUS_DEVICE_NOT_CONNECTED;
    default:
      // Statuses of this range stand for the system error number in their lower half.
      return static_cast<NTSTATUS>(0xC0010000 | (error & 0xFFFF));
  }
}

bool BuffersOf(PIRP irp, ControlBuffers* buffers) {
  const auto& parameters = IoGetCurrentIrpStackLocation(irp)->Parameters.DeviceIoControl;
  buffers->code = parameters.IoControlCode;
  buffers->input = static_cast<uint8_t*>(irp->AssociatedIrp.SystemBuffer);
  buffers->inputSize = parameters.InputBufferLength;
  buffers->output = buffers->input;
  buffers->outputSize = parameters.OutputBufferLength;
  switch (buffers->code & 3) {
    case METHOD_BUFFERED:
      return true;
    case METHOD_IN_DIRECT:
    case METHOD_OUT_DIRECT:
      // Without an output buffer there is no list of its pages either.
      buffers->output = nullptr;
      if (buffers->outputSize == 0) return true;
      buffers->output =
          static_cast<uint8_t*>(MmGetSystemAddressForMdlSafe(irp->MdlAddress, NormalPagePriority));
      return buffers->output != nullptr;
    default:
      return false;
  }
}

}  // namespace zyr::simulator

extern "C" NTSTATUS NTAPI DriverEntry(PDRIVER_OBJECT driver, PUNICODE_STRING) {
  using namespace zyr::simulator;
  InitializeLock();
  InitializeTransfers();
  InitializeSensors();
  InitializeWorker();
  driver->MajorFunction[IRP_MJ_CREATE] = DispatchCreate;
  driver->MajorFunction[IRP_MJ_CLOSE] = DispatchClose;
  driver->MajorFunction[IRP_MJ_DEVICE_CONTROL] = DispatchControl;
  driver->MajorFunction[IRP_MJ_PNP] = DispatchPnp;
  driver->MajorFunction[IRP_MJ_POWER] = DispatchPower;
  driver->MajorFunction[IRP_MJ_SYSTEM_CONTROL] = DispatchSystemControl;
  driver->DriverExtension->AddDevice = AddBus;
  driver->DriverUnload = Unload;
  return STATUS_SUCCESS;
}
