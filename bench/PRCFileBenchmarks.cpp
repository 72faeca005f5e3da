#include "platform/prcfile/BitEncoding.h"
#include "platform/prcfile/BitWriter.h"
#include "platform/prcfile/PRCReader.h"
#include "platform/prcfile/oPRCFile.h"

#include <benchmark/benchmark.h>
#include <libdeflate.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

/// Writing and reading PRC files: the bit stream, and whole files from the caller's arrays to the bytes and from there
/// to the model. Reading a file is meant to take no longer than writing it.
namespace
{

enum class Numbers
{
    Float, ///< values that came from single precision, as most scenes' do
    Double
};

enum class Arrays
{
    PointsOnly,
    NormalsAndTexture
};

/// A closed surface of 999,698 triangles over a grid of points.
struct Mesh
{
    std::vector<double> positions;
    std::vector<double> normals;
    std::vector<double> texture;
    std::vector<std::uint32_t> corners;
};

Mesh WavySphere(Numbers numbers)
{
    constexpr std::uint32_t side = 708;
    constexpr double pi = 3.14159265358979323846;
    const auto stored = [numbers](double value) {
        return numbers == Numbers::Double ? value : static_cast<double>(static_cast<float>(value));
    };
    Mesh mesh;
    for (std::uint32_t row = 0; row < side; ++row) {
        for (std::uint32_t column = 0; column < side; ++column) {
            const double u = column / (side - 1.0);
            const double v = row / (side - 1.0);
            const double direction[] = {std::cos(2 * pi * u) * std::sin(pi * v),
                                        std::sin(2 * pi * u) * std::sin(pi * v), std::cos(pi * v)};
            const double radius = 10.0 + 0.3 * std::sin(40.0 * u) * std::cos(25.0 * v);
            for (const double component : direction) {
                mesh.positions.push_back(stored(component * radius));
                mesh.normals.push_back(stored(component));
            }
            mesh.texture.push_back(stored(u));
            mesh.texture.push_back(stored(v));
        }
    }
    for (std::uint32_t row = 0; row + 1 < side; ++row) {
        for (std::uint32_t column = 0; column + 1 < side; ++column) {
            const std::uint32_t at = row * side + column;
            mesh.corners.insert(mesh.corners.end(), {at, at + 1, at + side, at + 1, at + side + 1, at + side});
        }
    }
    return mesh;
}

std::unique_ptr<prc::PRC3DTess> Tessellation(const Mesh& mesh, Arrays arrays)
{
    const bool full = arrays == Arrays::NormalsAndTexture;
    auto tess = std::make_unique<prc::PRC3DTess>();
    tess->coordinates = mesh.positions;
    if (full) {
        tess->normalCoordinates = mesh.normals;
        tess->textureCoordinates = mesh.texture;
    }
    tess->triangulatedIndex.reserve(mesh.corners.size() * 3);
    for (const std::uint32_t corner : mesh.corners) {
        if (full)
            tess->triangulatedIndex.insert(tess->triangulatedIndex.end(), {3 * corner, 2 * corner});
        tess->triangulatedIndex.push_back(3 * corner);
    }
    auto* face = new prc::PRCTessFace;
    face->usedEntitiesFlag = full ? prc::UsedEntities::texturedTriangles : prc::UsedEntities::triangles;
    face->numberOfTextureCoordinateIndexes = full ? 1 : 0;
    face->sizesTriangulated = {static_cast<std::uint32_t>(mesh.corners.size() / 3)};
    tess->addTessFace(face);
    return tess;
}

std::vector<std::uint8_t> WholeFile(std::unique_ptr<prc::PRC3DTess> mesh)
{
    std::vector<std::uint8_t> bytes;
    prc::oPRCFile file(bytes, 1.0, 1);
    file.begingroup("mesh", nullptr, nullptr);
    prc::PRC3DTess* handedOver = mesh.release();
    file.useMesh(file.add3DTess(handedOver, 0), 0, nullptr);
    file.endgroup();
    file.finish();
    return bytes;
}

void WriteUnsignedIntegers(benchmark::State& state)
{
    const Mesh mesh = WavySphere(Numbers::Float);
    for (auto _ : state) {
        prc::BitWriter writer;
        writer.writeUnsignedIntegers(mesh.corners);
        benchmark::DoNotOptimize(writer.bytes().data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(mesh.corners.size()));
}
BENCHMARK(WriteUnsignedIntegers)->Unit(benchmark::kMillisecond);

void WriteDoubles(benchmark::State& state, Numbers numbers)
{
    const Mesh mesh = WavySphere(numbers);
    for (auto _ : state) {
        prc::BitWriter writer;
        writer.writeDoubles(mesh.positions);
        benchmark::DoNotOptimize(writer.bytes().data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(mesh.positions.size()));
}
BENCHMARK_CAPTURE(WriteDoubles, floats, Numbers::Float)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteDoubles, doubles, Numbers::Double)->Unit(benchmark::kMillisecond);

/// A million triangles from the arrays of a tessellation to the bytes of the file.
void WriteMesh(benchmark::State& state, Numbers numbers, Arrays arrays)
{
    const Mesh mesh = WavySphere(numbers);
    std::size_t size = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto tess = Tessellation(mesh, arrays);
        state.ResumeTiming();
        size = WholeFile(std::move(tess)).size();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(mesh.corners.size() / 3));
    state.counters["bytes"] = static_cast<double>(size);
}
BENCHMARK_CAPTURE(WriteMesh, float_points, Numbers::Float, Arrays::PointsOnly)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteMesh, double_points, Numbers::Double, Arrays::PointsOnly)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteMesh, float_all, Numbers::Float, Arrays::NormalsAndTexture)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteMesh, double_all, Numbers::Double, Arrays::NormalsAndTexture)->Unit(benchmark::kMillisecond);

