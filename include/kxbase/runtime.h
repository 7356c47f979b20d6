// Public headers of the runtime subsystem.
#pragma once

#include <kxbase/platform.h>
#include <kxbase/runtime/error_info.h>
#include <kxbase/runtime/share_memory.h>
#include <kxbase/runtime/thread.h>
