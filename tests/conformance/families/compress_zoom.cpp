// Golden-vector handlers: line zoom (ZoomBits) and line resampling (ResampleLine).
#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

using conf::Buf;
using conf::json;

const conf::Register reg{
    {"ACompress::ZoomBits",
     [](const json& a) {
         Buf src(a.at("src")), dst(a.at("dst"));
         const int r = ACompress::ZoomBits(
             conf::i32(a.at("srcWidth")), conf::i32(a.at("srcHeight")),
             static_cast<unsigned short>(conf::u32(a.at("depth"))), src.get(),
             conf::i32(a.at("dstWidth")), conf::i32(a.at("dstHeight")), dst.get());
         return json{{"value", r}, {"dst", conf::hex(dst.b)}};
     }},
    {"ACompress::ResampleLine",
     [](const json& a) {
         const bool inPlace = a.value("inPlace", false);
         Buf src(a.at("src")), dst(inPlace ? json(nullptr) : a.value("dst", json(nullptr)));
         std::vector<ULONG> map;
         if (!a.at("map").is_null())
             for (const auto& e : a.at("map")) map.push_back(conf::u32(e));
         const int r = ACompress::ResampleLine(
             src.get(), conf::i32(a.at("depth")), conf::i32(a.at("srcCount")),
             inPlace ? src.get() : dst.get(), conf::i32(a.at("dstCount")),
             map.empty() ? nullptr : map.data());
         return json{{"value", r}, {"dst", conf::hex(inPlace ? src.b : dst.b)}};
     }},
};

}  // namespace
