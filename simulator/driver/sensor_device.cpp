// Requests to the device of a sensor.
#include "simulator/driver/sensor_device.h"

#include "simulator/driver/plugged_sensor.h"
#include "simulator/driver/transfers.h"
#include "simulator/driver/unicode_text.h"
#include "simulator/driver/worker.h"

namespace zyr::simulator {
namespace {

// The class of interface that every USB device has.
const GUID kUsbDeviceInterface = {
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

Family FamilyOf(const PluggedSensor* sensor) { return sensor->sensor.setup().family; }

bool AppendIdentity(UnicodeText* text, Family family) {
  return text->Append("USB\\VID_082E&PID_") &&
         text->Append(family == kFamily2000 ? "2000" : "1005");
}

// Texts from the pool, which the system frees.
WCHAR* IdentityText(const PluggedSensor* sensor, BUS_QUERY_ID_TYPE type) {
  UnicodeText text;
  bool whole = false;
  switch (type) {
    case BusQueryDeviceID:
      whole = AppendIdentity(&text, FamilyOf(sensor));
      break;
    case BusQueryInstanceID:
      whole = text.Append(sensor->instance);
      break;
    case BusQueryHardwareIDs:
      whole = AppendIdentity(&text, FamilyOf(sensor)) && text.EndOne();
      break;
    case BusQueryCompatibleIDs:
      whole = text.Append("USB\\Class_FF") && text.EndOne();
      break;
    default:
      break;
  }
  return whole ? text.Release() : nullptr;
}

NTSTATUS AnswerText(PIRP irp, WCHAR* text) {
  if (text == nullptr) return Complete(irp, STATUS_INSUFFICIENT_RESOURCES);
  return Complete(irp, STATUS_SUCCESS, reinterpret_cast<ULONG_PTR>(text));
}

NTSTATUS QueryId(PluggedSensor* sensor, PIRP irp) {
  const BUS_QUERY_ID_TYPE type = IoGetCurrentIrpStackLocation(irp)->Parameters.QueryId.IdType;
  switch (type) {
    case BusQueryDeviceID:
    case BusQueryInstanceID:
    case BusQueryHardwareIDs:
    case BusQueryCompatibleIDs:
      return AnswerText(irp, IdentityText(sensor, type));
    default:
      return Complete(irp, irp->IoStatus.Status, irp->IoStatus.Information);
  }
}

NTSTATUS QueryText(PluggedSensor* sensor, PIRP irp) {
  if (IoGetCurrentIrpStackLocation(irp)->Parameters.QueryDeviceText.DeviceTextType !=
      DeviceTextDescription)
    return Complete(irp, irp->IoStatus.Status, irp->IoStatus.Information);
  UnicodeText text;
  const bool whole = text.Append("ZYR ") &&
                     text.Append(FamilyOf(sensor) == kFamily2000 ? "2000" : "303") &&
                     text.Append(" sensor (simulated)");
  return AnswerText(irp, whole ? text.Release() : nullptr);
}

NTSTATUS QueryCapabilities(PIRP irp) {
  DEVICE_CAPABILITIES* capabilities =
      IoGetCurrentIrpStackLocation(irp)->Parameters.DeviceCapabilities.Capabilities;
  capabilities->Address = ~0u;    // unknown
  capabilities->UINumber = ~0u;   // none
  capabilities->RawDeviceOK = 1;  // works without a function driver
  capabilities->UniqueID = 1;
  capabilities->Removable = 1;
  capabilities->SurpriseRemovalOK = 1;
  return Complete(irp, STATUS_SUCCESS);
}

// The sensor itself, with a reference; a bus has to tell this of its children.
NTSTATUS QueryRelations(PluggedSensor* sensor, PIRP irp) {
  if (IoGetCurrentIrpStackLocation(irp)->Parameters.QueryDeviceRelations.Type !=
      TargetDeviceRelation)
    return Complete(irp, irp->IoStatus.Status, irp->IoStatus.Information);
  auto* relations = AllocatePool<DEVICE_RELATIONS>(sizeof(DEVICE_RELATIONS));
  if (relations == nullptr) return Complete(irp, STATUS_INSUFFICIENT_RESOURCES);
  ObReferenceObject(sensor->device);
  relations->Count = 1;
  relations->Objects[0] = sensor->device;
  return Complete(irp, STATUS_SUCCESS, reinterpret_cast<ULONG_PTR>(relations));
}

NTSTATUS SetInterface(PluggedSensor* sensor, BOOLEAN enabled) {
  if (sensor->interfaceName.Buffer == nullptr) return STATUS_SUCCESS;
  NTSTATUS status = IoSetDeviceInterfaceState(&sensor->interfaceName, enabled);
  if (enabled && !NT_SUCCESS(status)) {
    // A driver that has crashed leaves its link behind.
    IoDeleteSymbolicLink(&sensor->interfaceName);
    status = IoSetDeviceInterfaceState(&sensor->interfaceName, TRUE);
  }
  return status;
}

// Programs hear of the sensor, and open it, before this has returned.
NTSTATUS Start(PluggedSensor* sensor) {
  if (sensor->interfaceName.Buffer == nullptr) {
    const NTSTATUS status = IoRegisterDeviceInterface(sensor->device, &kUsbDeviceInterface, nullptr,
                                                      &sensor->interfaceName);
    if (!NT_SUCCESS(status)) return status;
  }
  {
    const Guard guard;
    sensor->started = true;
    sensor->removed = false;
  }
  return SetInterface(sensor, TRUE);
}

void Stop(PluggedSensor* sensor) {
  SetInterface(sensor, FALSE);
  {
    const Guard guard;
    sensor->started = false;
  }
  EndTransfersOf(sensor->device, STATUS_DEVICE_NOT_CONNECTED);
}

NTSTATUS Remove(PluggedSensor* sensor, PIRP irp) {
  Stop(sensor);
  {
    const Guard guard;
    sensor->removed = true;
  }
  WakeWorker();
  return Complete(irp, STATUS_SUCCESS);
}

// What the sensor makes of a call reaches the caller at once, or when it is due.
NTSTATUS Deliver(PluggedSensor* sensor, PIRP irp, const ControlBuffers& buffers) {
  NTSTATUS status = STATUS_DEVICE_NOT_CONNECTED;
  uint32_t returned = 0;
  bool unplug = false;
  {
    const Guard guard;
    if (sensor->present) {
      const uint64_t now = Now();
      const Answer answer = sensor->sensor.Control(
          now, buffers.code, buffers.input, buffers.inputSize, buffers.output, buffers.outputSize);
      status = StatusOfError(answer.error);
      if (NT_SUCCESS(status)) returned = answer.returned;
      unplug = answer.unplug != 0;
      if (unplug) {
        sensor->present = false;
      } else if (answer.delay > 0) {
        if (AnswerLater(irp, now + answer.delay, status, returned)) {
          WakeWorker();
          return STATUS_PENDING;
        }
        status = STATUS_CANCELLED;
        returned = 0;
      }
    }
  }
  Complete(irp, status, returned);
  if (unplug) {
    EndTransfersOf(sensor->device, STATUS_DEVICE_NOT_CONNECTED);
    ReportChangeSoon();
  }
  return status;
}

}  // namespace

NTSTATUS SensorOpen(PDEVICE_OBJECT device, PIRP irp) {
  PluggedSensor* sensor = SensorOf(device);
  NTSTATUS status = STATUS_DEVICE_NOT_CONNECTED;
  {
    const Guard guard;
    if (sensor->present) {
      ++sensor->handles;
      status = STATUS_SUCCESS;
    }
  }
  return Complete(irp, status);
}

// Not every system has ended a file's requests before it closes the file.
NTSTATUS SensorClose(PDEVICE_OBJECT device, PIRP irp) {
  EndTransfersBy(IoGetCurrentIrpStackLocation(irp)->FileObject, STATUS_CANCELLED);
  {
    const Guard guard;
    --SensorOf(device)->handles;
  }
  WakeWorker();
  return Complete(irp, STATUS_SUCCESS);
}

NTSTATUS SensorControl(PDEVICE_OBJECT device, PIRP irp) {
  ControlBuffers buffers;
  if (!BuffersOf(irp, &buffers)) return Complete(irp, STATUS_INVALID_DEVICE_REQUEST);
  return Deliver(SensorOf(device), irp, buffers);
}

NTSTATUS SensorPnp(PDEVICE_OBJECT device, PIRP irp) {
  PluggedSensor* sensor = SensorOf(device);
  switch (IoGetCurrentIrpStackLocation(irp)->MinorFunction) {
    case IRP_MN_START_DEVICE:
      return Complete(irp, Start(sensor));
    case IRP_MN_QUERY_ID:
      return QueryId(sensor, irp);
    case IRP_MN_QUERY_DEVICE_TEXT:
      return QueryText(sensor, irp);
    case IRP_MN_QUERY_CAPABILITIES:
      return QueryCapabilities(irp);
    case IRP_MN_QUERY_DEVICE_RELATIONS:
      return QueryRelations(sensor, irp);
    case IRP_MN_SURPRISE_REMOVAL:
      Stop(sensor);
      return Complete(irp, STATUS_SUCCESS);
    case IRP_MN_REMOVE_DEVICE:
      return Remove(sensor, irp);
    case IRP_MN_QUERY_REMOVE_DEVICE:
    case IRP_MN_CANCEL_REMOVE_DEVICE:
    case IRP_MN_QUERY_STOP_DEVICE:
    case IRP_MN_CANCEL_STOP_DEVICE:
    case IRP_MN_STOP_DEVICE:
      return Complete(irp, STATUS_SUCCESS);
    default:
      return Complete(irp, irp->IoStatus.Status, irp->IoStatus.Information);
  }
}

NTSTATUS SensorPower(PDEVICE_OBJECT, PIRP irp) {
  PoStartNextPowerIrp(irp);
  return Complete(irp, STATUS_SUCCESS);
}

NTSTATUS SensorSystemControl(PDEVICE_OBJECT, PIRP irp) {
  return Complete(irp, irp->IoStatus.Status, irp->IoStatus.Information);
}

}  // namespace zyr::simulator
