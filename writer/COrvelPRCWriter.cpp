#include "writer/COrvelPRCWriter.h"

#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvelUUID.h"
#include "prc/COrvelPRCHandler.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QString>

namespace Orvel
{

namespace
{

/// The names of one export: where the file is written, and where it belongs.
struct OutputNames
{
    COrvelString written; ///< openable with 8-bit file functions
    COrvelString target;  ///< as the host gave it, in the folder that is written to
    bool differ = false;
};

OutputNames NamesFor(const COrvelString& fileName)
{
    COrvelString folder = fileName.Path('\\');
    if (folder.HasUnicode())
        folder = folder.GetAnsiFileName();

    COrvelString baseName = fileName;
    baseName.RemovePath();
    baseName.RemoveExt();
    const COrvelString extension = fileName.Extension();

    OutputNames names;
    names.differ = baseName.HasUnicode();
    names.target = folder + baseName + "." + extension;
    if (names.differ) {
        COrvelUUID uuid;
        uuid.Generate();
        names.written = folder + uuid.ToString() + "." + extension;
    } else {
        names.written = names.target;
    }
    return names;
}

/// Qt refuses to replace a file: where the final name is taken the output keeps its generated one.
void MoveToFinalName(const OutputNames& names)
{
    const QString source = QString::fromWCharArray(names.written.WideCString(), -1);
    const QString target = QString::fromWCharArray(names.target.WideCString(), -1);
    if (QFile::exists(source) && QFileInfo(source).isFile())
        QFile::rename(source, target);
}

} // namespace

COrvelPRCWriter::COrvelPRCWriter()
{
    InitializeHandler();
}

COrvelPRCWriter::COrvelPRCWriter(const COrvelPRCWriter& other) = default;

// A move copies: every writer shares the one converter, and a moved-from writer keeps working.
COrvelPRCWriter::COrvelPRCWriter(COrvelPRCWriter&& other) noexcept
    : COrvelWriter(other)
    , handler(other.handler)
{}

COrvelPRCWriter& COrvelPRCWriter::operator=(const COrvelPRCWriter& other) = default;

COrvelPRCWriter& COrvelPRCWriter::operator=(COrvelPRCWriter&& other) noexcept
{
    COrvelWriter::operator=(other);
    handler = other.handler;
    return *this;
}

COrvelPRCWriter::~COrvelPRCWriter() = default;

bool COrvelPRCWriter::Export(COrvelDocument* document, COrvelString fileName, COrvelTransform* /*transform*/,
                             std::vector<COrvelCamera*>* /*cameras*/, std::vector<COrvelSceneState*>* /*sceneStates*/,
                             COrvelSectionPlane* /*sectionPlane*/, COrvelUnit /*unit*/)
{
    if (!document)
        return false;
    const OutputNames names = NamesFor(fileName);
    if (!handler)
        return false;
    handler->WriteDocument(document, names.written);
    if (names.differ)
        MoveToFinalName(names);
    return true;
}

bool COrvelPRCWriter::ExportToMemory(COrvelDocument* document, COrvelString fileName, COrvelTransform* /*transform*/,
                                     std::vector<COrvelCamera*>* /*cameras*/,
                                     std::vector<COrvelBasicSceneState>* sceneStates)
{
    if (!document || !handler)
        return false;
    return handler->WriteAnimatedDocument(document, std::move(fileName), sceneStates);
}

void COrvelPRCWriter::InitializeHandler()
{
    try {
        handler = COrvelPRCHandler::Instance();
    } catch (...) {
        // The contract: a writer without a converter answers false instead of throwing from its constructor.
        handler = nullptr;
    }
}

void COrvelPRCWriter::SetMaximumTextureSize(int size)
{
    if (handler)
        handler->maximumTextureSize = size;
}

void COrvelPRCWriter::SetKeyFrameManager(COrvelKeyFrameManager* manager)
{
    COrvelKeyFrameManager::SetInstance(manager);
}

void COrvelPRCWriter::SetPRCMapper(COrvelPRCMapper* mapper)
{
    if (handler && mapper)
        handler->mapper = mapper;
}

} // namespace Orvel
