#pragma once

#include <stdexcept>

namespace Orvel::Cli
{

/// The work cannot be done (exit code 1). `what()` is the text of the one line for the user.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The command line is wrong (exit code 2). `what()` is the text of the one line for the user.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace Orvel::Cli
