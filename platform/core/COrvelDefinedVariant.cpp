#include "platform/core/COrvelDefinedVariant.h"

namespace Orvel
{

COrvelVariant::~COrvelVariant() = default;

} // namespace Orvel
