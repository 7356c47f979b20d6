// Shared memory channel: header, sliding window and transfers. The system calls and their
// error codes come from the backend (platform/shm_p.h, platform/sys.h); this file is the
// channel's own logic.
#include <kxbase/runtime/share_memory.h>

#include <cstdint>
#include <cstring>
#include <new>

#include <kxbase/runtime/error_info.h>

#include "platform/shm_p.h"
#include "platform/sys.h"

namespace {

constexpr char kSignature[4] = {'X', 'P', 'L', 'M'};
constexpr const char* kInvalidParameter = "Invalid parameter!";
constexpr const char* kOutOfMemory = "Out of memory!";
constexpr const char* kInvalidHandle = "Invalid share memory handle!";
constexpr const char* kForeignArea = "Invalid share memory area (create by other process)!";
constexpr const char* kCreateFailed = "Could not create share memory handle.\n\t%s";
constexpr const char* kOpenFailed = "Could not open share memory handle.\n\t%s";
constexpr const char* kMapFailed = "Could not lock buffer.\n\t%s";

// The header is little-endian whatever the host's byte order.
void store_le(BYTE* p, UINT64 value, int bytes) {
    for (int i = 0; i < bytes; ++i) p[i] = static_cast<BYTE>(value >> (8 * i));
}
UINT64 load_le(const BYTE* p, int bytes) {
    UINT64 v = 0;
    for (int i = 0; i < bytes; ++i) v |= static_cast<UINT64>(p[i]) << (8 * i);
    return v;
}

char* copy_name(const char* name) {
    const std::size_t n = std::strlen(name);
    char* copy = new (std::nothrow) char[n + 1];
    if (copy != nullptr) std::memcpy(copy, name, n + 1);
    return copy;
}

}  // namespace

using namespace kxbase::detail;

CShareMemoryBase::CShareMemoryBase() : m_nGranularity(ShmGranularity()) {}

CShareMemoryBase::~CShareMemoryBase() {
    _Destory();
}

void CShareMemoryBase::SetError(const char* fixed) {
    try {
        m_strError = fixed;
    } catch (...) {
        m_strError.Empty();
    }
}

void CShareMemoryBase::SetSystemError(const char* format, int code) {
    try {
        const CString system = CErrorInfo::TransSystemErrorCodeToString(static_cast<DWORD>(code));
        m_strError.Format(format, system.GetString());
    } catch (...) {
        SetError(kOutOfMemory);
    }
}

void CShareMemoryBase::_Destory() {
    if (m_pView != nullptr) ShmUnmap(m_pView, m_nViewLength);
    m_pView = nullptr;
    m_nViewStart = 0;
    m_nViewLength = 0;
    if (m_pHeaderView != nullptr) ShmUnmap(m_pHeaderView, m_nHeaderViewLength);
    m_pHeaderView = nullptr;
    m_nHeaderViewLength = 0;
    if (m_hMap >= 0) {
        if (m_bCreator && m_pszName != nullptr)
            ShmRemoveAndClose(m_pszName, m_hMap);
        else
            ShmClose(m_hMap);
    }
    m_hMap = -1;
    m_bCreator = false;
    delete[] m_pszName;
    m_pszName = nullptr;
    m_nTotalSize = 0;
    m_nHeaderSize = 0;
    m_nWindowSize = 0;
    m_nGranularity = ShmGranularity();
}

int CShareMemoryBase::DeleteMap() {
    _Destory();
    return 1;
}

UINT64 CShareMemoryBase::GetMapSize() const {
    if (m_hMap < 0 || m_pHeaderView == nullptr || m_nTotalSize <= m_nHeaderSize) return 0;
    return m_nTotalSize - m_nHeaderSize;
}

int CShareMemoryBase::GetLastErrorInfo(CString& text) {
    try {
        text = m_strError;
    } catch (...) {
        text.Empty();
    }
    return m_strError.GetLength();
}

