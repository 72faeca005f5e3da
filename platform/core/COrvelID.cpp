#include "platform/core/COrvelID.h"

namespace Orvel
{

namespace
{

int readingDepth = 0;

} // namespace

void COrvelID::SetReadingMode(bool on)
{
    if (on)
        ++readingDepth;
    else if (readingDepth > 0)
        --readingDepth;
}

bool COrvelID::IsReadingMode()
{
    return readingDepth > 0;
}

} // namespace Orvel
