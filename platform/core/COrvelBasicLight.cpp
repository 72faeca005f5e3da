#include "platform/core/COrvelBasicLight.h"

#include "platform/core/KindRegistry.h"

#include <memory>

namespace Orvel
{

namespace
{

template <class Light>
void RegisterLight(KindRegistry<COrvelBasicLight>& kinds)
{
    kinds.Register(Light().KindName(), [] { return static_cast<COrvelBasicLight*>(new Light); });
}

/// Never destroyed: lights may be read however late in the process.
KindRegistry<COrvelBasicLight>& Kinds()
{
    static KindRegistry<COrvelBasicLight>* const kinds = [] {
        auto made = std::make_unique<KindRegistry<COrvelBasicLight>>();
        RegisterLight<COrvelBasicPointLight>(*made);
        RegisterLight<COrvelBasicSpotLight>(*made);
        RegisterLight<COrvelBasicDirectionalLight>(*made);
        return made.release();
    }();
    return *kinds;
}

} // namespace

COrvelObject* COrvelBasicLight::MakeCopy()
{
    return Clone();
}

COrvelBasicLight* COrvelBasicLight::Interpolate(const COrvelBasicLight* to, double t) const
{
    if (!to || to->KindName() != KindName())
        return nullptr;
    std::unique_ptr<COrvelBasicLight> blend(Clone());
    const std::unique_ptr<COrvelBasicLight> end(to->Clone());
    BlendFields(blend->Fields(), end->Fields(), t);
    if (t >= 0.5)
        blend->SetName(to->Name());
    return blend.release();
}

COrvelBasicLight* COrvelBasicLight::CreateBasicLight(const COrvelString& kind)
{
    return Kinds().Create(kind);
}

void COrvelBasicLight::RegisterKind(const COrvelString& kind, Factory factory)
{
    Kinds().Register(kind, factory);
}

COrvelStructureDescription COrvelBasicLight::StructureDescription()
{
    return COrvelStructureDescription(Fields());
}

bool COrvelBasicLight::ReadDescribed(COrvelArchiveBase& archive, const COrvelStructureDescription& description)
{
    return COrvelDataMembersManager::ReadFromArchive(archive) && description.ReadInto(archive, Fields());
}

bool COrvelBasicLight::ReadFromArchive(COrvelArchiveBase& archive)
{
    return COrvelDataMembersManager::ReadFromArchive(archive) && ArchiveFields(archive, Fields());
}

bool COrvelBasicLight::WriteIntoArchive(COrvelArchiveBase& archive)
{
    return COrvelDataMembersManager::WriteIntoArchive(archive) && ArchiveFields(archive, Fields());
}

void COrvelBasicLight::ListFields(std::vector<COrvelField>& fields)
{
    fields.push_back({"color", &color});
    fields.push_back({"intensity", &intensity});
}

std::vector<COrvelField> COrvelBasicLight::Fields()
{
    std::vector<COrvelField> fields;
    ListFields(fields);
    return fields;
}

COrvelBasicLight* COrvelBasicPointLight::Clone() const
{
    return new COrvelBasicPointLight(*this);
}

COrvelString COrvelBasicPointLight::KindName() const
{
    return "COrvelBasicPointLight";
}

void COrvelBasicPointLight::ListFields(std::vector<COrvelField>& fields)
{
    COrvelBasicLight::ListFields(fields);
    fields.push_back({"range", &range});
}

void COrvelBasicSpotLight::SetAnglesInDegrees(double inner, double outer)
{
    innerAngleInDegrees = inner;
    outerAngleInDegrees = outer;
}

COrvelBasicLight* COrvelBasicSpotLight::Clone() const
{
    return new COrvelBasicSpotLight(*this);
}

COrvelString COrvelBasicSpotLight::KindName() const
{
    return "COrvelBasicSpotLight";
}

void COrvelBasicSpotLight::ListFields(std::vector<COrvelField>& fields)
{
    COrvelBasicPointLight::ListFields(fields);
    fields.push_back({"innerAngleInDegrees", &innerAngleInDegrees});
    fields.push_back({"outerAngleInDegrees", &outerAngleInDegrees});
}

COrvelBasicLight* COrvelBasicDirectionalLight::Clone() const
{
    return new COrvelBasicDirectionalLight(*this);
}

COrvelString COrvelBasicDirectionalLight::KindName() const
{
    return "COrvelBasicDirectionalLight";
}

} // namespace Orvel
