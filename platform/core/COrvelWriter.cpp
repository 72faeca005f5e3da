#include "platform/core/COrvelWriter.h"

namespace Orvel
{

COrvelWriter::~COrvelWriter() = default;

// NOLINTNEXTLINE(performance-unnecessary-value-param): the parameter list is part of the contract
bool COrvelWriter::ExportSceneNode(COrvelSceneNode*, COrvelString, bool)
{
    return false;
}

} // namespace Orvel
