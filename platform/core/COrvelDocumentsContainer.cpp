#include "platform/core/COrvelDocumentsContainer.h"

#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/COrvelDocument.h"

namespace Orvel
{

COrvelDocumentsContainer::COrvelDocumentsContainer()
    : lastReadDocumentVersion(COrvelArchiveBase::newestVersion)
{}

COrvelDocumentsContainer* COrvelDocumentsContainer::DocumentsContainer()
{
    static COrvelDocumentsContainer* const container = new COrvelDocumentsContainer;
    return container;
}

COrvelDocument* COrvelDocumentsContainer::TheTempDocument()
{
    if (!tempDocument)
        tempDocument = std::make_unique<COrvelDocument>();
    return tempDocument.get();
}

COrvelUUID COrvelDocumentsContainer::ReplacedUUID(const COrvelUUID& old) const
{
    const auto found = replacedUUIDs.find(old);
    return found == replacedUUIDs.end() ? COrvelUUID() : found->second;
}

void COrvelDocumentsContainer::AddReplacedUUID(const COrvelUUID& old, const COrvelUUID& replacement)
{
    replacedUUIDs.insert_or_assign(old, replacement);
}

COrvelID COrvelDocumentsContainer::TranslatedID(const COrvelID& old) const
{
    const auto found = translatedIDs.find(old);
    return found == translatedIDs.end() ? old : found->second;
}

void COrvelDocumentsContainer::AddTranslatedID(const COrvelID& old, const COrvelID& replacement)
{
    translatedIDs.insert_or_assign(old, replacement);
}

COrvelID COrvelDocumentsContainer::GetLinePathIDFor(int oldNumber) const
{
    const auto found = linePathIDs.find(oldNumber);
    return found == linePathIDs.end() ? COrvelID() : found->second;
}

void COrvelDocumentsContainer::AddLinePathID(int oldNumber, const COrvelID& linePath)
{
    linePathIDs.insert_or_assign(oldNumber, linePath);
}

void COrvelDocumentsContainer::ClearReplacements()
{
    replacedUUIDs.clear();
    translatedIDs.clear();
    linePathIDs.clear();
}

} // namespace Orvel
