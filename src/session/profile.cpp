#include "session/profile.h"
