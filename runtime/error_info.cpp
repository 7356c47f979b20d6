// CErrorInfo: writers serialise on a recursive lock and publish immutable records; readers
// copy the current record without locking.
#include <kxbase/runtime/error_info.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

#include <kxbase/base/messages.h>

#include "platform/format_p.h"
#include "platform/sys.h"

namespace {

std::string hex_suffix(const char* prefix, DWORD code, const char* suffix) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%s0x%" PRIX32 "%s", prefix, static_cast<std::uint32_t>(code), suffix);
    return buf;
}

// Text recorded when the text of a failure cannot even be allocated: the system's own
// fallback for ENOMEM, built once at first use so that it never needs memory later.
const std::string& out_of_memory_text() {
    static const std::string text = "System Error (code:0xC)";
    return text;
}

}  // namespace

CErrorInfo::CErrorInfo() noexcept {
    (void)out_of_memory_text();
}

CErrorInfo::~CErrorInfo() = default;

CErrorInfo::CErrorInfo(const CErrorInfo& other) noexcept : m_record(other.Current()) {
    m_nError.store(m_record ? m_record->flag : 0, std::memory_order_relaxed);
}

CErrorInfo& CErrorInfo::operator=(const CErrorInfo& other) noexcept {
    if (this != &other) {
        std::lock_guard<std::recursive_mutex> guard(m_lock);
        Store(other.Current());
    }
    return *this;
}

std::shared_ptr<const CErrorInfo::Record> CErrorInfo::Current() const noexcept {
    std::lock_guard<std::mutex> guard(m_publish);
    return m_record;
}

void CErrorInfo::Store(std::shared_ptr<const Record> rec) noexcept {
    m_nError.store(rec ? rec->flag : 0, std::memory_order_relaxed);
    {
        std::lock_guard<std::mutex> guard(m_publish);
        m_record.swap(rec);
    }
    // The previous record (now in rec) is released here, outside the guard.
}

int CErrorInfo::IsError() const noexcept {
    return m_nError.load(std::memory_order_relaxed);
}

int CErrorInfo::GetLastError(CString& out) const noexcept {
    const auto rec = Current();
    out.Empty();
    if (!rec || rec->flag == 0) return 0;
    try {
        out = CString(rec->text);
    } catch (...) {
        out.Empty();
    }
    return rec->flag;
}

void CErrorInfo::Publish(std::string text, int flag) noexcept {
    if (flag == 0) {
        Store(nullptr);
        return;
    }
    try {
        Store(std::make_shared<const Record>(Record{flag, std::move(text)}));
    } catch (...) {
        // No memory for the record: the failure is still flagged, with the best text left.
        Store(nullptr);
        try {
            Store(std::make_shared<const Record>(Record{1, out_of_memory_text()}));
        } catch (...) {
        }
    }
}

int CErrorInfo::SetLastError(HINSTANCE module, UINT id) noexcept {
    std::lock_guard<std::recursive_mutex> guard(m_lock);
    if (module == nullptr || id == 0) {
        Publish({}, 0);
        return 1;
    }
    std::string text;
    try {
        text = ZelLoadString(module, id).str();
        if (text.empty()) {
            char buf[64];
            const auto low = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(module));
            std::snprintf(buf, sizeof buf, "Error in :%" PRIu32 " (ID:%" PRIu32 ")", low, id);
            text = buf;
        }
    } catch (...) {
        text = out_of_memory_text();
    }
    Publish(std::move(text), 1);
    return 1;
}

int CErrorInfo::SetLastError(const char* format, ...) noexcept {
    va_list args;
    va_start(args, format);
    const int r = SetLastErrorV(format, args);
    va_end(args);
    return r;
}

int CErrorInfo::SetLastErrorV(const char* format, va_list args) noexcept {
    std::lock_guard<std::recursive_mutex> guard(m_lock);
    if (format == nullptr) {
        Publish({}, 0);
        return 1;
    }
    try {
        std::string text;
        kxbase::detail::AppendFormatV(text, format, args);
        const int flag = text.empty() ? 0 : 1;
        Publish(std::move(text), flag);
    } catch (...) {
        Publish(out_of_memory_text(), 1);
    }
    return 1;
}

int CErrorInfo::SetLastErrorFromSystem(DWORD code) noexcept {
    std::lock_guard<std::recursive_mutex> guard(m_lock);
    if (code == 0) {
        Publish({}, 0);
        return 1;
    }
    try {
        std::string text = TransSystemErrorCodeToString(code).str();
        const int flag = text.empty() ? 0 : 1;
        Publish(std::move(text), flag);
    } catch (...) {
        Publish(out_of_memory_text(), 1);
    }
    return 1;
}

int CErrorInfo::SetLastErrorFromSystem() noexcept {
    return SetLastErrorFromSystem(kxbase::sys::LastSystemError());
}

void CErrorInfo::ClearError() noexcept {
    std::lock_guard<std::recursive_mutex> guard(m_lock);
    Publish({}, 0);
}

CString CErrorInfo::TransSystemErrorCodeToString(DWORD code) {
    if (code == 0) return CString();
    std::string text;
    if (!kxbase::sys::SystemErrorText(code, text))
        return CString(hex_suffix("System Error (code:", code, ")"));
    return CString(text + hex_suffix(" (", code, ")"));
}
