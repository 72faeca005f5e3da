#pragma once

#include "platform/prcfile/Export.h"
#include "platform/prcfile/Matrix.h"
#include "platform/prcfile/NullIndex.h"
#include "platform/prcfile/PRCModel.h"

#include <cstdint>
#include <string>
#include <vector>

namespace prc::Model
{

/// A style in the globals of one of the file structures.
struct StyleReference
{
    std::uint32_t structure = nullIndex;
    std::uint32_t style = nullIndex; ///< nullIndex: none.
};

/// A product occurrence in its place. One that several parents share is placed once for each.
struct PlacedOccurrence
{
    std::uint32_t structure = 0;      ///< position in PRCModel::structures.
    std::uint32_t occurrence = 0;     ///< position in the occurrences of the structure.
    std::uint32_t parent = nullIndex; ///< position in PlacedScene::occurrences, smaller than the own one.
    std::uint32_t depth = 0;          ///< 0 for a root.
    OccurrenceReference content;      ///< where part and children come from: itself, or its prototype.
    Matrix world = identityMatrix;    ///< to the space of the model.
    StyleReference style;             ///< its own or an inherited one.
    bool isShown = true;              ///< see placeScene.
    bool isRemoved = false;           ///< removed or suppressed, or below such an occurrence.
};

/// A style that an occurrence gives to a face of something below it.
struct FaceStyle
{
    std::uint32_t face = 0; ///< position in Tessellation::faces.
    StyleReference style;
};

/// A representation item in its place.
struct PlacedItem
{
    std::uint32_t occurrence = 0; ///< position in PlacedScene::occurrences.
    std::uint32_t structure = 0;  ///< of the part: position in PRCModel::structures.
    std::uint32_t part = 0;
    std::uint32_t item = 0; ///< position in Part::items.
    Matrix world = identityMatrix;
    StyleReference style; ///< of faces that have none of their own, see styleOfFace().
    bool isShown = true;
    std::uint32_t firstFaceStyle = 0; ///< position in PlacedScene::faceStyles.
    std::uint32_t faceStyleCount = 0;
};

/// A model with everything in its place, in depth-first order: the position of an occurrence is the number that viewers
/// give its node.
struct PlacedScene
{
    std::vector<PlacedOccurrence> occurrences;
    std::vector<PlacedItem> items;     ///< sets are left out, what they hold is in.
    std::vector<FaceStyle> faceStyles; ///< those of an item lie together, in ascending order of the faces.
    std::vector<std::string> notes;    ///< what was left out, and why.
};

/// What a small file that shares occurrences many times over may grow to.
struct SceneLimits
{
    std::uint32_t occurrences = 1'000'000;
    std::uint32_t items = 2'000'000; ///< sets included; also of references to entities below an occurrence.
    std::uint32_t depth = 1000;
};

/// Walks the tree of a model from its roots.
///
/// - Transforms are multiplied downwards; an item that stands in a coordinate system is placed by it first.
/// - The style is that of the item, else of the sets around it, the part, the occurrence, its parents; an entity that
///   takes the colour of its parent, or whose parent hands its colour down, has the parent's.
/// - An entity or face to which occurrences above it refer has the style that the outermost of them gives it. Only the
///   style of these references is applied.
/// - An entity is shown by its own state, or by its parent's where one of the two asks for that. What is removed or
///   suppressed hides all below it.
///
/// An occurrence inside itself, and what exceeds the limits, is left out with a note.
[[nodiscard]] PRCFILE_API PlacedScene placeScene(const PRCModel& model, const SceneLimits& limits = {});

/// The style in which a face of a placed item is drawn: one that an occurrence above gives to the face, else the face's
/// own, else that of the item.
///
/// @param item of `scene`, which was made from `model`.
/// @param face position in the faces of the item's tessellation; one that does not exist has the style of the item.
[[nodiscard]] PRCFILE_API StyleReference styleOfFace(const PRCModel& model, const PlacedScene& scene,
                                                     const PlacedItem& item, std::uint32_t face);

/// The product of two transforms: `inner` is applied first.
[[nodiscard]] PRCFILE_API Matrix multiplied(const Matrix& outer, const Matrix& inner);

} // namespace prc::Model
