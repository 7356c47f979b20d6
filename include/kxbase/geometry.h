// Public headers of the geometry subsystem.
#pragma once

#include <kxbase/platform.h>
