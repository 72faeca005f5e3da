#pragma once

#include "tool/import/ImportedScene.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Orvel::Test
{

/// Puts imported scenes together for tests, as a reader would.
struct SceneBuilder
{
    Import::ImportedScene scene;

    /// A triangle with normals, `size` long.
    Import::Index Triangle(double size)
    {
        return Geometry({{0, 0, 0, size, 0, 0, 0, size, 7}, {0, 0, 1, 0, 0, 1, 0, 0, 1}, {0, 1, 2}, true});
    }

    Import::Index Geometry(Import::ImportedGeometry geometry)
    {
        scene.geometries.push_back(std::move(geometry));
        return Last(scene.geometries);
    }

    Import::Index Coordinates(std::vector<double> values)
    {
        scene.textureCoordinates.push_back({std::move(values)});
        return Last(scene.textureCoordinates);
    }

    Import::Index Material(const std::string& name, double red = 0.5)
    {
        Import::ImportedMaterial material;
        material.name = name;
        material.diffuse = {red, 0.25, 0.125};
        scene.materials.push_back(std::move(material));
        return Last(scene.materials);
    }

    /// @param parent None: a root.
    Import::Index Node(const std::string& name, Import::Index parent = Import::None,
                       std::vector<Import::ImportedPart> parts = {})
    {
        Import::ImportedNode node;
        node.name = name;
        node.parts = std::move(parts);
        scene.nodes.push_back(std::move(node));
        const Import::Index index = Last(scene.nodes);
        if (parent == Import::None)
            scene.roots.push_back(index);
        else
            At(parent).children.push_back(index);
        return index;
    }

    Import::ImportedNode& At(Import::Index node) { return scene.nodes.at(static_cast<std::size_t>(node)); }

    template <class T>
    static Import::Index Last(const std::vector<T>& table)
    {
        return static_cast<Import::Index>(table.size()) - 1;
    }
};

} // namespace Orvel::Test
