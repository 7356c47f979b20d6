/// \file
/// Public headers of the runtime subsystem.
#pragma once

#include <kxbase/platform.h>
#include <kxbase/runtime/error_info.h>
#include <kxbase/runtime/cost_time.h>
#include <kxbase/runtime/buffer_manager.h>
#include <kxbase/runtime/doc_obj.h>
#include <kxbase/runtime/app_path.h>
#include <kxbase/runtime/env_obj.h>
#include <kxbase/runtime/resource_handle.h>
#include <kxbase/runtime/share_memory.h>
#include <kxbase/runtime/thread.h>
