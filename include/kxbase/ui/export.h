/// \file
/// Export control of the user-interface library: hidden by default, KXBASE_UI_API marks the API.
#pragma once

#if defined(_WIN32)
#if defined(KXBASE_UI_BUILDING)
#define KXBASE_UI_API __declspec(dllexport)
#else
#define KXBASE_UI_API __declspec(dllimport)
#endif
#else
/// Marks a function or class as part of the user-interface library's API (exported; imported by
/// its users on Windows); everything else stays hidden.
#define KXBASE_UI_API __attribute__((visibility("default")))
#endif
