#include "tool/cli/CommandParsers.h"
#include "tool/cli/DescribeProgram.h"
#include "tool/cli/OptionParsing.h"
#include "tool/manual/Completion.h"
#include "tool/manual/ManPage.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>

namespace Orvel::Cli
{

namespace
{

constexpr const char* CompletionExamples = R"(Examples:
  source <(orvelprc completion bash)
  orvelprc completion zsh >~/.zfunc/_orvelprc
  orvelprc completion fish >~/.config/fish/completions/orvelprc.fish

An installed package brings the scripts along.)";

using Script = std::string (*)(const Manual::ProgramDescription&);

} // namespace

void AddCompletionCommand(CLI::App& program, Command& chosen)
{
    const auto script = std::make_shared<Script>(nullptr);
    CLI::App& command =
        *program.add_subcommand("completion", "Print a script that teaches a shell to complete commands")
             ->group("Commands");
    command.footer(CompletionExamples);
    AddChoice<Script>(
        command, "SHELL", *script,
        {{"bash", &Manual::BashCompletion}, {"zsh", &Manual::ZshCompletion}, {"fish", &Manual::FishCompletion}},
        "The shell: bash, zsh or fish")
        ->type_name("")
        ->required();
    command.callback([script, &program, &chosen] { chosen = TextRequest{(*script)(DescribeProgram(program))}; });
}

void AddManPageCommand(CLI::App& program, Command& chosen)
{
    CLI::App& command = *program.add_subcommand("man-page", "Print the manual page, for the installation")->group("");
    command.callback([&program, &chosen] { chosen = TextRequest{Manual::ManPage(DescribeProgram(program))}; });
}

} // namespace Orvel::Cli
