// Export control: every symbol is hidden unless it is marked KXBASE_API.
#pragma once

#if defined(_WIN32)
#if defined(KXBASE_BUILDING)
#define KXBASE_API __declspec(dllexport)
#else
#define KXBASE_API __declspec(dllimport)
#endif
#else
#define KXBASE_API __attribute__((visibility("default")))
#endif
