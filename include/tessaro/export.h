// Marks what the shared library exports.
#pragma once

#if defined(_WIN32) && defined(TESSARO_STATIC)
#define TESSARO_API
#elif defined(_WIN32) && defined(TESSARO_BUILDING)
#define TESSARO_API __declspec(dllexport)
#elif defined(_WIN32)
#define TESSARO_API __declspec(dllimport)
#else
#define TESSARO_API __attribute__((visibility("default")))
#endif
