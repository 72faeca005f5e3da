// prc_check FILE...: decodes PRC files strictly and says what is in them. Exit code 1, with the finding on standard
// error, for the first file that deviates from the format.

#include "support/PRCDecoder.h"

#include <cstdio>
#include <exception>

int main(int argumentCount, char** arguments)
{
    for (int i = 1; i < argumentCount; ++i) {
        try {
            const Orvel::Test::PRCContent content = Orvel::Test::DecodePRCFile(arguments[i]);
            std::printf("%s: %zu occurrences, %zu tessellations, %zu styles, %zu pictures\n", arguments[i],
                        content.occurrences.size(), content.tessellations.size(), content.styles.size(),
                        content.pictures.size());
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s: %s\n", arguments[i], error.what());
            return 1;
        }
    }
    return argumentCount > 1 ? 0 : 2;
}
