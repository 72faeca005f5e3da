#pragma once

#include <chrono>
#include <string>

namespace Orvel::Cli
{

/// One line on a terminal that tells what is being done, for work that takes longer than a second.
class Progress
{
public:
    enum class Visibility
    {
        OnTerminal, ///< shown when stderr is a terminal
        Never
    };

    explicit Progress(Visibility visibility);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Takes the line away.
    ~Progress();

    void SetStage(const std::string& newStage) { stage = newStage; }

    /// Shows the line or brings it up to date.
    void Show(std::chrono::milliseconds sinceStart);

    /// Takes the line away, so that something else can be printed there.
    void Hide();

private:
    bool visible = false;
    std::string stage;
    std::string shown; ///< the text on the terminal; empty: none
};

} // namespace Orvel::Cli
