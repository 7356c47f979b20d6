// Public headers of the units subsystem.
#pragma once

#include <kxbase/platform.h>
