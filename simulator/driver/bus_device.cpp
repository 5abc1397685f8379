#include "simulator/driver/bus_device.h"

#include "simulator/bus_protocol.h"
#include "simulator/driver/sensor_device.h"
#include "simulator/driver/worker.h"

namespace zyr::simulator {
namespace {

struct Bus {
  DeviceExtension header;
  PDEVICE_OBJECT below;  // where requests go on to
};

Bus* BusOf(PDEVICE_OBJECT device) { return static_cast<Bus*>(device->DeviceExtension); }

UNICODE_STRING Name(const WCHAR* text) {
  UNICODE_STRING name;
  RtlInitUnicodeString(&name, text);
  return name;
}

UNICODE_STRING DeviceName() { return Name(L"\\Device\\ZyrSimBus"); }
UNICODE_STRING LinkName() { return Name(L"\\DosDevices\\ZyrSimBus"); }

NTSTATUS MakeLink() {
  UNICODE_STRING device = DeviceName();
  UNICODE_STRING link = LinkName();
  const NTSTATUS status = IoCreateSymbolicLink(&link, &device);
  if (NT_SUCCESS(status)) return status;
  // A driver that has crashed leaves its link behind.
  IoDeleteSymbolicLink(&link);
  return IoCreateSymbolicLink(&link, &device);
}

NTSTATUS PassOn(PDEVICE_OBJECT device, PIRP irp) {
  IoSkipCurrentIrpStackLocation(irp);
  return IoCallDriver(BusOf(device)->below, irp);
}

NTSTATUS QueryRelations(PDEVICE_OBJECT device, PIRP irp) {
  if (IoGetCurrentIrpStackLocation(irp)->Parameters.QueryDeviceRelations.Type != BusRelations)
    return PassOn(device, irp);
  PDEVICE_RELATIONS relations = ReportSensors();
  if (relations == nullptr) return Complete(irp, STATUS_INSUFFICIENT_RESOURCES);
  irp->IoStatus.Status = STATUS_SUCCESS;
  irp->IoStatus.Information = reinterpret_cast<ULONG_PTR>(relations);
  return PassOn(device, irp);
}

NTSTATUS Remove(PDEVICE_OBJECT device, PIRP irp) {
  StopWorker();
  UnplugAll();
  DeleteAllUnneeded();
  UNICODE_STRING link = LinkName();
  IoDeleteSymbolicLink(&link);
  PDEVICE_OBJECT below = BusOf(device)->below;
  irp->IoStatus.Status = STATUS_SUCCESS;
  const NTSTATUS status = PassOn(device, irp);
  IoDetachDevice(below);
  IoDeleteDevice(device);
  return status;
}

NTSTATUS Control(PDEVICE_OBJECT device, const ControlBuffers& buffers, uint32_t* written) {
  switch (buffers.code) {
    case kBusPlug:
      return PlugSensor(device->DriverObject, buffers);
    case kBusUnplug:
      return UnplugSensor(buffers);
    case kBusLoad:
      return LoadFrames(buffers);
    case kBusExpose:
      return ExposeSensor(buffers);
    case kBusFault:
      return SetSensorFault(buffers);
    case kBusStat:
      return TellStatus(buffers, written);
    default:
      return STATUS_INVALID_DEVICE_REQUEST;
  }
}

}  // namespace

// There is one bus: its list of sensors is the driver's.
NTSTATUS NTAPI AddBus(PDRIVER_OBJECT driver, PDEVICE_OBJECT physical) {
  UNICODE_STRING name = DeviceName();
  PDEVICE_OBJECT device = nullptr;
  NTSTATUS status =
      IoCreateDevice(driver, sizeof(Bus), &name, FILE_DEVICE_UNKNOWN, 0, FALSE, &device);
  if (!NT_SUCCESS(status)) return status;
  Bus* bus = BusOf(device);
  bus->header.kind = kBusDevice;
  bus->below = IoAttachDeviceToDeviceStack(device, physical);
  status = bus->below == nullptr ? STATUS_NO_SUCH_DEVICE : MakeLink();
  if (NT_SUCCESS(status)) status = StartWorker(physical);
  if (!NT_SUCCESS(status)) {
    if (bus->below != nullptr) IoDetachDevice(bus->below);
    IoDeleteDevice(device);
    return status;
  }
  device->Flags = (device->Flags | DO_POWER_PAGABLE) & ~DO_DEVICE_INITIALIZING;
  return STATUS_SUCCESS;
}

NTSTATUS BusOpen(PDEVICE_OBJECT, PIRP irp) { return Complete(irp, STATUS_SUCCESS); }
NTSTATUS BusClose(PDEVICE_OBJECT, PIRP irp) { return Complete(irp, STATUS_SUCCESS); }

NTSTATUS BusControl(PDEVICE_OBJECT device, PIRP irp) {
  ControlBuffers buffers;
  if (!BuffersOf(irp, &buffers)) return Complete(irp, STATUS_INVALID_DEVICE_REQUEST);
  uint32_t written = 0;
  const NTSTATUS status = Control(device, buffers, &written);
  return Complete(irp, status, written);
}

NTSTATUS BusPnp(PDEVICE_OBJECT device, PIRP irp) {
  switch (IoGetCurrentIrpStackLocation(irp)->MinorFunction) {
    case IRP_MN_QUERY_DEVICE_RELATIONS:
      return QueryRelations(device, irp);
    case IRP_MN_REMOVE_DEVICE:
      return Remove(device, irp);
    case IRP_MN_START_DEVICE:
    case IRP_MN_SURPRISE_REMOVAL:
    case IRP_MN_QUERY_REMOVE_DEVICE:
    case IRP_MN_CANCEL_REMOVE_DEVICE:
    case IRP_MN_QUERY_STOP_DEVICE:
    case IRP_MN_CANCEL_STOP_DEVICE:
    case IRP_MN_STOP_DEVICE:
      irp->IoStatus.Status = STATUS_SUCCESS;
      return PassOn(device, irp);
    default:
      return PassOn(device, irp);
  }
}

NTSTATUS BusPower(PDEVICE_OBJECT device, PIRP irp) {
  PoStartNextPowerIrp(irp);
  IoSkipCurrentIrpStackLocation(irp);
  return PoCallDriver(BusOf(device)->below, irp);
}

NTSTATUS BusSystemControl(PDEVICE_OBJECT device, PIRP irp) { return PassOn(device, irp); }

}  // namespace zyr::simulator