void Read(benchmark::State& state, const std::vector<std::uint8_t>& file)
{
    for (auto _ : state) {
        const prc::Model::PRCModel model = prc::readPRC(file);
        if (!model.findings.empty())
            state.SkipWithError(model.findings[0].message().c_str());
        benchmark::DoNotOptimize(model.structures.data());
    }
    state.counters["bytes"] = static_cast<double>(file.size());
}

void ReadMesh(benchmark::State& state, Numbers numbers, Arrays arrays)
{
    const Mesh mesh = WavySphere(numbers);
    Read(state, WholeFile(Tessellation(mesh, arrays)));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(mesh.corners.size() / 3));
}
BENCHMARK_CAPTURE(ReadMesh, float_points, Numbers::Float, Arrays::PointsOnly)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadMesh, double_points, Numbers::Double, Arrays::PointsOnly)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadMesh, float_all, Numbers::Float, Arrays::NormalsAndTexture)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadMesh, double_all, Numbers::Double, Arrays::NormalsAndTexture)->Unit(benchmark::kMillisecond);

/// The yardstick: the same points and corners, compressed as they lie in memory.
void CompressBareArrays(benchmark::State& state, Numbers numbers)
{
    const Mesh mesh = WavySphere(numbers);
    const std::size_t positionBytes = mesh.positions.size() * sizeof(double);
    const std::size_t cornerBytes = mesh.corners.size() * sizeof(std::uint32_t);
    std::vector<std::uint8_t> raw(positionBytes + cornerBytes);
    std::memcpy(raw.data(), mesh.positions.data(), positionBytes);
    std::memcpy(raw.data() + positionBytes, mesh.corners.data(), cornerBytes);
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(6), libdeflate_free_compressor);
    std::vector<std::uint8_t> packed(libdeflate_zlib_compress_bound(compressor.get(), raw.size()));
    std::size_t size = 0;
    for (auto _ : state)
        size = libdeflate_zlib_compress(compressor.get(), raw.data(), raw.size(), packed.data(), packed.size());
    state.counters["bytes"] = static_cast<double>(size);
}
BENCHMARK_CAPTURE(CompressBareArrays, floats, Numbers::Float)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CompressBareArrays, doubles, Numbers::Double)->Unit(benchmark::kMillisecond);

std::vector<std::uint8_t> ManyGroups(std::int64_t count)
{
    Mesh small;
    small.positions = {0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0, 0.5};
    small.corners = {0, 1, 2};
    std::vector<std::uint8_t> bytes;
    prc::oPRCFile file(bytes, 1.0, 1);
    for (std::int64_t group = 0; group < count; ++group) {
        file.begingroup("group", nullptr, nullptr);
        const std::uint32_t style = file.addMaterial({});
        prc::PRC3DTess* mesh = Tessellation(small, Arrays::PointsOnly).release();
        file.useMesh(file.add3DTess(mesh, 0), style, nullptr);
        file.endgroup();
    }
    file.finish();
    return bytes;
}

/// Materials that all differ.
std::vector<std::uint8_t> ManyMaterials(std::int64_t count)
{
    std::vector<std::uint8_t> bytes;
    prc::oPRCFile file(bytes, 1.0, 1);
    for (std::int64_t number = 0; number < count; ++number) {
        prc::PRCmaterial material;
        const double shade = static_cast<double>(number) / static_cast<double>(count);
        material.ambient = {shade, 0.25, 0.5, 1.0};
        material.diffuse = {0.125, shade, 0.3, 1.0};
        material.specular = {1.0 - shade, 0.1, shade, 1.0};
        material.shininess = shade;
        file.addMaterial(material);
    }
    file.finish();
    return bytes;
}

/// Many small meshes and groups, with a material each: the cost of the tree.
void WriteManyGroups(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ManyGroups(state.range(0)).data());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(WriteManyGroups)->Arg(100)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void ReadManyGroups(benchmark::State& state)
{
    Read(state, ManyGroups(state.range(0)));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ReadManyGroups)->Arg(100)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void WriteManyMaterials(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ManyMaterials(state.range(0)).data());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(WriteManyMaterials)->Arg(100000)->Unit(benchmark::kMillisecond);

void ReadManyMaterials(benchmark::State& state)
{
    Read(state, ManyMaterials(state.range(0)));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ReadManyMaterials)->Arg(100000)->Unit(benchmark::kMillisecond);

/// A textured material whose picture is new, or the same each time.
void AddPictures(benchmark::State& state, bool same)
{
    constexpr std::uint32_t side = 512;
    std::mt19937 random(5);
    std::vector<std::uint8_t> pixels(side * side * 3);
    for (std::size_t at = 0; at < pixels.size(); ++at)
        pixels[at] = static_cast<std::uint8_t>((at / 3 % side + at / 3 / side) / 4 + random() % 8);
    prc::PRCmaterial material;
    material.pictureData = pixels.data();
    material.pictureWidth = material.pictureHeight = side;
    material.pictureSize = static_cast<std::uint32_t>(pixels.size());
    for (auto _ : state) {
        std::vector<std::uint8_t> bytes;
        prc::oPRCFile file(bytes, 1.0, 1);
        for (std::uint8_t number = 0; number < 8; ++number) {
            pixels[0] = same ? 0 : number;
            file.addMaterial(material);
        }
        file.finish();
    }
    state.SetBytesProcessed(state.iterations() * 8 * static_cast<std::int64_t>(pixels.size()));
}
BENCHMARK_CAPTURE(AddPictures, all_different, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AddPictures, all_equal, true)->Unit(benchmark::kMillisecond);

} // namespace
