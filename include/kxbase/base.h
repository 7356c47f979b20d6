/// \file
/// Public headers of the base layer: number text, message hooks, the string table.
#pragma once

#include <kxbase/platform.h>
#include <kxbase/base/int64_parse.h>
#include <kxbase/base/messages.h>
#include <kxbase/base/number_format.h>
#include <kxbase/base/string_table.h>
#include <kxbase/base/bitmap.h>
