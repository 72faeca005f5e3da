#pragma once

/// Marks what the shared library PRCFile exports; everything else stays hidden inside it.
#if defined(_WIN32)
#if defined(PRCFILE_BUILD)
#define PRCFILE_API __declspec(dllexport)
#else
#define PRCFILE_API __declspec(dllimport)
#endif
#else
#define PRCFILE_API __attribute__((visibility("default")))
#endif
