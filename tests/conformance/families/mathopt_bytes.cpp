// Golden vectors of the byte searches, row copy, pattern fill and merge sort.
#include <cstring>
#include <string>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

#include "conformance.h"

namespace {

using conf::json;

/// The buffer of a vector, copied to the heap with nothing after it, so that a read past
/// the end shows up under the address sanitizer. Empty buffers stay null.
struct HeapBytes {
    explicit HeapBytes(const json& v) : data(conf::bytes(v)) {}
    const BYTE* ptr() const { return data.empty() ? nullptr : data.data(); }
    ULONG size() const { return static_cast<ULONG>(data.size()); }
    std::vector<BYTE> data;
};

struct Record {
    INT64 key;
    INT64 id;
};

LONG CompareKeys(const void* a, const void* b) {
    const INT64 x = static_cast<const Record*>(a)->key;
    const INT64 y = static_cast<const Record*>(b)->key;
    return (x > y) - (x < y);
}
LONG AlwaysOne(const void*, const void*) {
    return 1;
}

using ByteFn = ULONG (*)(const BYTE*, ULONG, BYTE);
using PatternFn = ULONG (*)(const BYTE*, ULONG, const BYTE*, ULONG);

// A search for the byte "b" in "buf".
json ByteSearch(const json& a, ByteFn fn) {
    HeapBytes buf(a["buf"]);
    return conf::value(fn(buf.ptr(), buf.size(), static_cast<BYTE>(conf::u32(a["b"]))));
}

// A search for the pattern "pat" in "buf".
json PatternSearch(const json& a, PatternFn fn) {
    HeapBytes buf(a["buf"]), pat(a["pat"]);
    return conf::value(fn(buf.ptr(), buf.size(), pat.ptr(), pat.size()));
}

static conf::Register reg{
    {"AMathOpt::FindData(byte)", conf::with(ByteSearch, ByteFn(AMathOpt::FindData))},
    {"AMathOpt::ReverseFindData(byte)", conf::with(ByteSearch, ByteFn(AMathOpt::ReverseFindData))},
    {"AMathOpt::FindData(pattern)", conf::with(PatternSearch, PatternFn(AMathOpt::FindData))},
    {"AMathOpt::ReverseFindData(pattern)",
     conf::with(PatternSearch, PatternFn(AMathOpt::ReverseFindData))},
    {"AMathOpt::FindData_Int", conf::with(ByteSearch, AMathOpt::FindData_Int)},
    {"AMathOpt::myMemcpy",
     [](const json& a) {
         std::vector<BYTE> dst = conf::bytes(a["dst"]);
         const std::vector<BYTE> src = conf::bytes(a["src"]);
         const int v = AMathOpt::myMemcpy(
             dst.data(), conf::i64(a["dstPitch"]), static_cast<BYTE>(conf::u32(a["bits"])),
             src.data(), conf::i64(a["srcPitch"]), conf::i64(a["width"]), conf::i64(a["rows"]));
         return json{{"value", v}, {"dst", conf::hex(dst)}};
     }},
    {"AMathOpt::myMemset",
     [](const json& a) {
         const std::vector<BYTE> pattern = conf::bytes(a["pattern"]);
         const INT64 count = conf::i64(a["count"]);
         const size_t n = count > 0 ? static_cast<size_t>(count) * pattern.size() : 0;
         constexpr size_t kGuard = 64;
         std::vector<BYTE> dst(n + kGuard, 0xEE);
         AMathOpt::myMemset(dst.data(), pattern.data(), pattern.size(), count);
         for (size_t i = n; i < dst.size(); ++i)
             if (dst[i] != 0xEE) throw std::runtime_error("wrote past count copies");
         return json{{"written", conf::hex(dst.data(), n)}};
     }},
    {"AMathOpt::merger_sort",
     [](const json& a) {
         const std::string how = a["compare"].get<std::string>();
         LONG (*compare)(const void*, const void*) = nullptr;
         if (how == "always 1")
             compare = AlwaysOne;
         else if (how.rfind("key ascending", 0) == 0)
             compare = CompareKeys;
         else
             throw conf::Unsupported("comparison: " + how);
         std::vector<Record> records;
         for (const auto& r : a["records"])
             records.push_back({conf::i64(r.at(0)), conf::i64(r.at(1))});
         std::vector<Record> temp(records.size());
         AMathOpt::merger_sort(records.data(), static_cast<LONG>(records.size()), sizeof(Record),
                               temp.data(), compare);
         json out = json::array();
         for (const Record& r : records) out.push_back(json::array({r.key, r.id}));
         return json{{"records", out}};
     }},
};

}  // namespace
