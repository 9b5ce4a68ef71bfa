#ifndef SARN_CORE_LOG_H
#define SARN_CORE_LOG_H

// Every diagnostic of the library goes to the platform log under the tag
// "Sarn"; the format strings begin with "%s: " and the first argument is
// always the module name. The format is passed through untouched, so the
// compiler checks each call against liblog's printf attribute.
#include <android/log.h>

#define SARN_LOG_TAG "Sarn"
#define SARN_MODULE "SarnISDBTUtils"

#define SARN_LOGW(fmt, ...) \
    __android_log_print(ANDROID_LOG_WARN, SARN_LOG_TAG, fmt, SARN_MODULE, ##__VA_ARGS__)
#define SARN_LOGE(fmt, ...) \
    __android_log_print(ANDROID_LOG_ERROR, SARN_LOG_TAG, fmt, SARN_MODULE, ##__VA_ARGS__)

#endif
