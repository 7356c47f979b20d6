// kxbase strings: prints the library's string table.
#include <cstdio>

#include <kxbase/base/string_table.h>
#include <kxbase/platform/module.h>

#include "command.h"

static kxtool::Command cmd{"strings", "Print the library's string table (id and text)", [](CLI::App&) {
    return [] {
        for (UINT id = 0; id < 1000; ++id)
            if (const char* text = KxStringTableEntry(id)) std::printf("%4u  %s\n", id, text);
        return 0;
    };
}};
