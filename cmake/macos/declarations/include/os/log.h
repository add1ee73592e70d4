// Our own declarations of what this program uses of the unified log, after its public documentation. A real
// Mac's own header, whose macro also puts the format where the log's reader finds it, takes its place there.
#pragma once
#include <stdbool.h>
#include <stdint.h>

#if __has_include(<os/object.h>)
#include <os/object.h>
#else
#ifdef __cplusplus
extern "C"
#endif
    void
    os_release(void* object);
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct os_log_s* os_log_t;
typedef uint8_t os_log_type_t;
enum { OS_LOG_TYPE_DEFAULT = 0x00, OS_LOG_TYPE_INFO = 0x01, OS_LOG_TYPE_ERROR = 0x10 };

/* Never null; os_release ends it. */
extern os_log_t os_log_create(const char* subsystem, const char* category);
extern bool os_log_type_enabled(os_log_t log, os_log_type_t type);
extern void _os_log_impl(void* image, os_log_t log, os_log_type_t type, const char* format, uint8_t* buffer,
                         uint32_t size);
extern void* __dso_handle;

#ifdef __cplusplus
}
#endif

/* Any thread. The compiler lays the arguments out, each with its mark: public, private or neither. */
#define os_log_with_type(log, type, format, ...)                                                    \
    do {                                                                                            \
        if (!os_log_type_enabled(log, type)) break;                                                 \
        uint8_t buffer_[__builtin_os_log_format_buffer_size(format __VA_OPT__(, ) __VA_ARGS__)];    \
        _os_log_impl(&__dso_handle, log, type, format,                                              \
                     (uint8_t*)__builtin_os_log_format(buffer_, format __VA_OPT__(, ) __VA_ARGS__), \
                     sizeof buffer_);                                                               \
    } while (0)
