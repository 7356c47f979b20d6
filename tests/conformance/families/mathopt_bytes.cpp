// Golden vectors of the byte searches, row copy, pattern fill and merge sort.
#include <string>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

#include "conformance.h"

namespace {

using conf::call;
using conf::Hex;
using conf::in;
using conf::json;
using A = AMathOpt;

// Searched buffers live on the heap with nothing after them, so that a read past the end shows
// up under the address sanitizer; empty buffers pass a null pointer.
const BYTE* Ptr(const Hex& h) {
    return h.empty() ? nullptr : h.data();
}
ULONG Len(const Hex& h) {
    return static_cast<ULONG>(h.size());
}
conf::Handler ByteSearch(ULONG (*fn)(const BYTE*, ULONG, BYTE)) {
    return call([fn](const Hex& buf, BYTE b) { return fn(Ptr(buf), Len(buf), b); }, in<Hex>("buf"),
                in<BYTE>("b"));
}
conf::Handler PatternSearch(ULONG (*fn)(const BYTE*, ULONG, const BYTE*, ULONG)) {
    return call(
        [fn](const Hex& buf, const Hex& pat) { return fn(Ptr(buf), Len(buf), Ptr(pat), Len(pat)); },
        in<Hex>("buf"), in<Hex>("pat"));
}

struct Record {
    INT64 key;
    INT64 id;
};
// The comparisons the vectors name: by key ascending or descending, or one constant answer.
LONG g_answer = 0;
LONG Ascending(const void* a, const void* b) {
    const INT64 x = static_cast<const Record*>(a)->key, y = static_cast<const Record*>(b)->key;
    return (x > y) - (x < y);
}
LONG Descending(const void* a, const void* b) {
    return Ascending(b, a);
}
LONG Constant(const void*, const void*) {
    return g_answer;
}

void MergeSort(std::vector<std::vector<INT64>>& rows, const std::string& how) {
    conf::Harness harness;
    LONG (*compare)(const void*, const void*) = nullptr;
    if (how.rfind("always ", 0) == 0)
        compare = Constant, g_answer = std::stoi(how.substr(7));
    else if (how.rfind("key ascending", 0) == 0)
        compare = Ascending;
    else if (how.rfind("key descending", 0) == 0)
        compare = Descending;
    else
        throw conf::Unsupported("comparison: " + how);
    std::vector<Record> records, temp(rows.size());
    for (const auto& r : rows) records.push_back({r.at(0), r.at(1)});
    {
        conf::LibraryCall lib;
        A::merger_sort(records.data(), static_cast<LONG>(records.size()), sizeof(Record),
                       temp.data(), compare);
    }
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = {records[i].key, records[i].id};
}

// Fills `count` copies of the pattern into a buffer with guard bytes after them.
void Memset(Hex& written, const Hex& pattern, INT64 count) {
    const std::size_t n = count > 0 ? static_cast<std::size_t>(count) * pattern.size() : 0,
                      guard = 64;
    conf::Harness harness;
    written.assign(n + guard, 0xEE);
    {
        conf::LibraryCall lib;
        A::myMemset(written.data(), pattern.data(), pattern.size(), count);
    }
    for (std::size_t i = n; i < written.size(); ++i)
        if (written[i] != 0xEE) throw std::runtime_error("wrote past count copies");
    written.resize(n);
}

const conf::Register reg{
    {"AMathOpt::FindData(byte)", ByteSearch(A::FindData)},
    {"AMathOpt::ReverseFindData(byte)", ByteSearch(A::ReverseFindData)},
    {"AMathOpt::FindData(pattern)", PatternSearch(A::FindData)},
    {"AMathOpt::ReverseFindData(pattern)", PatternSearch(A::ReverseFindData)},
    {"AMathOpt::FindData_Int", ByteSearch(A::FindData_Int)},
    {"AMathOpt::myMemcpy",
     call(A::myMemcpy, conf::buf("dst").to(), in<INT64>("dstPitch"), in<BYTE>("bits"),
          conf::buf("src"), in<INT64>("srcPitch"), in<INT64>("width"), in<INT64>("rows"))},
    {"AMathOpt::myMemset",
     call(Memset, conf::out<Hex>("written"), in<Hex>("pattern"), in<INT64>("count"))},
    {"AMathOpt::merger_sort", call(MergeSort, in<std::vector<std::vector<INT64>>>("records").to(),
                                   in<std::string>("compare"))},
};

}  // namespace
