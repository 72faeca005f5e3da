#pragma once

/// Marks what the shared library OrvelPRCWriter exports; everything else stays hidden inside it.
#if defined(_WIN32)
#if defined(ORVEL_PRCWRITER_BUILD)
#define ORVEL_PRCWRITER_API __declspec(dllexport)
#else
#define ORVEL_PRCWRITER_API __declspec(dllimport)
#endif
#else
#define ORVEL_PRCWRITER_API __attribute__((visibility("default")))
#endif
