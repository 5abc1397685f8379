#include "platform/clock.h"

#include "tests/platform/clock_contract.h"
