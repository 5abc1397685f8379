// A driver that is never loaded: programs ask its file for the version.
#include "simulator/driver/ddk.h"

extern "C" NTSTATUS NTAPI DriverEntry(PDRIVER_OBJECT, PUNICODE_STRING) { return STATUS_SUCCESS; }
