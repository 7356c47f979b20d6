// Message helpers: texts are built here and handed to the host's hooks.
#include <kxbase/base/messages.h>

#include <cstdio>
#include <mutex>
#include <string>
#include <utility>

#include <kxbase/base/string_table.h>
#include <kxbase/platform/module.h>

#include "platform/format_p.h"

namespace {

struct Hooks {
    std::mutex lock;
    KxDialogHook dialog;
    KxStatusHook status;
};

Hooks& hooks() {
    static Hooks h;
    return h;
}

void append_v(std::string& out, const char* format, va_list args) {
    kxbase::detail::AppendFormatV(out, format, args);
}

int show_dialog(const std::string& text, UINT type) {
    KxDialogHook hook;
    {
        std::lock_guard<std::mutex> guard(hooks().lock);
        hook = hooks().dialog;
    }
    // The hook runs outside the lock so that it may itself install hooks or show messages.
    return hook ? hook(CString(text), type) : 0;
}

void show_status(const std::string& text) {
    KxStatusHook hook;
    {
        std::lock_guard<std::mutex> guard(hooks().lock);
        hook = hooks().status;
    }
    if (hook) hook(CString(text));
}

}  // namespace

KxDialogHook KxSetDialogHook(KxDialogHook hook) {
    std::lock_guard<std::mutex> guard(hooks().lock);
    std::swap(hooks().dialog, hook);
    return hook;
}

KxStatusHook KxSetStatusHook(KxStatusHook hook) {
    std::lock_guard<std::mutex> guard(hooks().lock);
    std::swap(hooks().status, hook);
    return hook;
}

CString ZelLoadString(HINSTANCE module, unsigned int id) {
    if (id == 0) return CString();
    char buf[1000];
    const int n = KxLoadString(module, id, buf, static_cast<int>(sizeof buf));
    return n > 0 ? CString(buf, n) : CString();
}

int ZelDialogMsg(const char* format, ...) {
    if (format == nullptr) return 0;
    try {
        std::string text;
        va_list args;
        va_start(args, format);
        append_v(text, format, args);
        va_end(args);
        return show_dialog(text, MB_ICONINFORMATION);
    } catch (...) {
        return 0;
    }
}

int ZelDialogMsg(HINSTANCE module, unsigned int headId, unsigned int tailId, unsigned int type,
                 const char* format, ...) {
    try {
        const std::string head = headId != 0 ? ZelLoadString(module, headId).str() : std::string();
        std::string text = head;
        if (format != nullptr) {
            va_list args;
            va_start(args, format);
            append_v(text, format, args);
            va_end(args);
        }
        if (tailId != 0) text += head;  // the tail repeats the head string, by contract
        return show_dialog(text, type);
    } catch (...) {
        return 0;
    }
}

void ZelStatusMsg(const char* format, ...) {
    try {
        std::string text;
        if (format != nullptr) {
            va_list args;
            va_start(args, format);
            append_v(text, format, args);
            va_end(args);
        }
        show_status(text);
    } catch (...) {
    }
}

void ZelStatusMsg(HINSTANCE module, unsigned int headId, unsigned int tailId, const char* format,
                  ...) {
    try {
        std::string text = headId != 0 ? ZelLoadString(module, headId).str() : std::string();
        if (format != nullptr) {
            va_list args;
            va_start(args, format);
            append_v(text, format, args);
            va_end(args);
        }
        if (tailId != 0) text += ZelLoadString(module, tailId).str();
        show_status(text);
    } catch (...) {
    }
}
