/// \file
/// Public headers of the separate subsystem.
#pragma once

#include <kxbase/platform.h>
#include <kxbase/separate/separate.h>
