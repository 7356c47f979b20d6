// Display names of the units, from the library's string table.
#include <kxbase/base/string_table.h>
#include <kxbase/platform/module.h>
#include <kxbase/units/units.h>

namespace {

// String-table ids of the names; 0 for an unknown unit.
UINT SizeUnitId(ASizeUnit unit) {
    return (unit >= SIZE_PIXEL && unit <= SIZE_INCH) ? 13u + static_cast<UINT>(unit) : 0u;
}

UINT ResUnitId(AResUnit unit) {
    switch (unit) {
        case RES_DPI:
            return 22;
        case RES_DPCMM:
            return 26;
        case RES_DPMM:
            return 24;
        case RES_DPCM:
            return 25;
        case RES_DPM:
            return 23;
        default:
            return 0;
    }
}

int LoadName(UINT id, char* buf, int size) {
    if (id == 0) {
        if (buf != nullptr && size >= 1) buf[0] = '\0';
        return 0;
    }
    return KxLoadString(KxLibraryHandle(), id, buf, size);
}

// The string form loads through a 50-byte buffer, as the names always have.
int LoadName(UINT id, CString& text) {
    char buf[50];
    const int n = LoadName(id, buf, static_cast<int>(sizeof buf));
    if (n <= 0) {
        text.Empty();
        return 0;
    }
    text = CString(buf, n);
    return n;
}

}  // namespace

int SizeUnitString(char* buf, int size, ASizeUnit unit) {
    return LoadName(SizeUnitId(unit), buf, size);
}
int SizeUnitString(CString& text, ASizeUnit unit) {
    return LoadName(SizeUnitId(unit), text);
}
int ResUnitString(char* buf, int size, AResUnit unit) {
    return LoadName(ResUnitId(unit), buf, size);
}
int ResUnitString(CString& text, AResUnit unit) {
    return LoadName(ResUnitId(unit), text);
}
