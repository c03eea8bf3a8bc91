#include "session/discovery.h"

#include <gtest/gtest.h>
