#include "tool/cli/Program.h"

int main(int argumentCount, char** arguments)
{
    return Orvel::Cli::RunProgram(argumentCount, arguments);
}
