#include "platform/core/COrvelUUID.h"

#include "platform/core/COrvelArchiveBase.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <algorithm>
#include <random>
#include <utility>

namespace Orvel
{

namespace
{

// Never destroyed: objects that live until the process ends may still want an identifier.
COrvelUUID::Generator& InstalledGenerator()
{
    static auto* const generator = new COrvelUUID::Generator;
    return *generator;
}

COrvelUUID::Bytes FromQt(const QUuid& value)
{
    const QByteArray network = value.toRfc4122();
    COrvelUUID::Bytes bytes{};
    std::copy_n(network.begin(), bytes.size(), bytes.begin());
    return bytes;
}

COrvelUUID::Bytes RandomBytes(const COrvelUUID::Generator& generator)
{
    COrvelUUID::Bytes bytes{};
    for (std::size_t half = 0; half < 2; ++half) {
        const std::uint64_t random = generator();
        for (std::size_t i = 0; i < 8; ++i)
            bytes[8 * half + i] = static_cast<std::uint8_t>(random >> (56 - 8 * i));
    }
    return bytes;
}

// RFC 4122, 4.4: the marks of a random identifier.
void MarkAsRandom(COrvelUUID::Bytes& bytes)
{
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);
}

} // namespace

void COrvelUUID::Generate()
{
    const Generator& generator = InstalledGenerator();
    if (!generator) {
        bytes = FromQt(QUuid::createUuid());
        return;
    }
    bytes = RandomBytes(generator);
    MarkAsRandom(bytes);
}

void COrvelUUID::SetGenerator(Generator generator)
{
    InstalledGenerator() = std::move(generator);
}

void COrvelUUID::SeedGenerator(std::uint64_t seed)
{
    SetGenerator(std::mt19937_64(seed));
}

bool COrvelUUID::ArchiveReadWrite(COrvelArchiveBase& archive)
{
    Bytes value = bytes;
    if (!archive.ReadWriteBytes(value))
        return false;
    bytes = value;
    return true;
}

COrvelString COrvelUUID::ToString() const
{
    QByteArray network(static_cast<int>(bytes.size()), '\0');
    std::copy(bytes.begin(), bytes.end(), network.begin());
    return COrvelString(QUuid::fromRfc4122(network).toString(QUuid::WithoutBraces).toStdString());
}

COrvelUUID COrvelUUID::FromString(const COrvelString& text)
{
    std::string digits = text.toStdString();
    if (digits.size() == 38 && digits.front() == '{' && digits.back() == '}')
        digits = digits.substr(1, 36);
    // Qt reads as far as it understands and passes over the rest.
    if (digits.size() != 36)
        return {};
    return COrvelUUID(FromQt(QUuid(QString::fromStdString(digits))));
}

} // namespace Orvel
