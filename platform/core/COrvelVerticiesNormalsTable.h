#pragma once

// The two kinds of vector tables stand together with their base.
#include "platform/core/COrvel3DVectorsTable.h" // IWYU pragma: export
