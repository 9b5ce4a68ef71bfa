#include "LogCapture.h"

#include <cstdarg>
#include <cstdio>

namespace {
LogCapture* active = nullptr;
}

LogCapture::LogCapture() : outer(active) {
    active = this;
}

LogCapture::~LogCapture() {
    active = outer;
}

std::vector<std::string> LogCapture::texts() const {
    std::vector<std::string> out;
    for (const LogLine& l : captured)
        out.push_back(std::to_string(l.priority) + " " + l.text);
    return out;
}

extern "C" int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
    char text[2048];
    va_list ap;
    va_start(ap, fmt);
    int n = std::vsnprintf(text, sizeof text, fmt, ap);
    va_end(ap);
    if (active != nullptr)
        active->record(prio, tag, text);
    return n;
}
