#pragma once

#include "tests/support/PRCBitReader.h"

namespace Orvel::Test
{

/// Entity type codes of the decoded subset.
enum class EntityType : uint32_t
{
    Tess3D = 172,
    TessFace = 174,
    GeneralTransformation = 207,
    PolyBrepModel = 237,
    Set = 239,
    ModelFile = 301,
    FileStructure = 302,
    Globals = 303,
    Tree = 304,
    TessellationSection = 305,
    Geometry = 306,
    ExtraGeometry = 307,
    ProductOccurrence = 310,
    PartDefinition = 311,
    StyleEntity = 701,
    MaterialEntity = 702,
    PictureEntity = 703,
    TextureApplicationEntity = 711,
    TextureDefinitionEntity = 712,
};

/// Reads the building blocks that entities share. One reader serves one section: the current name is its state.
class PRCSectionReader : public PRCBitReader
{
public:
    struct Graphics
    {
        Name name;
        std::optional<size_t> style;
    };

    /// @param identifiers collects the identifiers of the file structure; shared by its sections.
    PRCSectionReader(std::string sectionName, std::vector<uint8_t> sectionBytes, Strictness howStrict,
                     std::vector<uint32_t>& identifiers);

    void Expect(EntityType type);
    /// The next field must be `value`; `field` names it in the error.
    void ExpectUnsigned(uint32_t value, const char* field);
    void ExpectInteger(int32_t value, const char* field);
    void ExpectCharacter(uint8_t value, const char* field);
    void ExpectBit(bool value, const char* field);
    void ExpectDouble(double value, const char* field);

    Name Base();
    void ExpectUnnamedBase();
    Name ReferencedBase();
    Graphics BaseWithGraphics(size_t styleCount);
    /// Four counts of markup data, all 0.
    void ExpectNoMarkup();
    void ExpectNoUserData() { ExpectUnsigned(0, "bits of user data"); }
    UniqueId CompressedUniqueId();

    /// An index stored plus 1, where 0 means none.
    std::optional<size_t> OptionalIndex(size_t tableSize, const char* table);
    size_t Index(size_t tableSize, const char* table);

    double ZeroToOne(const char* field);

private:
    Name CurrentName();

    std::vector<uint32_t>& uniqueIdentifiers;
    Name currentName;
    bool hasNamedAnything = false;
};

} // namespace Orvel::Test
