#include "platform/core/COrvelArchiveReader.h"

#include "platform/core/ArchiveHeader.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "platform/core/ReplacedFile.h"

#include <algorithm>

namespace Orvel
{

namespace
{

constexpr std::uint64_t bufferSize = 1 << 16;

} // namespace

COrvelArchiveReader::COrvelArchiveReader(std::span<const std::uint8_t> bytes)
    : window(bytes)
{}

COrvelArchiveReader::COrvelArchiveReader(const COrvelString& fileName)
{
    // Pipes and devices do not say how many bytes are left in them.
    std::error_code error;
    const std::filesystem::path path = FilePath(fileName);
    const std::uint64_t size = std::filesystem::file_size(path, error);
    if (error)
        return;
    file.open(path, std::ios::binary);
    if (file)
        bytesBehindWindow = size;
}

bool COrvelArchiveReader::ReadWriteBytes(std::span<std::uint8_t> bytes)
{
    if (bytes.size() > BytesLeft())
        return false;
    while (!bytes.empty()) {
        if (window.empty() && !FillWindow())
            return false;
        const std::size_t length = std::min(bytes.size(), window.size());
        std::copy_n(window.begin(), length, bytes.begin());
        window = window.subspan(length);
        bytes = bytes.subspan(length);
    }
    return true;
}

bool COrvelArchiveReader::FillWindow()
{
    bufferOfFile.resize(static_cast<std::size_t>(std::min(bufferSize, bytesBehindWindow)));
    file.read(reinterpret_cast<char*>(bufferOfFile.data()), static_cast<std::streamsize>(bufferOfFile.size()));
    if (!file) {
        // The file has become shorter, or cannot be read: nothing more comes.
        bytesBehindWindow = 0;
        return false;
    }
    bytesBehindWindow -= bufferOfFile.size();
    window = bufferOfFile;
    return true;
}

bool COrvelArchiveReader::ReadHeader()
{
    ArchiveHeader header;
    if (!header.ArchiveReadWrite(*this) || header.version < 0 || header.version > newestVersion)
        return false;
    SetVersion(header.version);
    SetExtendedRecords(header.extendedRecords);
    COrvelDocumentsContainer::DocumentsContainer()->SetLastReadDocumentVersion(header.version);
    return true;
}

} // namespace Orvel
