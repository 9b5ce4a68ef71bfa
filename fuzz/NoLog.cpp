// The harnesses replace liblog's __android_log_print: the library's messages
// are formatted (so format/argument mismatches still surface under the
// sanitizers) and dropped.
#include <cstdarg>
#include <cstdio>

extern "C" int __android_log_print(int, const char*, const char* fmt, ...) {
    char text[1024];
    va_list ap;
    va_start(ap, fmt);
    int n = std::vsnprintf(text, sizeof text, fmt, ap);
    va_end(ap);
    return n;
}
