#include "tool/render/Surface.h"

#include "tool/render/ColourSpace.h"

#include <Eigen/Geometry>
#include <Eigen/LU>

#include <algorithm>
#include <array>
#include <cmath>

namespace Orvel::Render
{

namespace
{

using Eigen::Vector2f;
using Eigen::Vector3f;
using Eigen::Vector4f;

/// In radii of the scene: more than the rounding of places, less than anything that is seen.
constexpr float RayLift = 2e-5F;

/// Shading normals that point away from the viewer are bent until this cosine.
constexpr float SmallestFacing = 0.02F;

const Material& MaterialAt(const RenderScene& scene, const RayHit& hit)
{
    const Instance& instance = scene.instances[hit.instance];
    const std::vector<std::uint32_t>& materials = scene.meshes[instance.mesh].materials;
    const std::uint32_t own = materials.empty() ? None : materials[hit.triangle];
    return scene.materials[own == None ? instance.material : own];
}

std::array<float, 3> Weights(const RayHit& hit)
{
    return {1.0F - hit.u - hit.v, hit.u, hit.v};
}

/// The texture coordinates of a triangle's corners as the material places them.
std::array<Vector2f, 3> TextureCorners(const Mesh& mesh, std::uint32_t triangle, const Material& material)
{
    std::array<Vector2f, 3> corners;
    for (std::size_t k = 0; k < 3; ++k) {
        const std::uint32_t entry = mesh.cornerTextureCoordinates[std::size_t{3} * triangle + k];
        corners[k] = entry == None ? Vector2f::Zero()
                                   : Vector2f(mesh.textureCoordinates[std::size_t{2} * entry],
                                              mesh.textureCoordinates[std::size_t{2} * entry + 1]);
        corners[k] = corners[k].array() * material.textureScale + material.textureOffset;
    }
    return corners;
}

bool HasTexture(const Mesh& mesh, const Material& material)
{
    return material.texture != None && !mesh.cornerTextureCoordinates.empty();
}

Vector2f Mixed(const std::array<Vector2f, 3>& corners, const RayHit& hit)
{
    const std::array<float, 3> weights = Weights(hit);
    return weights[0] * corners[0] + weights[1] * corners[1] + weights[2] * corners[2];
}

/// How far the point that a ray meets moves on its plane when the ray changes (Igehy: Tracing Ray Differentials, 1999).
Vector3f Shift(const PixelRay& ray, const Ray& change, float distance, const Vector3f& normal)
{
    const Vector3f offset = change.origin + distance * change.direction;
    return offset - (normal.dot(offset) / normal.dot(ray.ray.direction)) * ray.ray.direction;
}

} // namespace

struct SurfaceFinder::Triangle
{
    std::array<Vector3f, 3> corners;
    std::array<Vector3f, 2> edges; ///< from the first corner to the others
    Vector3f face;                 ///< unit normal; zero for a triangle without area
};

SurfaceFinder::SurfaceFinder(const RenderScene& shownScene, const SceneSpace& space)
    : scene(shownScene)
{
    fromMesh.reserve(scene.instances.size());
    normalMatrix.reserve(scene.instances.size());
    for (std::size_t instance = 0; instance < scene.instances.size(); ++instance) {
        const Eigen::Affine3d& place = space.FromMesh(instance);
        fromMesh.push_back(place.cast<float>());
        // Only directions count: of unit size, so that single precision holds shapes of any size.
        Eigen::Matrix3d normals = place.linear().inverse().transpose();
        normals /= normals.cwiseAbs().maxCoeff();
        normalMatrix.push_back(normals.cast<float>());
    }
}

SurfaceFinder::Triangle SurfaceFinder::TriangleOf(const RayHit& hit) const
{
    const Mesh& mesh = scene.meshes[scene.instances[hit.instance].mesh];
    Triangle triangle;
    for (std::size_t k = 0; k < 3; ++k) {
        const std::size_t point = mesh.corners[std::size_t{3} * hit.triangle + k];
        triangle.corners[k] = fromMesh[hit.instance] * Eigen::Map<const Vector3f>(mesh.points.data() + 3 * point);
    }
    triangle.edges = {triangle.corners[1] - triangle.corners[0], triangle.corners[2] - triangle.corners[0]};
    const Vector3f cross = triangle.edges[0].cross(triangle.edges[1]);
    const float length = cross.stableNorm();
    triangle.face = length > 0.0F ? Vector3f(cross / length) : Vector3f::Zero();
    return triangle;
}

Surface SurfaceFinder::At(const RayHit& hit, const PixelRay& ray, float share) const
{
    const Triangle triangle = TriangleOf(hit);
    const std::array<float, 3> weights = Weights(hit);
    Surface surface;
    surface.instance = hit.instance;
    surface.position =
        weights[0] * triangle.corners[0] + weights[1] * triangle.corners[1] + weights[2] * triangle.corners[2];
    const Vector3f toViewer = -ray.ray.direction.normalized();
    surface.face = triangle.face.dot(toViewer) < 0.0F ? Vector3f(-triangle.face) : triangle.face;
    if (surface.face.isZero())
        surface.face = toViewer;
    surface.normal = NormalAt(hit, surface, toViewer);
    TakeMaterial(hit, triangle, ray, share, surface);
    return surface;
}

Vector3f SurfaceFinder::NormalAt(const RayHit& hit, const Surface& surface, const Vector3f& toViewer) const
{
    const Mesh& mesh = scene.meshes[scene.instances[hit.instance].mesh];
    if (mesh.cornerNormals.empty())
        return surface.face;
    const std::array<float, 3> weights = Weights(hit);
    Vector3f sum = Vector3f::Zero();
    for (std::size_t k = 0; k < 3; ++k) {
        const std::uint32_t entry = mesh.cornerNormals[std::size_t{3} * hit.triangle + k];
        if (entry == None)
            return surface.face;
        sum += weights[k] * Eigen::Map<const Vector3f>(mesh.normals.data() + std::size_t{3} * entry);
    }
    Vector3f normal = normalMatrix[hit.instance] * sum;
    const float length = normal.norm();
    if (!(length > 0.0F) || !std::isfinite(length))
        return surface.face;
    normal /= normal.dot(surface.face) < 0.0F ? -length : length;
    const float facing = normal.dot(toViewer);
    return facing < SmallestFacing ? Vector3f((normal + (SmallestFacing - facing) * toViewer).normalized()) : normal;
}

Vector3f SurfaceFinder::RaisedFrom(const Surface& surface, const RayHit& hit) const
{
    Vector3f raised = surface.position + RayLift * surface.face;
    const Mesh& mesh = scene.meshes[scene.instances[hit.instance].mesh];
    if (mesh.cornerNormals.empty())
        return raised;
    // Onto the smooth surface that the normals mean, or flat triangles would shade themselves along their edges
    // (Hanika: Hacking the Shadow Terminator, Ray Tracing Gems II, 2021).
    const std::array<float, 3> weights = Weights(hit);
    for (std::size_t k = 0; k < 3; ++k) {
        const std::size_t corner = std::size_t{3} * hit.triangle + k;
        if (mesh.cornerNormals[corner] == None)
            continue;
        Vector3f normal = normalMatrix[hit.instance] *
                          Eigen::Map<const Vector3f>(mesh.normals.data() + std::size_t{3} * mesh.cornerNormals[corner]);
        const float length = normal.norm();
        if (!(length > 0.0F) || !std::isfinite(length))
            continue;
        normal /= normal.dot(surface.face) < 0.0F ? -length : length;
        const Vector3f place = fromMesh[hit.instance] *
                               Eigen::Map<const Vector3f>(mesh.points.data() + std::size_t{3} * mesh.corners[corner]);
        raised -= weights[k] * std::min(0.0F, (surface.position - place).dot(normal)) * normal;
    }
    return raised;
}

void SurfaceFinder::TakeMaterial(const RayHit& hit, const Triangle& triangle, const PixelRay& ray, float share,
                                 Surface& surface) const
{
    const Mesh& mesh = scene.meshes[scene.instances[hit.instance].mesh];
    const Material& material = MaterialAt(scene, hit);
    surface.diffuse = material.diffuse;
    surface.specular = material.specular;
    surface.emissive = material.emissive;
    surface.roughness = material.roughness;
    surface.opacity = material.opacity;
    if (!mesh.cornerColours.empty()) {
        const std::array<float, 3> weights = Weights(hit);
        const std::uint8_t* colours = mesh.cornerColours.data() + std::size_t{12} * hit.triangle;
        if (colours[3] != 0) {
            surface.diffuse.setZero();
            for (std::size_t k = 0; k < 3; ++k, colours += 4) {
                for (Eigen::Index channel = 0; channel < 3; ++channel)
                    surface.diffuse[channel] += weights[k] * LinearFromSrgbBytes()[colours[channel]];
            }
        }
    }
    if (!HasTexture(mesh, material))
        return;
    const std::array<Vector2f, 3> corners = TextureCorners(mesh, hit.triangle, material);
    const Vector2f alongFirst = corners[1] - corners[0];
    const Vector2f alongSecond = corners[2] - corners[0];
    // A shift on the plane in terms of the two edges, by their dot products.
    const float a = triangle.edges[0].squaredNorm();
    const float b = triangle.edges[0].dot(triangle.edges[1]);
    const float c = triangle.edges[1].squaredNorm();
    const auto change = [&](const Ray& step) -> Vector2f {
        const Vector3f shift = share * Shift(ray, step, hit.distance, triangle.face);
        const float first = triangle.edges[0].dot(shift);
        const float second = triangle.edges[1].dot(shift);
        return ((c * first - b * second) * alongFirst + (a * second - b * first) * alongSecond) / (a * c - b * b);
    };
    const Vector4f sampled = scene.textures[material.texture].Sample(
        {Mixed(corners, hit), change(ray.alongX), change(ray.alongY)}, material.wrapU, material.wrapV);
    surface.diffuse = surface.diffuse.cwiseProduct(sampled.head<3>());
    surface.emissive = surface.emissive.cwiseProduct(sampled.head<3>());
    surface.opacity *= sampled[3];
}

float OpacityAt(const RenderScene& scene, const RayHit& hit)
{
    const Mesh& mesh = scene.meshes[scene.instances[hit.instance].mesh];
    const Material& material = MaterialAt(scene, hit);
    if (!HasTexture(mesh, material))
        return material.opacity;
    const TextureFootprint point{Mixed(TextureCorners(mesh, hit.triangle, material), hit), {0, 0}, {0, 0}};
    return material.opacity * scene.textures[material.texture].Sample(point, material.wrapU, material.wrapV)[3];
}

bool MayLetLightThrough(const RenderScene& scene, std::uint32_t number)
{
    const Material& material = scene.materials[number];
    return material.opacity < 1.0F || (material.texture != None && !scene.textures[material.texture].IsOpaque());
}

} // namespace Orvel::Render
