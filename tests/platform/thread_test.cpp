#include "tests/platform/thread_contract.h"
