#pragma once

#include "platform/prcfile/WriteTimes.h"

#include <chrono>

namespace prc
{

/// Adds the time until its end to a part of what writeTimes() returns.
class WriteTimer
{
public:
    using Part = std::chrono::nanoseconds WriteTimes::*;

    explicit WriteTimer(Part timedPart)
        : part(timedPart)
        , start(std::chrono::steady_clock::now())
    {}
    WriteTimer(const WriteTimer&) = delete;
    WriteTimer& operator=(const WriteTimer&) = delete;
    ~WriteTimer();

private:
    Part part;
    std::chrono::steady_clock::time_point start;
};

} // namespace prc
