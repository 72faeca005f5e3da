#include "tool/import/GltfAccessors.h"

#include "tool/import/ImportReport.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>

namespace Orvel::Import
{

namespace
{

constexpr std::size_t ZerosForSmallFiles = std::size_t{1} << 16;

[[noreturn]] void Refuse(int accessor, const std::string& why)
{
    throw ImportError("accessors[" + std::to_string(accessor) + "] " + why);
}

/// 0 for types that glTF does not have.
std::size_t ComponentSize(int componentType)
{
    switch (componentType) {
    case TINYGLTF_COMPONENT_TYPE_BYTE:
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
        return 1;
    case TINYGLTF_COMPONENT_TYPE_SHORT:
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
        return 2;
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
    case TINYGLTF_COMPONENT_TYPE_FLOAT:
        return 4;
    default:
        return 0;
    }
}

bool IsUnsigned(int componentType)
{
    return componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE ||
           componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT ||
           componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT;
}

/// Calls `visit` with a value of the C++ type that stands for the component type, which must be one of glTF's.
template <typename Visitor>
void WithComponentType(int componentType, const Visitor& visit)
{
    switch (componentType) {
    case TINYGLTF_COMPONENT_TYPE_BYTE:
        return visit(std::int8_t{});
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
        return visit(std::uint8_t{});
    case TINYGLTF_COMPONENT_TYPE_SHORT:
        return visit(std::int16_t{});
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
        return visit(std::uint16_t{});
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
        return visit(std::uint32_t{});
    default:
        return visit(float{});
    }
}

template <typename Component>
Component Load(const std::byte* bytes)
{
    Component value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

template <typename Component>
double Normalised(Component value)
{
    if constexpr (std::is_integral_v<Component>)
        return std::max(static_cast<double>(value) / static_cast<double>(std::numeric_limits<Component>::max()), -1.0);
    else
        return static_cast<double>(value);
}

/// Writes `components` numbers for the element at `source`.
template <typename Component>
void Convert(const std::byte* source, int components, bool normalized, double* target)
{
    for (int i = 0; i < components; ++i) {
        const auto value = Load<Component>(source + static_cast<std::size_t>(i) * sizeof(Component));
        target[i] = normalized ? Normalised(value) : static_cast<double>(value);
    }
}

/// Which elements are decoded: all of them.
struct AllElements
{
    std::size_t count;

    [[nodiscard]] std::size_t Count() const { return count; }
    [[nodiscard]] std::size_t Element(std::size_t position) const { return position; }
    [[nodiscard]] std::optional<std::size_t> PositionOf(std::size_t element) const { return element; }
};

/// Which elements are decoded: those of an ascending list.
struct ListedElements
{
    std::span<const std::uint32_t> list;

    [[nodiscard]] std::size_t Count() const { return list.size(); }
    [[nodiscard]] std::size_t Element(std::size_t position) const { return list[position]; }
    [[nodiscard]] std::optional<std::size_t> PositionOf(std::size_t element) const
    {
        const auto found = std::lower_bound(list.begin(), list.end(), element);
        if (found == list.end() || *found != element)
            return std::nullopt;
        return static_cast<std::size_t>(found - list.begin());
    }
};

} // namespace

GltfAccessors::GltfAccessors(const GltfDocument& gltfDocument, GltfBuffers& gltfBuffers, std::size_t fileSize)
    : document(gltfDocument)
    , buffers(gltfBuffers)
    , zerosLeft(fileSize + ZerosForSmallFiles)
{
    using Meaning = std::tuple<int, std::size_t, std::size_t, int, int, bool>;
    std::map<Meaning, int> firstWithMeaning;
    canonical.reserve(document.model.accessors.size());
    for (const tinygltf::Accessor& accessor : document.model.accessors) {
        const int number = static_cast<int>(canonical.size());
        const Meaning meaning{accessor.bufferView,    accessor.byteOffset, accessor.count,
                              accessor.componentType, accessor.type,       accessor.normalized};
        const bool isPlain = !accessor.sparse.isSparse && accessor.bufferView >= 0;
        canonical.push_back(isPlain ? firstWithMeaning.emplace(meaning, number).first->second : number);
    }
}

int GltfAccessors::Canonical(int accessor) const
{
    return accessor < 0 ? -1 : canonical.at(static_cast<std::size_t>(accessor));
}

std::size_t GltfAccessors::Count(int accessor) const
{
    return document.model.accessors.at(static_cast<std::size_t>(accessor)).count;
}

bool GltfAccessors::IsCompressed(int accessor) const
{
    const tinygltf::Accessor& source = document.model.accessors.at(static_cast<std::size_t>(accessor));
    return source.bufferView >= 0 && buffers.IsCompressed(source.bufferView);
}

bool GltfAccessors::HasBytes(int accessor) const
{
    const tinygltf::Accessor& source = document.model.accessors.at(static_cast<std::size_t>(accessor));
    return source.bufferView >= 0 || source.sparse.isSparse;
}

std::vector<double> GltfAccessors::Numbers(int accessor, int components)
{
    return Decode(accessor, components, AllElements{Count(accessor)});
}

std::vector<double> GltfAccessors::Numbers(int accessor, int components, std::span<const std::uint32_t> elements)
{
    return Decode(accessor, components, ListedElements{elements});
}

template <typename Choice>
std::vector<double> GltfAccessors::Decode(int accessor, int components, const Choice& choice)
{
    const tinygltf::Accessor& source = document.model.accessors.at(static_cast<std::size_t>(accessor));
    const Elements elements = Locate(accessor, components, choice.Count());
    const auto width = static_cast<std::size_t>(components);
    std::vector<double> numbers(choice.Count() * width);
    if (elements.data != nullptr)
        WithComponentType(source.componentType, [&](auto component) {
            using Component = decltype(component);
            for (std::size_t i = 0; i < choice.Count(); ++i)
                Convert<Component>(elements.data + choice.Element(i) * elements.stride, components, source.normalized,
                                   numbers.data() + i * width);
        });
    if (source.sparse.isSparse)
        ApplySparse(accessor, components, choice, numbers);
    return numbers;
}

std::vector<std::uint32_t> GltfAccessors::Indices(int accessor)
{
    const tinygltf::Accessor& source = document.model.accessors.at(static_cast<std::size_t>(accessor));
    if (!IsUnsigned(source.componentType) || source.normalized)
        Refuse(accessor, "holds indices, but not as unsigned integers");
    const Elements elements = Locate(accessor, 1, source.count);
    std::vector<std::uint32_t> indices(elements.count);
    if (source.sparse.isSparse) {
        // Every 32-bit integer is a double, so the road by way of doubles loses nothing.
        const std::vector<double> numbers = Numbers(accessor, 1);
        std::transform(numbers.begin(), numbers.end(), indices.begin(),
                       [](double number) { return static_cast<std::uint32_t>(number); });
        return indices;
    }
    if (elements.data != nullptr)
        WithComponentType(source.componentType, [&](auto component) {
            using Component = decltype(component);
            // A negative index becomes one that is too large, and is refused as such.
            for (std::size_t i = 0; i < elements.count; ++i)
                // NOLINTNEXTLINE(bugprone-signed-char-misuse)
                indices[i] = static_cast<std::uint32_t>(Load<Component>(elements.data + i * elements.stride));
        });
    return indices;
}

/// @param wanted number of elements that are going to be decoded.
GltfAccessors::Elements GltfAccessors::Locate(int accessor, int components, std::size_t wanted)
{
    const tinygltf::Accessor& source = document.model.accessors.at(static_cast<std::size_t>(accessor));
    const std::size_t componentSize = ComponentSize(source.componentType);
    if (componentSize == 0)
        Refuse(accessor, "has the unknown component type " + std::to_string(source.componentType));
    if (source.type >= TINYGLTF_TYPE_MAT2 && source.type <= TINYGLTF_TYPE_MAT4)
        Refuse(accessor, "holds matrices");
    if (tinygltf::GetNumComponentsInType(static_cast<std::uint32_t>(source.type)) != components)
        Refuse(accessor, "does not have " + std::to_string(components) + " numbers in each element");
    if (source.bufferView < 0) {
        SpendZeros(wanted, accessor);
        return {nullptr, 0, source.count};
    }
    return Range(source.bufferView, source.byteOffset, source.count,
                 componentSize * static_cast<std::size_t>(components), true, accessor);
}

GltfAccessors::Elements GltfAccessors::Range(int view, std::size_t offset, std::size_t count, std::size_t elementSize,
                                             bool mayBeStrided, int accessor)
{
    if (view < 0 || static_cast<std::size_t>(view) >= document.model.bufferViews.size())
        Refuse(accessor, "points to no buffer view");
    const std::size_t fileStride =
        mayBeStrided ? document.model.bufferViews[static_cast<std::size_t>(view)].byteStride : 0;
    const std::size_t stride = fileStride == 0 ? elementSize : fileStride;
    if (stride < elementSize)
        Refuse(accessor, "has elements larger than the stride of its buffer view");
    if (count == 0)
        return {};
    const std::span<const std::byte> bytes = buffers.View(view);
    // The last element needs no whole stride. Divisions instead of products: no count can overflow them.
    const bool firstFits = offset <= bytes.size() && elementSize <= bytes.size() - offset;
    if (!firstFits || (bytes.size() - offset - elementSize) / stride < count - 1)
        Refuse(accessor, "reaches beyond its buffer view");
    return {bytes.data() + offset, stride, count};
}

template <typename Choice>
void GltfAccessors::ApplySparse(int accessor, int components, const Choice& choice, std::vector<double>& numbers)
{
    const tinygltf::Accessor& source = document.model.accessors.at(static_cast<std::size_t>(accessor));
    const auto& sparse = source.sparse;
    const std::size_t count = static_cast<std::size_t>(std::max(sparse.count, 0));
    if (!IsUnsigned(sparse.indices.componentType))
        Refuse(accessor, "has sparse indices that are not unsigned integers");
    const Elements places = Range(sparse.indices.bufferView, static_cast<std::size_t>(sparse.indices.byteOffset), count,
                                  ComponentSize(sparse.indices.componentType), false, accessor);
    const auto width = static_cast<std::size_t>(components);
    const Elements values = Range(sparse.values.bufferView, static_cast<std::size_t>(sparse.values.byteOffset), count,
                                  ComponentSize(source.componentType) * width, false, accessor);

    WithComponentType(source.componentType, [&](auto component) {
        using Component = decltype(component);
        WithComponentType(sparse.indices.componentType, [&](auto index) {
            using Place = decltype(index);
            for (std::size_t i = 0; i < count; ++i) {
                // NOLINTNEXTLINE(bugprone-signed-char-misuse): a negative place is out of range as well
                const auto place = static_cast<std::size_t>(Load<Place>(places.data + i * places.stride));
                if (place >= source.count)
                    Refuse(accessor, "has a sparse index out of range");
                if (const std::optional<std::size_t> position = choice.PositionOf(place))
                    Convert<Component>(values.data + i * values.stride, components, source.normalized,
                                       numbers.data() + *position * width);
            }
        });
    });
}

void GltfAccessors::SpendZeros(std::size_t numbers, int accessor)
{
    if (numbers > zerosLeft)
        Refuse(accessor, "asks for " + std::to_string(numbers) + " elements without bytes");
    zerosLeft -= numbers;
}

} // namespace Orvel::Import
