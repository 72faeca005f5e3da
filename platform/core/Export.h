#pragma once

/// Marks what the shared library OrvelCore exports; everything else stays hidden inside it.
#if defined(_WIN32)
#if defined(ORVEL_CORE_BUILD)
#define ORVEL_CORE_API __declspec(dllexport)
#else
#define ORVEL_CORE_API __declspec(dllimport)
#endif
#else
#define ORVEL_CORE_API __attribute__((visibility("default")))
#endif