int CShareMemoryBase::_MapView(UINT64 pos, DWORD len) {
    m_strError.Empty();
    if (pos >= m_nTotalSize || len == 0) {
        SetError(kInvalidParameter);
        return 0;
    }
    if (m_pView != nullptr) ShmUnmap(m_pView, m_nViewLength);
    m_pView = nullptr;

    m_nViewStart = pos - pos % m_nGranularity;
    // 32-bit on purpose: a window is at most 4 GB - 1, and a wrapped length means "one
    // window size".
    DWORD length = static_cast<DWORD>(pos - m_nViewStart) + len;
    if (length == 0) length = m_nWindowSize;
    if (m_nViewStart + length > m_nTotalSize)
        length = static_cast<DWORD>(m_nTotalSize - m_nViewStart);

    int err = 0;
    void* view = ShmMap(m_hMap, m_nViewStart, length, err);
    if (view == nullptr) {
        SetSystemError(kMapFailed, err);
        m_nViewStart = 0;
        m_nViewLength = 0;
        return 0;
    }
    m_pView = static_cast<BYTE*>(view);
    m_nViewLength = length;
    return 1;
}

int CShareMemoryBase::_DataExchange(UINT64 pos, void* buffer, DWORD length, int write) {
    if (pos >= m_nTotalSize) {
        SetError(kInvalidParameter);
        return 0;
    }
    auto* bytes = static_cast<BYTE*>(buffer);
    for (;;) {
        if (bytes == nullptr || length == 0) return 1;
        const bool inside =
            m_pView != nullptr && pos >= m_nViewStart && pos - m_nViewStart < m_nViewLength;
        if (inside) {
            // The part of the transfer inside the window moves through the descriptor: the
            // kernel copies between the caller's buffer and the area's pages directly, where
            // a copy through the view would fault in every page the window had not touched
            // yet, each time the window moves over it.
            const UINT64 room = m_nViewLength - (pos - m_nViewStart);
            const DWORD part = length <= room ? length : static_cast<DWORD>(room);
            int err = 0;
            const bool copied = write ? ShmWrite(m_hMap, pos, bytes, part, err)
                                      : ShmRead(m_hMap, pos, bytes, part, err);
            if (!copied) {
                SetSystemError(kMapFailed, err);
                return 0;
            }
            if (part == length) return 1;
            pos += part;
            bytes += part;
            length -= part;
        }
        if (!_MapView(pos, m_nWindowSize)) return 0;
        // A window size close to 4 GB can wrap the 32-bit window length so that the new
        // window does not reach pos; stop rather than loop.
        if (pos - m_nViewStart >= m_nViewLength) {
            SetError(kInvalidParameter);
            return 0;
        }
    }
}

int CShareMemoryBase::WriteData(UINT64 offset, void* buffer, DWORD length) {
    if (m_hMap < 0 || m_pHeaderView == nullptr) {
        SetError(kInvalidHandle);
        return 0;
    }
    // offset + H at or past T, including an offset so large that the sum would wrap.
    if (offset >= m_nTotalSize - m_nHeaderSize) {
        SetError(kInvalidParameter);
        return 0;
    }
    return _DataExchange(offset + m_nHeaderSize, buffer, length, 1);
}

int CShareMemoryBase::ReadData(UINT64 offset, void* buffer, DWORD length) {
    if (m_hMap < 0 || m_pHeaderView == nullptr) {
        SetError(kInvalidHandle);
        return 0;
    }
    if (offset >= m_nTotalSize - m_nHeaderSize) {
        SetError(kInvalidParameter);
        return 0;
    }
    return _DataExchange(offset + m_nHeaderSize, buffer, length, 0);
}

