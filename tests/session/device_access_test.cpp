#include "session/device_access.h"

#include <gtest/gtest.h>
