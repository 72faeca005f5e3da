#include "tool/cli/WriteScene.h"

#include "mapping/COrvelPRCMapper.h"
#include "tool/cli/Errors.h"
#include "tool/cli/OutputTarget.h"
#include "tool/record/ExportRecord.h"
#include "writer/COrvelPRCWriter.h"

#include <cerrno>
#include <fstream>
#include <system_error>

namespace Orvel::Cli
{

namespace
{

void WriteRecordFile(const COrvelPRCMapper& mapper, const Record::RunFacts& facts, const ExportFiles& files,
                     const ExportOptions& options)
{
    std::ofstream out(files.record, std::ios::binary);
    Record::WriteRecord(mapper, facts, out);
    out.close();
    if (!out)
        throw CannotWrite(options.record, std::generic_category().message(errno));
}

/// @param mapper null: nobody reads what an animated run would record and add to the file.
bool Export(COrvelPRCWriter& writer, COrvelDocument& document, const COrvelString& file, COrvelPRCMapper* mapper)
{
    if (!mapper)
        return writer.Export(&document, file, nullptr, nullptr, nullptr, nullptr, COrvelUnit());
    writer.SetPRCMapper(mapper);
    return writer.ExportToMemory(&document, file, nullptr, nullptr, nullptr);
}

} // namespace

void WriteScene(const Import::LoadedDocument& loaded, const ExportFiles& files, const ExportOptions& options)
{
    const bool wantsRecord = !files.record.empty();
    COrvelPRCMapper mapper;
    COrvelPRCWriter writer;
    writer.SetMaximumTextureSize(options.maximumTextureSize);
    try {
        if (!Export(writer, *loaded.document, COrvelString(files.output.c_str()), wantsRecord ? &mapper : nullptr))
            throw Failure("the scene could not be written");
    } catch (const std::system_error& error) {
        // The name of the file would tell the user nothing: it is the one that takes the output's place meanwhile.
        throw CannotWrite(options.output, error.code().message());
    }
    if (wantsRecord)
        WriteRecordFile(mapper, {}, files, options);
}

} // namespace Orvel::Cli
