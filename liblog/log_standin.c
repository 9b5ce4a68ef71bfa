/*
 * Stand-in liblog: a separate shared library exporting __android_log_print,
 * built when the platform's liblog is not installed. Like Debian's liblog it
 * writes one logcat-style line per message to stderr. Because it is a
 * separate DSO, an application or a test executable that defines its own
 * __android_log_print still takes precedence over it.
 */
#include <android/log.h>
#include <stdarg.h>
#include <stdio.h>

static char priorityLetter(int prio) {
    static const char letters[] = "??VDIWEFS";
    return (prio >= 0 && prio <= ANDROID_LOG_SILENT) ? letters[prio] : '?';
}

int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
    char text[1024];
    va_list ap;
    va_start(ap, fmt);
    int n = vsnprintf(text, sizeof text, fmt, ap);
    va_end(ap);
    fprintf(stderr, "%c %s: %s\n", priorityLetter(prio), tag ? tag : "", text);
    return n;
}
