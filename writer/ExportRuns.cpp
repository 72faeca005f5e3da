#include "mapping/COrvelPRCMapper.h"
#include "platform/core/COrvelBasicSceneState.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelSceneNode.h"
#include "platform/prcfile/oPRCFile.h"
#include "prc/COrvelPRCHandler.h"
#include "prc/ExportCaches.h"

#include <algorithm>

namespace Orvel
{

namespace
{

/// What a run uses when the host gave nothing. Each kind of run owns one.
struct PrivateSet
{
    COrvelPRCHandler::MaterialNumbers materialNumbers;
    COrvelPRCMapper mapper;
};

PrivateSet& PlainSet()
{
    static PrivateSet set;
    return set;
}

PrivateSet& AnimatedSet()
{
    static PrivateSet set;
    return set;
}

/// Empties the caches on every way out of a run: they describe the one file that it writes.
class CachesOfOneRun
{
public:
    CachesOfOneRun() = default;
    CachesOfOneRun(const CachesOfOneRun&) = delete;
    CachesOfOneRun& operator=(const CachesOfOneRun&) = delete;
    ~CachesOfOneRun() { ExportCaches::Instance().Clear(); }
};

constexpr double UnitInMillimetres = 1.0;
constexpr unsigned FileStructures = 1;

void VisitRoots(COrvelPRCHandler& converter, COrvelDocument& document, prc::oPRCFile& file)
{
    std::vector<COrvelSceneNode*> roots;
    document.ListRootSceneNodes(roots);
    for (COrvelSceneNode* root : roots) {
        if (!root->IsDeleted())
            converter.VisitNode(root, file);
    }
}

bool IsLive(const COrvelSceneNode* node)
{
    return !node->IsDeleted();
}

/// Live roots with at least one live child. Childless roots do not count, 3D objects included.
std::ptrdiff_t CountRootsWithContent(COrvelDocument& document)
{
    std::vector<COrvelSceneNode*> roots;
    document.ListRootSceneNodes(roots);
    std::vector<COrvelSceneNode*> children;
    return std::count_if(roots.begin(), roots.end(), [&](COrvelSceneNode* root) {
        root->Children(children, true);
        return IsLive(root) && std::any_of(children.begin(), children.end(), IsLive);
    });
}

} // namespace

void COrvelPRCHandler::PrepareExport()
{
    PrivateSet& set = PlainSet();
    set.materialNumbers.clear();
    materialNumbers = &set.materialNumbers;
    set.mapper.Reset();
    mapper = &set.mapper;
}

void COrvelPRCHandler::PrepareAnimatedExport()
{
    PrivateSet& set = AnimatedSet();
    if (!materialNumbers) {
        set.materialNumbers.clear();
        materialNumbers = &set.materialNumbers;
    }
    if (!mapper) {
        set.mapper.Reset();
        mapper = &set.mapper;
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the parameter list is part of the contract
bool COrvelPRCHandler::WriteDocument(COrvelDocument* document, COrvelString fileName)
{
    if (!document)
        return false;
    PrepareExport();
    const CachesOfOneRun caches;
    prc::oPRCFile file(fileName.toStdString(), UnitInMillimetres, FileStructures);
    VisitRoots(*this, *document, file);
    file.finish();
    return true;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the parameter list is part of the contract
bool COrvelPRCHandler::WriteAnimatedDocument(COrvelDocument* document, COrvelString fileName,
                                             std::vector<COrvelBasicSceneState>* sceneStates)
{
    if (!document)
        return false;
    PrepareAnimatedExport();
    // Several roots hang under one more group in the file, which takes a number of its own.
    mapper->nextNodeIndex = CountRootsWithContent(*document) > 1 ? 2 : 1;
    const CachesOfOneRun caches;
    prc::oPRCFile file(fileName.toStdString(), UnitInMillimetres, FileStructures);
    VisitRoots(*this, *document, file);
    ExtractSceneStateMaterials(file, sceneStates);
    ExtractMaterialAnimation(file);
    ExtractMaterialSequenceAnimation(file);
    ExtractCameraAnimation(document->ActiveCamera());
    file.finish();
    return true;
}

} // namespace Orvel