int CShareMemoryServer::CreateMap(const char* name, UINT64 dataSize, DWORD windowSize) {
    _Destory();
    if (name == nullptr || dataSize == 0 || windowSize > dataSize) {
        SetError(kInvalidParameter);
        return 0;
    }
    m_pszName = copy_name(name);
    if (m_pszName == nullptr) {
        SetError(kOutOfMemory);
        _Destory();
        return 0;
    }
    const UINT64 granularity = m_nGranularity;
    const UINT64 header = granularity * ((granularity + 65535) / granularity);
    m_nHeaderSize = static_cast<DWORD>(header);
    // A sum past the 64-bit range saturates, so that the backend refuses the size with its
    // own "too large" code rather than receiving a wrapped, small one.
    m_nTotalSize = dataSize > UINT64_MAX - header ? UINT64_MAX : header + dataSize;

    int err = 0;
    m_hMap = ShmCreate(m_pszName, m_nTotalSize, err);
    if (m_hMap < 0) {
        SetSystemError(kCreateFailed, err);
        _Destory();
        return 0;
    }
    m_bCreator = true;

    m_nWindowSize = m_nHeaderSize;
    if (!_MapView(0, m_nWindowSize)) {
        _Destory();
        return 0;
    }
    m_pHeaderView = m_pView;
    m_nHeaderViewLength = m_nViewLength;
    m_pView = nullptr;
    m_nViewStart = 0;
    m_nViewLength = 0;
    std::memset(m_pHeaderView, 0, kHeaderFields);
    std::memcpy(m_pHeaderView, kSignature, sizeof kSignature);
    store_le(m_pHeaderView + 4, m_nHeaderSize, 4);
    store_le(m_pHeaderView + 8, m_nTotalSize, 8);

    m_nWindowSize = windowSize != 0 ? windowSize : kDefaultWindowSize;
    if (!_MapView(m_nHeaderSize, m_nWindowSize)) {
        _Destory();
        return 0;
    }
    m_strError.Empty();
    return 1;
}

int CShareMemoryClient::OpenMap(const char* name, DWORD windowSize) {
    _Destory();
    if (name == nullptr) {
        SetError(kInvalidParameter);
        return 0;
    }
    m_pszName = copy_name(name);
    if (m_pszName == nullptr) {
        SetError(kOutOfMemory);
        _Destory();
        return 0;
    }
    int err = 0;
    m_hMap = ShmOpen(m_pszName, err);
    if (m_hMap < 0) {
        SetSystemError(kOpenFailed, err);
        _Destory();
        return 0;
    }
    auto refuse = [this](const char* text) {
        SetError(text);
        _Destory();
        return 0;
    };
    // An object too small for the fixed fields cannot be one of ours (and mapping past its
    // end would fault).
    const UINT64 objectSize = ShmObjectSize(m_hMap);
    if (objectSize < kHeaderFields) return refuse(kForeignArea);

    m_nTotalSize = kHeaderFields;
    m_nWindowSize = kHeaderFields;
    if (!_MapView(0, m_nWindowSize)) {
        _Destory();
        return 0;
    }
    // The 16-byte view serves as the header view while the fields are checked; it stays the
    // current window, so that the next mapping replaces it.
    const BYTE* fields = m_pView;
    if (std::memcmp(fields, kSignature, sizeof kSignature) != 0) return refuse(kForeignArea);

    const UINT64 header = load_le(fields + 4, 4);
    const UINT64 total = load_le(fields + 8, 8);
    // The header must describe this object: the data part starts after the fixed fields and
    // inside the area, and the area fits in the object (a view past the object's end would
    // fault on first touch).
    if (header < kHeaderFields || header > total || total > objectSize) return refuse(kForeignArea);
    // A valid header but no server attached: a crashed server's leftover. Such an area is
    // treated as gone, as it would be once its last user closed it.
    if (!ShmCreatorAttached(m_hMap)) {
        SetSystemError(kOpenFailed, static_cast<int>(kxbase::sys::ErrorNoSuchFile()));
        _Destory();
        return 0;
    }
    m_nTotalSize = total;
    m_nHeaderSize = static_cast<DWORD>(header);

    m_nWindowSize = m_nHeaderSize;
    if (!_MapView(0, m_nWindowSize)) {
        _Destory();
        return 0;
    }
    m_pHeaderView = m_pView;
    m_nHeaderViewLength = m_nViewLength;
    m_pView = nullptr;
    m_nViewStart = 0;
    m_nViewLength = 0;

    m_nWindowSize = windowSize != 0 ? windowSize : kDefaultWindowSize;
    if (!_MapView(0, m_nWindowSize)) {
        _Destory();
        return 0;
    }
    m_strError.Empty();
    return 1;
}
