#include "tool/cli/PRCInput.h"

#include "platform/prcfile/PRCReader.h"
#include "tool/cli/Errors.h"
#include "tool/cli/Text.h"
#include "tool/import/ImportReport.h"

#include <algorithm>
#include <fstream>
#include <string_view>

namespace Orvel::Cli
{

namespace
{

/// Readers of PDF accept other bytes before the file's mark, as long as there are not more than these.
constexpr std::size_t BytesBeforePdfMark = 1024;

/// A model holds more in memory than its sections unpack to: indices of 32 bits for bits of the file.
constexpr std::uint64_t DecodedPerUnpackedByte = 16;

bool IsPdf(std::string_view bytes)
{
    return !bytes.starts_with("PRC") && bytes.substr(0, BytesBeforePdfMark).find("%PDF-") != std::string_view::npos;
}

/// The reader's own limit for a PRC file holds for the stream around it too: its sections are deflated already.
std::uint64_t UnpackLimitFor(const ModelInput& input, std::uint64_t fileSize)
{
    constexpr std::uint64_t Always = std::uint64_t{1} << 24U;
    const prc::ReadLimits usual;
    const std::uint64_t inProportion = Always + usual.expansion * fileSize;
    return input.unpackLimit.value_or(std::min(usual.unpackedBytes, inProportion));
}

std::string ListOf(const std::vector<Pdf::ModelStream>& streams)
{
    constexpr std::size_t MostInList = 8;
    std::string list;
    for (std::size_t i = 0; i < std::min(streams.size(), MostInList); ++i) {
        const std::string place = streams[i].page == 0 ? "no page" : "page " + std::to_string(streams[i].page);
        list += (i == 0 ? "" : ", ") + std::to_string(i + 1) + " is " + FormatName(streams[i]) + " on " + place;
    }
    return streams.size() > MostInList ? list + ", ..." : list;
}

/// @return position in `streams`.
std::size_t ChosenStream(const std::vector<Pdf::ModelStream>& streams, const std::optional<std::size_t>& number)
{
    if (streams.empty())
        throw Failure("the PDF holds no 3D model");
    const std::string count = Count(streams.size(), "3D stream", "3D streams") + " (" + ListOf(streams) + ")";
    if (number) {
        if (*number > streams.size())
            throw Failure("the PDF has no stream " + std::to_string(*number) + ", only " + count);
        const Pdf::ModelStream& stream = streams[*number - 1];
        // What its subtype does not tell, its bytes may.
        if (stream.format == Pdf::ModelFormat::U3d)
            throw Failure("stream " + std::to_string(*number) + " is U3D, which is not read");
        return *number - 1;
    }
    const auto found = std::find_if(streams.begin(), streams.end(),
                                    [](const auto& stream) { return stream.format == Pdf::ModelFormat::Prc; });
    if (found == streams.end())
        throw Failure("the PDF holds no PRC model, only " + count);
    return static_cast<std::size_t>(found - streams.begin());
}

} // namespace

ModelSource::ModelSource(const ModelInput& input)
{
    try {
        file.emplace(input.file);
    } catch (const Import::ImportError& error) {
        throw Failure(error.what());
    }
    if (IsPdf(file->Bytes())) {
        const std::uint64_t limit = UnpackLimitFor(input, file->Bytes().size());
        file.reset();
        OpenPdf(input, limit);
    } else if (input.stream || input.password) {
        throw Failure("--stream and --password are for PDF files, and this is none");
    }
}

std::span<const std::uint8_t> ModelSource::Bytes() const
{
    if (!file)
        return extracted;
    const std::string_view bytes = file->Bytes();
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

void ModelSource::OpenPdf(const ModelInput& input, std::uint64_t unpackLimit)
{
    try {
        Pdf::PdfModels models(input.file, input.password);
        const std::size_t chosen = ChosenStream(models.Streams(), input.stream);
        extracted = models.Bytes(chosen, unpackLimit);
        origin = PdfOrigin{models.Streams(), chosen};
        const std::vector<std::string> damage = models.TakeWarnings();
        if (!damage.empty()) {
            warnings.push_back("the PDF is damaged: " + damage.front() +
                               (damage.size() > 1 ? " (and " + std::to_string(damage.size() - 1) + " more)" : ""));
        }
    } catch (const Pdf::PdfError& error) {
        throw Failure(error.what());
    }
    if (!input.stream && origin->streams.size() > 1) {
        warnings.push_back("the PDF holds " + std::to_string(origin->streams.size()) + " 3D streams (" +
                           ListOf(origin->streams) + "); --stream chooses");
    }
}

prc::Model::PRCModel ReadModel(const ModelSource& source, const ModelInput& input)
{
    prc::ReadLimits limits;
    if (input.unpackLimit) {
        limits.unpackedBytes = *input.unpackLimit;
        limits.decodedBytes =
            std::min(*input.unpackLimit, UINT64_MAX / DecodedPerUnpackedByte) * DecodedPerUnpackedByte;
        limits.expansion = *input.unpackLimit / std::max<std::uint64_t>(source.Bytes().size(), 1) + 1;
    }
    prc::Model::PRCModel model = prc::readPRC(source.Bytes(), limits);
    if (model.structures.empty() && model.hasErrors())
        throw Failure(model.findings.back().message());
    return model;
}

bool BeginsLikeModelFile(const std::string& path)
{
    std::string start(BytesBeforePdfMark, '\0');
    std::ifstream(path, std::ios::binary).read(start.data(), static_cast<std::streamsize>(start.size()));
    return start.starts_with("PRC") || IsPdf(start);
}

std::string FormatName(const Pdf::ModelStream& stream)
{
    switch (stream.format) {
    case Pdf::ModelFormat::Prc:
        return "PRC";
    case Pdf::ModelFormat::U3d:
        return "U3D";
    case Pdf::ModelFormat::Unknown:
        break;
    }
    return Quoted(stream.subtype);
}

} // namespace Orvel::Cli
