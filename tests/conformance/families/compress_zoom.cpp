// Golden-vector handlers: line zoom (ZoomBits) and line resampling (ResampleLine).
#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

using conf::json;
using Bytes = std::vector<std::uint8_t>;

Bytes BytesOrEmpty(const json& v) {
    return v.is_null() ? Bytes{} : conf::bytes(v);
}

const conf::Register reg{
    {"ACompress::ZoomBits",
     [](const json& a) {
         Bytes src = BytesOrEmpty(a.at("src"));
         Bytes dst = BytesOrEmpty(a.at("dst"));
         const int r = ACompress::ZoomBits(
             conf::i32(a.at("srcWidth")), conf::i32(a.at("srcHeight")),
             static_cast<unsigned short>(conf::u32(a.at("depth"))),
             a.at("src").is_null() ? nullptr : src.data(), conf::i32(a.at("dstWidth")),
             conf::i32(a.at("dstHeight")), a.at("dst").is_null() ? nullptr : dst.data());
         return json{{"value", r}, {"dst", conf::hex(dst)}};
     }},
    {"ACompress::ResampleLine",
     [](const json& a) {
         Bytes src = BytesOrEmpty(a.at("src"));
         const bool inPlace = a.value("inPlace", false);
         Bytes dst = inPlace ? Bytes{} : BytesOrEmpty(a.value("dst", json(nullptr)));
         std::vector<ULONG> map;
         if (!a.at("map").is_null())
             for (const auto& e : a.at("map")) map.push_back(conf::u32(e));
         const BYTE* s = a.at("src").is_null() ? nullptr : src.data();
         BYTE* d = inPlace ? src.data()
                           : (a.value("dst", json(nullptr)).is_null() ? nullptr : dst.data());
         const int r = ACompress::ResampleLine(
             s, conf::i32(a.at("depth")), conf::i32(a.at("srcCount")), d,
             conf::i32(a.at("dstCount")), map.empty() ? nullptr : map.data());
         return json{{"value", r}, {"dst", conf::hex(inPlace ? src : dst)}};
     }},
};

}  // namespace
