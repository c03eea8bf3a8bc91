#include "session/profile.h"

#include <gtest/gtest.h>
