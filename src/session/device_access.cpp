#include "session/device_access.h"
