#include "platform/core/COrvelArchiveWriter.h"

#include "platform/core/ArchiveHeader.h"
#include "platform/core/ReplacedFile.h"

namespace Orvel
{

namespace
{

constexpr std::size_t bufferSize = 1 << 16;

} // namespace

COrvelArchiveWriter::COrvelArchiveWriter() = default;

COrvelArchiveWriter::COrvelArchiveWriter(const COrvelString& fileName)
    : file(std::make_unique<ReplacedFile>(FilePath(fileName)))
{}

COrvelArchiveWriter::~COrvelArchiveWriter() = default;

bool COrvelArchiveWriter::ReadWriteBytes(std::span<std::uint8_t> bytes)
{
    if (failed)
        return false;
    if (file && bytesToWrite.size() + bytes.size() > bufferSize && !WriteToFile())
        return false;
    if (file && bytes.size() > bufferSize) {
        failed = !file->Write(bytes);
        return !failed;
    }
    bytesToWrite.insert(bytesToWrite.end(), bytes.begin(), bytes.end());
    return true;
}

bool COrvelArchiveWriter::WriteToFile()
{
    failed = !file->Write(bytesToWrite);
    bytesToWrite.clear();
    return !failed;
}

bool COrvelArchiveWriter::WriteHeader()
{
    ArchiveHeader header{Version(), HasExtendedRecords()};
    return ReadWrite(header);
}

bool COrvelArchiveWriter::Commit()
{
    if (failed || !file)
        return !failed;
    if (WriteToFile())
        failed = !file->Commit();
    return !failed;
}

} // namespace Orvel
