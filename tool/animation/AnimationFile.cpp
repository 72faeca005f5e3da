#include "tool/animation/AnimationFile.h"

#include "animation/COrvelAnimationCollapsingGroupGuidToCaptionMapper.h"
#include "animation/COrvelSequenceContainer.h"
#include "platform/core/COrvelArchiveReader.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelDocumentsContainer.h"
#include "tool/animation/EntityTable.h"

#include <cmath>
#include <set>
#include <utility>

namespace Orvel::Animate
{

namespace
{

/// What the file holds of the scene beside key frame data.
struct SceneRecord
{
    COrvelString timelineClip;
    COrvelID camera;
    double distanceToTarget = 0.0;
    double framesPerSecond = 0.0;

    bool ArchiveReadWrite(COrvelArchiveBase& archive)
    {
        return archive.ReadWrite(timelineClip, camera, distanceToTarget, framesPerSecond);
    }
};

SceneRecord RecordOf(const AnimatedScene& animated)
{
    SceneRecord record{COrvelString(animated.timelineClip), {}, 0.0, animated.framesPerSecond};
    if (animated.camera) {
        record.camera = animated.camera->ID();
        record.distanceToTarget = animated.camera->DistanceFromTarget();
    }
    return record;
}

/// The key frame data, in the same order for both directions.
bool ArchiveKeyFrames(COrvelArchiveBase& archive, COrvelKeyFrameManager& manager)
{
    COrvelSequenceContainer& container = *COrvelSequenceContainer::Instance();
    return archive.ReadWrite(manager, *COrvelAnimationCollapsingGroupGuidToCaptionMapper::Instance()) &&
           (archive.IsReaderArchive() ? container.ReadFromArchive(archive) : container.WriteIntoArchive(archive));
}

/// Forgets how entities were translated, whichever way a load ends.
class TranslationScope
{
public:
    TranslationScope() = default;
    TranslationScope(const TranslationScope&) = delete;
    TranslationScope& operator=(const TranslationScope&) = delete;
    ~TranslationScope() { COrvelDocumentsContainer::DocumentsContainer()->ClearReplacements(); }

private:
    COrvelIDReadingScope readingIDs;
};

/// Holds what was read against the scene: numbers in a file may be anything.
class TimelineCheck
{
public:
    TimelineCheck(const EntityTable& entities, std::int64_t mostFrames)
        : frameLimit(mostFrames)
    {
        for (const EntityRecord& entity : entities)
            known.insert(entity.id);
    }

    void Examine(const COrvelKeyFrameManager& manager) const
    {
        ExamineRange(manager.FirstFrame(), manager.LastFrame());
        std::vector<COrvelID> ids;
        manager.ListAnimatedIDs(ids);
        for (const COrvelID& id : ids)
            ExamineEntity(id);
        KeyFrameDataList list;
        manager.ListAllKeyFrameData(list);
        for (const COrvelPtr<COrvelKeyFrameData>& data : list) {
            ExamineRange(data->StartFrame(), data->EndFrame());
            ExamineEntity(data->TargetEntityID());
            ExamineEntity(data->AnimatedEntityID());
        }
    }

private:
    void ExamineRange(int first, int last) const
    {
        if (first < 0 || last < first)
            throw Import::ImportError("it is damaged");
        if (last >= frameLimit)
            throw Import::ImportError("it has more than " + std::to_string(frameLimit) + " frames");
    }
    void ExamineEntity(const COrvelID& id) const
    {
        if (!known.contains(id))
            throw Import::ImportError("it is damaged");
    }

    std::int64_t frameLimit;
    std::set<COrvelID> known;
};

AnimatedScene Load(const Import::BuiltDocument& built, const std::string& file, std::int64_t mostFrames)
{
    COrvelArchiveReader archive{COrvelString(file)};
    if (!archive.ReadHeader())
        throw Import::ImportError("it is no animation file");
    const EntityTable present = ListEntities(*built.document);
    EntityTable stored;
    if (!ArchiveEntities(archive, stored))
        throw Import::ImportError("it is damaged");
    const TranslationScope translation;
    ReplaceEntities(stored, present);

    AnimatedScene animated;
    animated.manager = std::make_unique<COrvelKeyFrameManager>();
    SceneRecord scene;
    const bool isRead = archive.ReadWrite(scene) && ArchiveKeyFrames(archive, *animated.manager) && archive.IsAtEnd();
    std::vector<COrvelSequence*> sequences;
    COrvelSequenceContainer::Instance()->ListSequences(sequences, false, false);
    animated.sequences.assign(sequences.begin(), sequences.end());
    if (!isRead || !(scene.framesPerSecond > 0.0) || !std::isfinite(scene.framesPerSecond))
        throw Import::ImportError("it is damaged");
    const TimelineCheck check(present, mostFrames);
    check.Examine(*animated.manager);
    for (const COrvelPtr<COrvelSequence>& sequence : animated.sequences)
        check.Examine(*sequence);
    animated.framesPerSecond = scene.framesPerSecond;
    animated.timelineClip = scene.timelineClip.toStdString();
    animated.camera = dynamic_cast<COrvelCamera*>(scene.camera.Entity());
    if (animated.camera) {
        animated.camera->SetDistanceToTarget(scene.distanceToTarget);
        built.document->SetActiveCamera(animated.camera);
    }
    AddSceneStates(built, animated);
    return animated;
}

} // namespace

bool SaveAnimation(const COrvelDocument& document, AnimatedScene& animated, const std::string& file)
{
    COrvelArchiveWriter archive{COrvelString(file)};
    EntityTable entities = ListEntities(document);
    SceneRecord scene = RecordOf(animated);
    return archive.WriteHeader() && ArchiveEntities(archive, entities) && archive.ReadWrite(scene) &&
           ArchiveKeyFrames(archive, *animated.manager) && archive.Commit();
}

AnimatedScene LoadAnimation(const Import::BuiltDocument& built, const std::string& file, std::int64_t mostFrames)
{
    try {
        return Load(built, file, mostFrames);
    } catch (const Import::ImportError& error) {
        throw Import::ImportError("animation file " + Import::Quoted(file) + " cannot be used: " + error.what());
    }
}

} // namespace Orvel::Animate
