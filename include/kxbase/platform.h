/// \file
/// Platform vocabulary: fixed-width types, integer records, strings, arrays, module handles.
#pragma once

#include <kxbase/platform/types.h>
#include <kxbase/platform/crect.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/platform/carray.h>
#include <kxbase/platform/object.h>
#include <kxbase/platform/ptrlist.h>
#include <kxbase/platform/module.h>
#include <kxbase/platform/memory_probe.h>
