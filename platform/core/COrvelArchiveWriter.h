#pragma once

#include "platform/core/COrvelArchiveBase.h"

#include <memory>
#include <vector>

namespace Orvel
{

class ReplacedFile;

/// Writes an archive into memory or into a file.
class ORVEL_CORE_API COrvelArchiveWriter final : public COrvelArchiveBase
{
public:
    /// Into memory.
    COrvelArchiveWriter();
    /// Into a file beside the named one, which it replaces only when all is written and Commit() says so; until then
    /// the named file stays as it is. Links are followed. Devices and pipes are written directly.
    ///
    /// @param fileName a file that cannot be written makes the first write fail that reaches it, Commit() at the
    /// latest.
    explicit COrvelArchiveWriter(const COrvelString& fileName);
    /// Removes what was not committed.
    ~COrvelArchiveWriter() override;

    bool IsReaderArchive() const override { return false; }
    /// Once a write has failed, every further one does.
    bool ReadWriteBytes(std::span<std::uint8_t> bytes) override;

    /// Version and kinds of records: what a file begins with that is an archive as a whole.
    [[nodiscard]] bool WriteHeader();
    /// Ends the writing and puts the file in its place.
    ///
    /// @return false when something could not be written.
    [[nodiscard]] bool Commit();
    /// What was written into memory.
    const std::vector<std::uint8_t>& Bytes() const { return bytesToWrite; }

protected:
    std::uint64_t BytesLeft() const override { return 0; }

private:
    bool WriteToFile();

    std::vector<std::uint8_t> bytesToWrite;
    std::unique_ptr<ReplacedFile> file; // null: into memory
    bool failed = false;
};

} // namespace Orvel
