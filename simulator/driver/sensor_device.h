// The plugged-in sensors: devices without a function driver, which programs find by their USB
// identity.
#pragma once

#include "simulator/bus_protocol.h"
#include "simulator/driver/driver.h"

namespace zyr::simulator {

void InitializeSensors();

// Codes of the control device. Each takes a whole request's buffers and gives its status; `written`
// takes the bytes of the answer.
NTSTATUS PlugSensor(PDRIVER_OBJECT driver, const ControlBuffers& buffers);
NTSTATUS UnplugSensor(const ControlBuffers& buffers);
NTSTATUS LoadFrames(const ControlBuffers& buffers);
NTSTATUS ExposeSensor(const ControlBuffers& buffers);
NTSTATUS SetSensorFault(const ControlBuffers& buffers);
NTSTATUS TellStatus(const ControlBuffers& buffers, uint32_t* written);

// All that are plugged in, each with a reference for the caller, as the system wants to have them:
// a block from the pool. Null if there is no memory.
PDEVICE_RELATIONS ReportSensors();
// The bus goes, and every sensor with it.
void UnplugAll();
// The worker's share: frees the sensors that nothing has needed for a while. Tells when to look
// again.
uint64_t DeleteUnneeded(uint64_t now);
// Of all sensors that nothing needs, at once.
void DeleteAllUnneeded();

// Requests to a sensor's device.
NTSTATUS SensorOpen(PDEVICE_OBJECT device, PIRP irp);
NTSTATUS SensorClose(PDEVICE_OBJECT device, PIRP irp);
NTSTATUS SensorControl(PDEVICE_OBJECT device, PIRP irp);
NTSTATUS SensorPnp(PDEVICE_OBJECT device, PIRP irp);
NTSTATUS SensorPower(PDEVICE_OBJECT device, PIRP irp);
NTSTATUS SensorSystemControl(PDEVICE_OBJECT device, PIRP irp);

}  // namespace zyr::simulator
