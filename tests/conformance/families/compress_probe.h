// Shared by the codec families: the test-only class that reaches ACompress's protected
// routines, and the sentinel that makes "left untouched" (null in the vectors) observable.
#pragma once

#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace cz {

struct Probe : ACompress {
    using ACompress::Comp_RLE24, ACompress::Comp_RLE4, ACompress::Comp_RLE8, ACompress::GetLoc_RLE1,
        ACompress::GetLoc_RLE2, ACompress::GetLoc_RLE24, ACompress::GetLoc_RLE4,
        ACompress::GetLoc_RLE8, ACompress::Exit, ACompress::Init, ACompress::IsStrInList,
        ACompress::kLzwNodeSize, ACompress::kPackValueMaxBytes, ACompress::m_byBitTable,
        ACompress::m_pRowTable, ACompress::Pack1, ACompress::Pack2, ACompress::Pack_Value,
        ACompress::UnComp_RLE24, ACompress::UnComp_RLE4, ACompress::UnComp_RLE8, ACompress::UnPack1,
        ACompress::UnPack2, ACompress::UnPackSeg1, ACompress::UnPackSeg2;
};

constexpr ULONG kUntouched = 0xA5A5A5A5u;

inline auto Untouched(const char* key) {
    return conf::kept<ULONG>(key, kUntouched);
}

}  // namespace cz
