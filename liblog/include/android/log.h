/*
 * Minimal stand-in for the Android NDK's <android/log.h>, used only when
 * neither the NDK nor Debian's android-liblog-dev is available. It declares
 * exactly what libSarnISDBTUtils uses, with the same signature as liblog.
 */
#ifndef SARN_STANDIN_ANDROID_LOG_H
#define SARN_STANDIN_ANDROID_LOG_H

#ifdef __cplusplus
extern "C" {
#endif

typedef enum android_LogPriority {
    ANDROID_LOG_UNKNOWN = 0,
    ANDROID_LOG_DEFAULT,
    ANDROID_LOG_VERBOSE,
    ANDROID_LOG_DEBUG,
    ANDROID_LOG_INFO,
    ANDROID_LOG_WARN,
    ANDROID_LOG_ERROR,
    ANDROID_LOG_FATAL,
    ANDROID_LOG_SILENT,
} android_LogPriority;

int __android_log_print(int prio, const char* tag, const char* fmt, ...)
    __attribute__((__format__(printf, 3, 4)));

#ifdef __cplusplus
}
#endif

#endif
