#pragma once

/// Marks what the shared library OrvelAnimation exports; everything else stays hidden inside it.
#if defined(_WIN32)
#if defined(ORVEL_ANIMATION_BUILD)
#define ORVEL_ANIMATION_API __declspec(dllexport)
#else
#define ORVEL_ANIMATION_API __declspec(dllimport)
#endif
#else
#define ORVEL_ANIMATION_API __attribute__((visibility("default")))
#endif
