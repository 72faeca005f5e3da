#include "tool/cli/Progress.h"

#include "tool/cli/Console.h"
#include "tool/cli/Text.h"

#include <unistd.h>

namespace Orvel::Cli
{

namespace
{

constexpr std::chrono::seconds Patience{1};
constexpr const char* EraseLine = "\r\x1b[K";

} // namespace

Progress::Progress(Visibility visibility)
    : visible(visibility == Visibility::OnTerminal && ::isatty(STDERR_FILENO) == 1)
{}

Progress::~Progress()
{
    Hide();
}

void Progress::Show(std::chrono::milliseconds sinceStart)
{
    if (!visible || sinceStart < Patience || stage.empty())
        return;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(sinceStart).count();
    const std::string line = "orvelprc: " + OneLine(stage) + " ... " + std::to_string(seconds) + " s";
    if (line != shown) {
        PrintMessage(EraseLine + line);
        shown = line;
    }
}

void Progress::Hide()
{
    if (!shown.empty()) {
        PrintMessage(EraseLine);
        shown.clear();
    }
}

} // namespace Orvel::Cli
