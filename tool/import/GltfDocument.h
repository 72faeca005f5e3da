#pragma once

#include <tiny_gltf.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Orvel::Import
{

/// What the text of a glTF file says, checked: every index that the import follows lies inside its table (or is -1).
///
/// Buffers and images stay out of `model`, whose parser would open files, search them in the working folder, copy
/// embedded data and take byte ranges on trust; so do animations, of which it knows only some. Their tables stand
/// beside it.
struct GltfDocument
{
    struct Buffer
    {
        std::string uri; ///< as in the file, empty for the binary chunk
        std::uint64_t byteLength = 0;
        bool isFallback = false; ///< only a name for what compressed views expand to: it has no bytes
    };

    struct Image
    {
        std::string name;
        std::string uri; ///< as in the file
        std::string mimeType;
        int bufferView = -1;
    };

    struct Animation
    {
        struct Sampler
        {
            int input = -1;            ///< accessor
            int output = -1;           ///< accessor
            std::string interpolation; ///< as in the file; may be empty
        };
        struct Channel
        {
            int sampler = -1; ///< may lie outside the table
            int node = -1;
            std::string path;
            std::string pointer; ///< of KHR_animation_pointer, when the path is "pointer"
        };

        std::string name;
        std::vector<Sampler> samplers;
        std::vector<Channel> channels;
    };

    tinygltf::Model model;
    std::vector<Buffer> buffers;
    std::vector<Image> images;
    std::vector<Animation> animations;
    std::vector<std::string> variants; ///< names of KHR_materials_variants
};

/// Whether the import understands an extension, or counts its loss by another name.
[[nodiscard]] bool IsKnownExtension(std::string_view name);

/// @throws ImportError for malformed JSON, versions other than 2.x and whatever CheckGltfMembers() refuses.
[[nodiscard]] GltfDocument ParseGltf(std::string_view text);

} // namespace Orvel::Import
