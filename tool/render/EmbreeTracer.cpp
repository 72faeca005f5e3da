#include "tool/render/RayTracer.h"

#include "tool/render/Surface.h"

#include <embree3/rtcore.h>

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace Orvel::Render
{

namespace
{

/// One thread, and vector instructions that every machine has: others round differently, and the same scene would give
/// other pixels there. Measured, the widest instructions would save a quarter of the time.
constexpr const char* DeviceSettings = "threads=1,start_threads=0,isa=sse4.2";

template <typename Handle, void (*Release)(Handle)>
class Owner
{
public:
    explicit Owner(Handle owned)
        : handle(owned)
    {}
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
    Owner(Owner&& other) noexcept
        : handle(std::exchange(other.handle, nullptr))
    {}
    Owner& operator=(Owner&&) = delete;
    ~Owner()
    {
        if (handle != nullptr)
            Release(handle);
    }

    [[nodiscard]] Handle Get() const { return handle; }

private:
    Handle handle;
};

using Device = Owner<RTCDevice, rtcReleaseDevice>;
using Scene = Owner<RTCScene, rtcReleaseScene>;
using Geometry = Owner<RTCGeometry, rtcReleaseGeometry>;

void Check(RTCDevice device)
{
    const RTCError error = rtcGetDeviceError(device);
    if (error == RTC_ERROR_OUT_OF_MEMORY)
        throw std::bad_alloc();
    if (error != RTC_ERROR_NONE)
        throw std::runtime_error("the ray tracing library failed (error " + std::to_string(error) + ")");
}

/// What a hit on a geometry means.
struct Target
{
    const RenderScene* scene;
    std::uint32_t instance; ///< unless the hit tells of one
};

/// Lets rays pass where a surface is more transparent than not.
void PassTransparent(const RTCFilterFunctionNArguments* arguments)
{
    const auto& target = *static_cast<const Target*>(arguments->geometryUserPtr);
    for (unsigned ray = 0; ray < arguments->N; ++ray) {
        if (arguments->valid[ray] == 0)
            continue;
        const RTCHit hit = rtcGetHitFromHitN(arguments->hit, arguments->N, ray);
        const bool isShared = hit.instID[0] != RTC_INVALID_GEOMETRY_ID;
        const std::uint32_t instance = isShared ? hit.instID[0] : target.instance;
        if (OpacityAt(*target.scene, {instance, hit.primID, hit.u, hit.v, 0.0F}) < 0.5F)
            arguments->valid[ray] = 0;
    }
}

RTCRay ToEmbree(const Ray& ray, float from, float to)
{
    RTCRay converted{};
    converted.org_x = ray.origin[0];
    converted.org_y = ray.origin[1];
    converted.org_z = ray.origin[2];
    converted.dir_x = ray.direction[0];
    converted.dir_y = ray.direction[1];
    converted.dir_z = ray.direction[2];
    converted.tnear = from;
    converted.tfar = to;
    converted.mask = 0xFFFFFFFFU;
    return converted;
}

} // namespace

class RayTracer::Trees
{
public:
    Trees(const RenderScene& tracedScene, const SceneSpace& sceneSpace)
        : device(rtcNewDevice(DeviceSettings))
        , scene(tracedScene)
        , space(sceneSpace)
        , isTransparent(scene.meshes.size())
        , top(NewScene())
    {
        targets.reserve(scene.instances.size());
        std::vector<std::uint32_t> uses(scene.meshes.size(), 0);
        for (std::size_t mesh = 0; mesh < scene.meshes.size(); ++mesh)
            isTransparent[mesh] = std::ranges::any_of(scene.meshes[mesh].materials, [&](std::uint32_t material) {
                return material != None && MayLetLightThrough(scene, material);
            });
        for (const Instance& instance : scene.instances) {
            ++uses[instance.mesh];
            isTransparent[instance.mesh] = isTransparent[instance.mesh] || MayLetLightThrough(scene, instance.material);
        }
        std::vector<RTCScene> shared(scene.meshes.size(), nullptr);
        for (std::uint32_t number = 0; number < scene.instances.size(); ++number)
            Add(number, uses[scene.instances[number].mesh] == 1, shared);
        rtcCommitScene(top.Get());
        Check(device.Get());
    }

    [[nodiscard]] RTCScene Top() const { return top.Get(); }

private:
    Scene NewScene()
    {
        Check(device.Get());
        Scene made(rtcNewScene(device.Get()));
        Check(device.Get());
        return made;
    }

    /// A shape that stands in one place only is stored in that place: rays need not be transformed for it.
    void Add(std::uint32_t number, bool isOnlyUse, std::vector<RTCScene>& shared)
    {
        const std::uint32_t mesh = scene.instances[number].mesh;
        targets.push_back({&scene, number});
        if (isOnlyUse) {
            AttachTriangles(top.Get(), mesh, space.FromMesh(number), number);
            return;
        }
        if (shared[mesh] == nullptr) {
            meshScenes.push_back(NewScene());
            shared[mesh] = meshScenes.back().Get();
            AttachTriangles(shared[mesh], mesh, Eigen::Affine3d::Identity(), number);
            rtcCommitScene(shared[mesh]);
        }
        const Geometry geometry(rtcNewGeometry(device.Get(), RTC_GEOMETRY_TYPE_INSTANCE));
        Check(device.Get());
        rtcSetGeometryInstancedScene(geometry.Get(), shared[mesh]);
        const Eigen::Matrix<float, 3, 4> place = space.FromMesh(number).affine().cast<float>();
        rtcSetGeometryTransform(geometry.Get(), 0, RTC_FORMAT_FLOAT3X4_COLUMN_MAJOR, place.data());
        rtcCommitGeometry(geometry.Get());
        rtcAttachGeometryByID(top.Get(), geometry.Get(), number);
    }

    void AttachTriangles(RTCScene into, std::uint32_t meshNumber, const Eigen::Affine3d& place, std::uint32_t number)
    {
        const Mesh& mesh = scene.meshes[meshNumber];
        const Geometry geometry(rtcNewGeometry(device.Get(), RTC_GEOMETRY_TYPE_TRIANGLE));
        Check(device.Get());
        const std::size_t pointCount = mesh.points.size() / 3;
        auto* point = static_cast<float*>(rtcSetNewGeometryBuffer(geometry.Get(), RTC_BUFFER_TYPE_VERTEX, 0,
                                                                  RTC_FORMAT_FLOAT3, 3 * sizeof(float), pointCount));
        auto* corner = static_cast<std::uint32_t*>(rtcSetNewGeometryBuffer(geometry.Get(), RTC_BUFFER_TYPE_INDEX, 0,
                                                                           RTC_FORMAT_UINT3, 3 * sizeof(std::uint32_t),
                                                                           mesh.TriangleCount()));
        Check(device.Get());
        for (std::size_t at = 0; at < mesh.points.size(); at += 3, point += 3) {
            const Eigen::Map<const Eigen::Vector3f> local(mesh.points.data() + at);
            Eigen::Map<Eigen::Vector3f> placed(point);
            placed = (place * local.cast<double>()).cast<float>();
        }
        std::ranges::copy(mesh.corners, corner);
        rtcSetGeometryUserData(geometry.Get(), &targets[number]);
        if (isTransparent[meshNumber])
            rtcSetGeometryOccludedFilterFunction(geometry.Get(), PassTransparent);
        rtcCommitGeometry(geometry.Get());
        rtcAttachGeometryByID(into, geometry.Get(), into == top.Get() ? number : 0);
    }

    Device device;
    const RenderScene& scene;
    const SceneSpace& space;
    std::vector<bool> isTransparent; ///< by mesh: in some of its places
    std::vector<Target> targets;     ///< by instance; never moves
    std::vector<Scene> meshScenes;
    Scene top;
};

RayTracer::RayTracer(const RenderScene& scene, const SceneSpace& space)
{
    if (!scene.instances.empty())
        trees = std::make_unique<Trees>(scene, space);
}

RayTracer::~RayTracer() = default;

std::optional<RayHit> RayTracer::FirstHit(const Ray& ray, float from) const
{
    if (!trees)
        return std::nullopt;
    RTCRayHit found{};
    found.ray = ToEmbree(ray, from, std::numeric_limits<float>::infinity());
    found.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    found.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    context.flags = RTC_INTERSECT_CONTEXT_FLAG_COHERENT;
    rtcIntersect1(trees->Top(), &context, &found);
    if (found.hit.geomID == RTC_INVALID_GEOMETRY_ID)
        return std::nullopt;
    const bool isShared = found.hit.instID[0] != RTC_INVALID_GEOMETRY_ID;
    return RayHit{isShared ? found.hit.instID[0] : found.hit.geomID, found.hit.primID, found.hit.u, found.hit.v,
                  found.ray.tfar};
}

bool RayTracer::IsBlocked(const Ray& ray, float to) const
{
    if (!trees)
        return false;
    RTCRay traced = ToEmbree(ray, 0.0F, to);
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcOccluded1(trees->Top(), &context, &traced);
    return traced.tfar < 0.0F;
}

} // namespace Orvel::Render
