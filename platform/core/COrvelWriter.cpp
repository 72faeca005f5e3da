#include "platform/core/COrvelWriter.h"

namespace Orvel
{

COrvelWriter::~COrvelWriter() = default;

bool COrvelWriter::ExportSceneNode(COrvelSceneNode*, COrvelString, bool)
{
    return false;
}

} // namespace Orvel
