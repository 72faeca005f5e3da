#include "platform/core/COrvelStructureDescription.h"

#include "platform/core/COrvelArchiveBase.h"

#include <algorithm>
#include <cassert>
#include <type_traits>
#include <utility>

namespace Orvel
{

namespace
{

bool ArchiveValue(COrvelArchiveBase& archive, bool& value)
{
    return archive.ReadWrite(value);
}

bool ArchiveValue(COrvelArchiveBase& archive, double& value)
{
    return archive.ReadWrite(value);
}

bool ArchiveValue(COrvelArchiveBase& archive, COrvelString& value)
{
    return archive.ReadWrite(value);
}

bool ArchiveValue(COrvelArchiveBase& archive, COrvelColor& value)
{
    double r = value.R();
    double g = value.G();
    double b = value.B();
    double a = value.A();
    if (!archive.ReadWrite(r) || !archive.ReadWrite(g) || !archive.ReadWrite(b) || !archive.ReadWrite(a))
        return false;
    value = COrvelColor(r, g, b, a);
    return true;
}

bool ArchiveValue(COrvelArchiveBase& archive, std::optional<double>& value)
{
    bool present = value.has_value();
    double number = value.value_or(0.0);
    if (!archive.ReadWrite(present) || !archive.ReadWrite(number))
        return false;
    value = present ? std::optional(number) : std::nullopt;
    return true;
}

bool WriteTextures(COrvelArchiveBase& archive, COrvelTextures& textures)
{
    uint32 count = static_cast<uint32>(textures.size());
    if (!archive.ReadWrite(count))
        return false;
    for (auto& [textureType, texture] : textures) {
        int type = textureType;
        if (!archive.ReadWrite(type) || !archive.ReadWrite(texture))
            return false;
    }
    return true;
}

bool ReadTextures(COrvelArchiveBase& archive, COrvelTextures& textures)
{
    constexpr uint32 bytesPerTexture = 8; // the type and the length of the name
    uint32 count = 0;
    if (!archive.ReadWriteCount(count, bytesPerTexture))
        return false;
    COrvelTextures read;
    for (uint32 k = 0; k < count; ++k) {
        int type = 0;
        COrvelTexture texture;
        if (!archive.ReadWrite(type) || !archive.ReadWrite(texture))
            return false;
        read.insert_or_assign(type, std::move(texture));
    }
    textures = std::move(read);
    return true;
}

bool ArchiveValue(COrvelArchiveBase& archive, COrvelTextures& textures)
{
    return archive.IsReaderArchive() ? ReadTextures(archive, textures) : WriteTextures(archive, textures);
}

bool ArchivePlace(COrvelArchiveBase& archive, const COrvelField::Place& place)
{
    return std::visit([&archive](auto* value) { return ArchiveValue(archive, *value); }, place);
}

/// Reads a value of the numbered type to nowhere.
template <std::size_t type = 0>
bool PassOver(COrvelArchiveBase& archive, std::size_t wanted)
{
    if constexpr (type < std::variant_size_v<COrvelField::Place>) {
        if (type != wanted)
            return PassOver<type + 1>(archive, wanted);
        std::remove_pointer_t<std::variant_alternative_t<type, COrvelField::Place>> dropped{};
        return ArchiveValue(archive, dropped);
    } else {
        return false;
    }
}

double Between(double from, double to, double t)
{
    // Not from + (to - from) * t, which misses the end at t = 1.
    return (1.0 - t) * from + t * to;
}

void Blend(double& value, const double& to, double t)
{
    value = Between(value, to, t);
}

void Blend(COrvelColor& value, const COrvelColor& to, double t)
{
    value = COrvelColor(Between(value.R(), to.R(), t), Between(value.G(), to.G(), t), Between(value.B(), to.B(), t),
                        Between(value.A(), to.A(), t));
}

void Blend(std::optional<double>& value, const std::optional<double>& to, double t)
{
    if (value || to)
        value = Between(value.value_or(1.0), to.value_or(1.0), t);
}

/// What has no middle comes from the nearer end.
template <class Value>
void Blend(Value& value, const Value& to, double t)
{
    if (t >= 0.5)
        value = to;
}

} // namespace

bool ArchiveFields(COrvelArchiveBase& archive, const std::vector<COrvelField>& fields)
{
    return std::all_of(fields.begin(), fields.end(),
                       [&archive](const COrvelField& field) { return ArchivePlace(archive, field.place); });
}

void BlendFields(const std::vector<COrvelField>& fields, const std::vector<COrvelField>& to, double t)
{
    assert(fields.size() == to.size() && "both objects are of one class");
    for (std::size_t k = 0; k < fields.size(); ++k) {
        std::visit([&other = to[k].place, t](auto* value) { Blend(*value, *std::get<decltype(value)>(other), t); },
                   fields[k].place);
    }
}

COrvelStructureDescription::COrvelStructureDescription(const std::vector<COrvelField>& fields)
{
    for (const COrvelField& field : fields)
        entries.push_back({field.name, static_cast<int>(field.place.index())});
}

bool COrvelStructureDescription::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    constexpr uint32 bytesPerEntry = 8; // the length of the name and the type
    uint32 count = static_cast<uint32>(entries.size());
    if (!archive.ReadWriteCount(count, bytesPerEntry))
        return false;
    std::vector<Entry> archived = entries;
    archived.resize(count);
    for (Entry& entry : archived)
        if (!archive.ReadWrite(entry.name) || !archive.ReadWrite(entry.type))
            return false;
    entries = std::move(archived);
    return true;
}

bool COrvelStructureDescription::ReadInto(COrvelArchiveBase& archive, const std::vector<COrvelField>& known) const
{
    for (const Entry& entry : entries) {
        const auto found = std::find_if(known.begin(), known.end(), [&entry](const COrvelField& field) {
            return entry.name == field.name && entry.type == static_cast<int>(field.place.index());
        });
        const bool read = found != known.end() ? ArchivePlace(archive, found->place)
                                               : PassOver(archive, static_cast<std::size_t>(entry.type));
        if (!read)
            return false;
    }
    return true;
}

} // namespace Orvel
