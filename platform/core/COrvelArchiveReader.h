#pragma once

#include "platform/core/COrvelArchiveBase.h"

#include <fstream>
#include <vector>

namespace Orvel
{

/// Reads an archive from memory or from a file.
class ORVEL_CORE_API COrvelArchiveReader final : public COrvelArchiveBase
{
public:
    /// @param bytes not owned; must outlive the archive.
    explicit COrvelArchiveReader(std::span<const std::uint8_t> bytes);
    /// A file that cannot be opened is like one without bytes.
    explicit COrvelArchiveReader(const COrvelString& fileName);

    bool IsReaderArchive() const override { return true; }
    bool ReadWriteBytes(std::span<std::uint8_t> bytes) override;

    /// Reads what COrvelArchiveWriter::WriteHeader wrote. Layout version and kinds of records of this archive become
    /// those of the file, which is from then on the last document that was read (COrvelDocumentsContainer).
    ///
    /// @return false, and nothing changes, when no archive begins here or its layout is newer than the newest.
    [[nodiscard]] bool ReadHeader();
    bool IsAtEnd() const { return BytesLeft() == 0; }

protected:
    std::uint64_t BytesLeft() const override { return window.size() + bytesBehindWindow; }

private:
    bool FillWindow();

    std::span<const std::uint8_t> window;   // what can be read without asking the file
    std::uint64_t bytesBehindWindow = 0;    // in the file
    std::vector<std::uint8_t> bufferOfFile; // what the window shows of a file
    std::ifstream file;
};

} // namespace Orvel
