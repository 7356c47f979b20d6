/// \file
/// kxBaseCommon: every public header of the core library.
#pragma once

#include <kxbase/version.h>
#include <kxbase/export.h>
#include <kxbase/platform.h>
#include <kxbase/base.h>
#include <kxbase/geometry.h>
#include <kxbase/units.h>
#include <kxbase/mathopt.h>
#include <kxbase/compress.h>
#include <kxbase/ellipse.h>
#include <kxbase/separate.h>
#include <kxbase/runtime.h>
