#include "tool/import/AssimpNodes.h"

#include "tool/import/AssimpText.h"

#include <cmath>
#include <map>
#include <numbers>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Orvel::Import
{

namespace
{

// Between the name of an FBX node and the part of its transform that a helper node stands for.
constexpr std::string_view PivotMark = "_$AssimpFbx$_";
// Begin of the names that the COLLADA loader gives to nodes without one.
constexpr std::string_view ColladaAutoName = "$ColladaAutoName$";

std::string_view TextOf(const aiString& text)
{
    return {text.C_Str(), text.length};
}

std::span<aiNode* const> ChildrenOf(const aiNode& node)
{
    return {node.mChildren, node.mNumChildren};
}

/// The part of a transform that this helper node stands for ("RotationPivot", ...); empty for ordinary nodes.
std::string_view PivotPart(const aiNode& node)
{
    const std::string_view name = TextOf(node.mName);
    const auto mark = name.find(PivotMark);
    return mark == std::string_view::npos ? std::string_view() : name.substr(mark + PivotMark.size());
}

/// All nodes, parents before children, in the order of the file.
std::vector<const aiNode*> NodesInOrder(const aiNode& root)
{
    std::vector<const aiNode*> nodes;
    std::vector<const aiNode*> pending{&root};
    while (!pending.empty()) {
        const aiNode* node = pending.back();
        pending.pop_back();
        nodes.push_back(node);
        const auto children = ChildrenOf(*node);
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return nodes;
}

using CamerasByNode = std::map<const aiNode*, const aiCamera*>;

/// Cameras know their node by name only, and names repeat: nodes without meshes come first, then the file's order.
CamerasByNode FindCameras(const aiScene& scene)
{
    std::multimap<std::string_view, const aiCamera*> waiting;
    for (unsigned k = 0; k < scene.mNumCameras; ++k)
        waiting.emplace(TextOf(scene.mCameras[k]->mName), scene.mCameras[k]);
    CamerasByNode cameras;
    if (waiting.empty())
        return cameras;
    const auto nodes = NodesInOrder(*scene.mRootNode);
    for (const bool withMeshes : {false, true}) {
        for (const aiNode* node : nodes) {
            const auto camera = waiting.find(TextOf(node->mName));
            if (camera == waiting.end() || (node->mNumMeshes > 0) != withMeshes || cameras.contains(node))
                continue;
            cameras.emplace(node, camera->second);
            waiting.erase(camera);
        }
    }
    return cameras;
}

/// The vertical angle of a picture `aspect` times as wide as high.
double VerticalAngle(double horizontal, double aspect)
{
    return 2.0 * std::atan(std::tan(horizontal / 2.0) / aspect);
}

/// Assimp documents half the horizontal angle, but its loaders give the full one.
ImportedCamera CameraFrom(const aiCamera& source, const AssimpLoader& loader)
{
    // The COLLADA loader takes its default, a quarter of pi, for degrees when the file gives no horizontal angle.
    constexpr double Quarter = std::numbers::pi / 4.0;
    constexpr double MistakenQuarter = Quarter * std::numbers::pi / 180.0;

    ImportedCamera camera;
    camera.name = Utf8From(source.mName);
    const double aspect =
        source.mAspect > 0 && std::isfinite(source.mAspect) ? static_cast<double>(source.mAspect) : 1.0;
    const double halfWidth = static_cast<double>(source.mOrthographicWidth);
    if (std::isfinite(halfWidth) && halfWidth > 0.0) {
        camera.perspective = false;
        camera.orthographicHeight = 2.0 * halfWidth / aspect;
        return camera;
    }
    double horizontal = static_cast<double>(source.mHorizontalFOV);
    if (loader.format == "COLLADA" && std::abs(horizontal - MistakenQuarter) < 1e-6)
        horizontal = Quarter;
    if (std::isfinite(horizontal) && horizontal > 0.0 && horizontal < std::numbers::pi)
        camera.verticalFieldOfViewInDegrees = VerticalAngle(horizontal, aspect) * 180.0 / std::numbers::pi;
    return camera;
}

COrvel3DVertex VertexFrom(const aiVector3D& vector)
{
    return {static_cast<double>(vector.x), static_cast<double>(vector.y), static_cast<double>(vector.z)};
}

/// The camera's own frame in that of its node: its look along -z, its up along y.
COrvelMatrix FrameOf(const aiCamera& camera, const AssimpLoader& loader)
{
    const COrvel3DVertex toSky{0.0, 1.0, 0.0};
    const COrvel3DVertex forward{0.0, 0.0, -1.0};
    const bool standard = loader.cameras == CameraFrames::Standard;
    const COrvel3DVertex look = standard ? forward : VertexFrom(camera.mLookAt);
    const COrvel3DVertex up = standard ? toSky : VertexFrom(camera.mUp);
    COrvelMatrix frame = COrvelMatrix::CreateCoordinatesTransform({}, look, up, {}, forward, toSky, false);
    if (loader.cameras == CameraFrames::Own) {
        frame.M(0, 3) = static_cast<double>(camera.mPosition.x);
        frame.M(1, 3) = static_cast<double>(camera.mPosition.y);
        frame.M(2, 3) = static_cast<double>(camera.mPosition.z);
    }
    return frame;
}

/// Takes one tree over.
class NodeTaker
{
public:
    NodeTaker(const aiScene& scene, const AssimpLoader& usedLoader, std::span<const ImportedPart> meshParts,
              ImportedScene& target)
        : loader(usedLoader)
        , meshes(meshParts)
        , cameras(FindCameras(scene))
        , imported(target)
    {}

    void Take(const aiNode& root, const SceneFrame& frame);

    /// For each node where its matrix comes from.
    [[nodiscard]] std::vector<TransformSources> TakeSources() { return std::move(sources); }

private:
    struct Pending
    {
        const aiNode* node;
        Index index; ///< of the node that it becomes
    };

    Index AddNode();
    Index AddChild(Index parent);
    void TakeOne(const Pending& pending, const COrvelMatrix& matrix, TransformSources matrixSources);
    void TakePivots(const Pending& pending);
    void TakeContent(const aiNode& source, Index node);
    void TakeChildren(const aiNode& source, Index node);
    void TakeParts(const aiNode& source, Index node);
    void TakeCamera(const aiCamera& source, Index node);
    [[nodiscard]] bool StandsForFile(const aiNode& root, const SceneFrame& frame) const;
    [[nodiscard]] std::string NameOf(const aiNode& node) const;

    const AssimpLoader& loader;
    std::span<const ImportedPart> meshes;
    CamerasByNode cameras;
    ImportedScene& imported;
    std::vector<TransformSources> sources;
    std::vector<Pending> pending;
};

void NodeTaker::Take(const aiNode& root, const SceneFrame& frame)
{
    if (StandsForFile(root, frame)) {
        for (const aiNode* child : ChildrenOf(root)) {
            imported.roots.push_back(AddNode());
            pending.push_back({child, imported.roots.back()});
        }
    } else {
        imported.roots.push_back(AddNode());
        const Index index = imported.roots.back();
        const bool isOwn = frame.root == MatrixFrom(root.mTransformation);
        TakeOne({&root, index}, frame.root, isOwn ? TransformSources{&root} : TransformSources());
        if (loader.rootIsInvented || TextOf(root.mName).starts_with('<'))
            imported.nodes[static_cast<std::size_t>(index)].name.clear();
    }
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        if (PivotPart(*next.node).empty())
            TakeOne(next, MatrixFrom(next.node->mTransformation), {next.node});
        else
            TakePivots(next);
    }
}

bool NodeTaker::StandsForFile(const aiNode& root, const SceneFrame& frame) const
{
    return loader.rootIsInvented && root.mNumMeshes == 0 && root.mNumChildren > 0 && !cameras.contains(&root) &&
           frame.root == COrvelMatrix();
}

Index NodeTaker::AddNode()
{
    imported.nodes.emplace_back();
    sources.emplace_back();
    return static_cast<Index>(imported.nodes.size() - 1);
}

Index NodeTaker::AddChild(Index parent)
{
    const Index child = AddNode();
    imported.nodes[static_cast<std::size_t>(parent)].children.push_back(child);
    return child;
}

void NodeTaker::TakeOne(const Pending& next, const COrvelMatrix& matrix, TransformSources matrixSources)
{
    sources[static_cast<std::size_t>(next.index)] = std::move(matrixSources);
    ImportedNode& node = imported.nodes[static_cast<std::size_t>(next.index)];
    node.name = NameOf(*next.node);
    node.matrix = matrix;
    TakeContent(*next.node, next.index);
    TakeChildren(*next.node, next.index);
}

/// A chain of helper nodes, each the only child of the one before, ends at the node that carries name and content. The
/// geometric parts of the transform count for the content alone: below them, the children stand under the inverses.
void NodeTaker::TakePivots(const Pending& first)
{
    COrvelMatrix matrix;
    COrvelMatrix geometric;
    TransformSources matrixSources;
    const aiNode* source = first.node;
    for (; !PivotPart(*source).empty() && source->mNumChildren == 1; source = source->mChildren[0]) {
        const bool isGeometric = PivotPart(*source).starts_with("Geometric");
        (isGeometric ? geometric : matrix) *= MatrixFrom(source->mTransformation);
        if (!isGeometric)
            matrixSources.push_back(source);
    }
    geometric *= MatrixFrom(source->mTransformation);
    if (geometric == COrvelMatrix()) {
        matrixSources.push_back(source);
        TakeOne({source, first.index}, matrix, std::move(matrixSources));
        return;
    }
    ImportedNode& node = imported.nodes[static_cast<std::size_t>(first.index)];
    node.name = NameOf(*source);
    node.matrix = matrix;
    sources[static_cast<std::size_t>(first.index)] = std::move(matrixSources);
    const Index content = AddChild(first.index);
    imported.nodes[static_cast<std::size_t>(content)].matrix = geometric;
    imported.nodes[static_cast<std::size_t>(content)].name = NameOf(*source);
    TakeContent(*source, content);
    TakeChildren(*source, first.index);
}

void NodeTaker::TakeContent(const aiNode& source, Index node)
{
    TakeParts(source, node);
    if (const auto camera = cameras.find(&source); camera != cameras.end())
        TakeCamera(*camera->second, node);
}

void NodeTaker::TakeChildren(const aiNode& source, Index node)
{
    for (const aiNode* child : ChildrenOf(source)) {
        // Inverses of the geometric parts, which have not been applied to `node`.
        const std::string_view part = PivotPart(*child);
        if (part.starts_with("Geometric") && part.ends_with("Inverse"))
            TakeChildren(*child, node);
        else
            pending.push_back({child, AddChild(node)});
    }
}

void NodeTaker::TakeParts(const aiNode& source, Index node)
{
    for (const unsigned mesh : std::span(source.mMeshes, source.mNumMeshes)) {
        if (mesh >= meshes.size())
            throw ImportError("node '" + NameOf(source) + "' names a mesh that does not exist");
        if (meshes[mesh].geometry != None)
            imported.nodes[static_cast<std::size_t>(node)].parts.push_back(meshes[mesh]);
    }
}

void NodeTaker::TakeCamera(const aiCamera& source, Index node)
{
    const auto camera = static_cast<Index>(imported.cameras.size());
    imported.cameras.push_back(CameraFrom(source, loader));
    const COrvelMatrix frame = FrameOf(source, loader);
    if (frame == COrvelMatrix()) {
        imported.nodes[static_cast<std::size_t>(node)].camera = camera;
        return;
    }
    ImportedNode& own = imported.nodes[static_cast<std::size_t>(AddChild(node))];
    own.name = imported.cameras.back().name;
    own.matrix = frame;
    own.camera = camera;
}

std::string NodeTaker::NameOf(const aiNode& node) const
{
    const std::string_view name = TextOf(node.mName);
    if (loader.format == "COLLADA" && name.starts_with(ColladaAutoName))
        return {};
    return Utf8From(name);
}

} // namespace

std::vector<TransformSources> TakeNodes(const aiScene& scene, const AssimpLoader& loader, const SceneFrame& frame,
                                        std::span<const ImportedPart> meshes, ImportedScene& imported)
{
    NodeTaker taker(scene, loader, meshes, imported);
    taker.Take(*scene.mRootNode, frame);
    return taker.TakeSources();
}

} // namespace Orvel::Import
