// Public headers of the widgets subsystem.
#pragma once

#include <kxbase/platform.h>
#include <kxbase/widgets/number_format.h>
#include <kxbase/widgets/messages.h>
#include <kxbase/widgets/int64_parse.h>
#include <kxbase/widgets/bitmap.h>
