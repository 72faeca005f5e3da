#pragma once

#include "platform/prcfile/oPRCFile.h"
#include "prc/COrvelPRCHandler.h"
#include "support/PRCDecoder.h"

#include <vector>

namespace Orvel::Test
{

/// One plain run into memory, step by step: tests call the converter's operations between start and Finish.
class PRCRun
{
public:
    PRCRun() { converter.PrepareExport(); }

    /// Writes the file and decodes it.
    PRCContent Finish()
    {
        file.finish();
        return DecodePRC(bytes);
    }

    COrvelPRCHandler& converter = *COrvelPRCHandler::Instance();

private:
    std::vector<std::uint8_t> bytes;

public:
    prc::oPRCFile file{bytes, 1.0, 1};
};

} // namespace Orvel::Test
