/// \file
/// Public headers of the compress subsystem.
#pragma once

#include <kxbase/platform.h>
#include <kxbase/compress/compress.h>
