#pragma once

#include "platform/core/COrvelDocumentsContainer.h"

namespace Orvel
{

/// The versions from which on archives hold what the names say.
namespace LayoutVersion
{

constexpr int axisFrame = 10002;             // of round tables
constexpr int applicableMark = 10003;        // before each stored data
constexpr int pivot = 10006;                 // of transforms
constexpr int sequenceNumber = 10006;        // and their counts
constexpr int cameraTransform = 10014;       // cameras are filed under their transforms, not under their nodes
constexpr int structureDescription = 10030;  // of materials and lights
constexpr int followerConstantSpeed = 10047; // of B-spline followers; of the others, see easingModes
constexpr int fieldOfView = 10050;           // of cameras
constexpr int managerName = 10059;           // and its other data members
constexpr int gridCentre = 10064;            // of spherical cameras
constexpr int depthOfField = 10071;          // of cameras
constexpr int hideShow = 10212;              // data of this kind
constexpr int pathID = 11000;                // paths have ids like everything else
constexpr int sequence = 11007;              // records of sequences
constexpr int sequenceGroup = 11012;         // their groups, and their place in lists
constexpr int previewImage = 11013;          // of sequences
constexpr int easingModes = 12201;           // two of them, and constant speed of cameras and round tables
constexpr int collapsingGroup = 12503;       // of key frame data
constexpr int caption = 12507;               // of collapsing groups
constexpr int duration = 12520;              // of sequences
constexpr int morph = 13003;                 // data of this kind
constexpr int morphTarget = 13014;           // one weight for one target, not all those of an object

} // namespace LayoutVersion

/// The version that the readers of key frame data go by: that of the document file that is read.
inline int DocumentVersion()
{
    return COrvelDocumentsContainer::DocumentsContainer()->LastReadDocumentVersion();
}

} // namespace Orvel
