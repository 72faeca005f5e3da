#include "platform/prcfile/WriteTimer.h"

namespace prc
{

namespace
{

WriteTimes total;

} // namespace

WriteTimes writeTimes()
{
    return total;
}

WriteTimer::~WriteTimer()
{
    total.*part += std::chrono::steady_clock::now() - start;
}

} // namespace prc
