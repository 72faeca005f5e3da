#include "platform/core/COrvelBasicMaterial.h"

#include "platform/core/COrvelArchiveBase.h"
#include "platform/core/COrvelBasicGeneralMaterial.h"
#include "platform/core/COrvelBasicMetallicMaterial.h"
#include "platform/core/KindRegistry.h"

#include <memory>

namespace Orvel
{

namespace
{

/// Never destroyed: materials may be read however late in the process.
KindRegistry<COrvelBasicMaterial>& Kinds()
{
    static KindRegistry<COrvelBasicMaterial>* const kinds = [] {
        auto made = std::make_unique<KindRegistry<COrvelBasicMaterial>>();
        made->Register(COrvelBasicGeneralMaterial().KindName(),
                       [] { return static_cast<COrvelBasicMaterial*>(new COrvelBasicGeneralMaterial); });
        made->Register(COrvelBasicMetallicMaterial().KindName(),
                       [] { return static_cast<COrvelBasicMaterial*>(new COrvelBasicMetallicMaterial); });
        return made.release();
    }();
    return *kinds;
}

} // namespace

COrvelObject* COrvelBasicMaterial::MakeCopy()
{
    return Clone();
}

COrvelBasicMaterial* COrvelBasicMaterial::Interpolate(const COrvelBasicMaterial* from, const COrvelBasicMaterial* to,
                                                      double t)
{
    if (!from || !to)
        return nullptr;
    std::unique_ptr<COrvelBasicMaterial> blend(from->Clone());
    const std::unique_ptr<COrvelBasicMaterial> end(to->Clone());
    if (blend->KindName() == end->KindName()) {
        BlendFields(blend->Fields(), end->Fields(), t);
    } else {
        blend.reset(blend->ApproximateToGeneralMaterial()->Clone());
        BlendFields(blend->Fields(), end->ApproximateToGeneralMaterial()->Fields(), t);
    }
    const COrvelBasicMaterial& nearer = t < 0.5 ? *from : *to;
    blend->SetName(nearer.Name());
    return blend.release();
}

COrvelBasicMaterial* COrvelBasicMaterial::CreateBasicMaterial(const COrvelString& kind)
{
    return Kinds().Create(kind);
}

void COrvelBasicMaterial::RegisterKind(const COrvelString& kind, Factory factory)
{
    Kinds().Register(kind, factory);
}

bool COrvelBasicMaterial::ArchiveEmbeddedStructure(COrvelArchiveBase& archive)
{
    uint32 count = 0;
    return archive.ReadWrite(count) && count == 0;
}

COrvelStructureDescription COrvelBasicMaterial::StructureDescription()
{
    return COrvelStructureDescription(Fields());
}

bool COrvelBasicMaterial::ReadDescribed(COrvelArchiveBase& archive, const COrvelStructureDescription& description)
{
    return COrvelDataMembersManager::ReadFromArchive(archive) && description.ReadInto(archive, Fields());
}

bool COrvelBasicMaterial::ReadFromArchive(COrvelArchiveBase& archive)
{
    return COrvelDataMembersManager::ReadFromArchive(archive) && ArchiveFields(archive, Fields());
}

bool COrvelBasicMaterial::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return COrvelDataMembersManager::WriteIntoArchive(archive) && ArchiveFields(archive, Fields());
}

std::vector<COrvelField> COrvelBasicMaterial::Fields()
{
    std::vector<COrvelField> fields;
    ListFields(fields);
    return fields;
}

} // namespace Orvel
