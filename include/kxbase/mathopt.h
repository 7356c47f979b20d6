// Public headers of the mathopt subsystem.
#pragma once

#include <kxbase/platform.h>
