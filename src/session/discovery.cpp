#include "session/discovery.h"
