// Public headers of the runtime subsystem.
#pragma once

#include <kxbase/platform.h>
