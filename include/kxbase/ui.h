/// \file
/// kxBaseCommon's user-interface library (Qt 6 Widgets): every public header. Link
/// kxBaseCommon::kxbase_ui (or pkg-config kxbase_ui).
#pragma once

#include <kxbase/ui/image.h>
#include <kxbase/ui/list_ctrl.h>
#include <kxbase/ui/messages.h>
#include <kxbase/ui/numeric_edit.h>
#include <kxbase/ui/ui.h>
