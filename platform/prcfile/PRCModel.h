#pragma once

#include "platform/prcfile/Export.h"
#include "platform/prcfile/FileLayout.h"
#include "platform/prcfile/PRCGlobals.h"
#include "platform/prcfile/PRCTessellation.h"
#include "platform/prcfile/PRCTree.h"
#include "platform/prcfile/UniqueId.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace prc::Model
{

/// How far the reader came with a section.
enum class SectionState
{
    Absent,  ///< the file has none, or the reader did not come so far.
    Read,    ///< completely.
    Partial, ///< up to something that the reader does not know or that is wrong; what stands before it is there.
    Skipped, ///< unpacked but not read: exact geometry.
    Damaged  ///< could not be unpacked.
};

/// One stored section and what it takes up.
struct SectionSummary
{
    SectionState state = SectionState::Absent;
    std::uint64_t offset = 0;        ///< in bytes from the start of the file.
    std::uint64_t storedBytes = 0;   ///< in the file, compressed where the format compresses.
    std::uint64_t unpackedBytes = 0; ///< the same as storedBytes for a section that is not compressed.
};

/// A schema: fields that the writer of a file adds to the entities of a type.
struct SchemaSummary
{
    std::uint32_t entityType = 0;
    std::uint32_t tokenCount = 0;
};

struct FileStructure
{
    UniqueId id{};
    UniqueId applicationId{};
    std::uint32_t minimalVersionForRead = 0;
    std::uint32_t authoringVersion = 0;
    std::array<SectionSummary, sectionCount> sections; ///< by Section.

    std::vector<std::vector<std::uint8_t>> storedFiles; ///< the encoded pictures.
    std::vector<SchemaSummary> schemas;
    Globals globals;
    std::vector<Part> parts;
    std::vector<ProductOccurrence> occurrences;
    std::uint32_t root = nullIndex; ///< the occurrence that the tree section names as its root.
    std::vector<Tessellation> tessellations;
    std::uint32_t announcedTessellations = 0; ///< as many as the section says it holds; more than were read if Partial.
};

enum class Severity
{
    Note, ///< something was skipped, replaced by "none", or is unusual.
    Error ///< a section or the file could not be read to its end.
};

/// Something that the reader has to say. `place` names section and byte or bit, `text` what was expected and found.
struct Finding
{
    Severity severity = Severity::Note;
    std::string place;
    std::string text;

    [[nodiscard]] std::string message() const { return place + ": " + text; }
};

/// Everything that was read from a PRC file. Plain values; nothing refers to the bytes of the file.
struct PRCModel
{
    std::uint64_t fileSize = 0;
    std::uint32_t minimalVersionForRead = 0;
    std::uint32_t authoringVersion = 0;
    UniqueId id{};
    UniqueId applicationId{};
    std::uint64_t headerBytes = 0; ///< of the main header.
    std::vector<FileStructure> structures;

    SectionSummary modelFile;
    Name name;
    bool unitFromAuthoringSystem = false;
    double unitInMillimetres = 1.0;
    std::vector<OccurrenceReference> roots; ///< existing occurrences only; at least one when the file has any.

    std::vector<Finding> findings;     ///< in the order of reading; the first few hundred.
    std::uint64_t findingsLeftOut = 0; ///< how many there were beyond these.

    [[nodiscard]] bool hasErrors() const
    {
        for (const Finding& finding : findings) {
            if (finding.severity == Severity::Error)
                return true;
        }
        return false;
    }
};

} // namespace prc::Model
