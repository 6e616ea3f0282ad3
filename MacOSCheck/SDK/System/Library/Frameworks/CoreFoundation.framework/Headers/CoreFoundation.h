#pragma once

// CoreFoundation as far as the extension uses it. See MacOSCheck/README.md.

#include <Availability.h>
#include <TargetConditionals.h>
#include <os/availability.h>

#if defined(__cplusplus)
#define CF_EXPORT extern "C"
#else
#define CF_EXPORT extern
#endif

#define CF_ENUM(type, name) \
    enum name : type name;  \
    enum name : type
#if defined(__cplusplus)
#define CF_OPTIONS(type, name) \
    type name;                 \
    enum : type
#else
#define CF_OPTIONS(type, name) \
    enum name : type name;     \
    enum name : type
#endif
