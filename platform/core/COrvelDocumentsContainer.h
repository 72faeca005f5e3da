#pragma once

#include "platform/core/COrvelID.h"
#include "platform/core/COrvelUUID.h"
#include "platform/core/Export.h"

#include <map>
#include <memory>

namespace Orvel
{

class COrvelDocument;

/// The documents of the process, and what is known about the last file that was read into one of them: the version of
/// its layout, and which ids and GUIDs took the place of those in the file.
class ORVEL_CORE_API COrvelDocumentsContainer
{
public:
    /// The one container: made on first use, never destroyed, never null.
    static COrvelDocumentsContainer* DocumentsContainer();

    COrvelDocumentsContainer(const COrvelDocumentsContainer&) = delete;
    COrvelDocumentsContainer& operator=(const COrvelDocumentsContainer&) = delete;

    /// A document for entities that belong to no scene; made on first use, always the same, never null.
    COrvelDocument* TheTempDocument();

    /// The newest version until a load says otherwise.
    int LastReadDocumentVersion() const { return lastReadDocumentVersion; }
    void SetLastReadDocumentVersion(int version) { lastReadDocumentVersion = version; }

    // --- replacements during a load

    /// The GUID that took the place of `old`; invalid when there is none.
    COrvelUUID ReplacedUUID(const COrvelUUID& old) const;
    void AddReplacedUUID(const COrvelUUID& old, const COrvelUUID& replacement);
    /// The id that took the place of `old`, or `old` itself when there is none.
    COrvelID TranslatedID(const COrvelID& old) const;
    void AddTranslatedID(const COrvelID& old, const COrvelID& replacement);
    /// Id of the line path that an old file names by this number; the default id when unknown.
    COrvelID GetLinePathIDFor(int oldNumber) const;
    void AddLinePathID(int oldNumber, const COrvelID& linePath);
    /// Forgets all replacements; the version stays.
    void ClearReplacements();

private:
    COrvelDocumentsContainer();
    ~COrvelDocumentsContainer() = delete;

    std::unique_ptr<COrvelDocument> tempDocument;
    int lastReadDocumentVersion;
    std::map<COrvelUUID, COrvelUUID> replacedUUIDs;
    std::map<COrvelID, COrvelID> translatedIDs;
    std::map<int, COrvelID> linePathIDs;
};

} // namespace Orvel
