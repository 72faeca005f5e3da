#pragma once

// The kinds of lights stand together with their base.
#include "platform/core/COrvelBasicLight.h" // IWYU pragma: export
