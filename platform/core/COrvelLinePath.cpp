#include "platform/core/COrvelLinePath.h"

#include <utility>

namespace Orvel
{

COrvelLinePath::COrvelLinePath(COrvelDocument* document, COrvelString name)
    : COrvelSceneNode(document, eEntityType_LinePath, std::move(name))
{}

COrvelLinePath* COrvelLinePath::Create(COrvelDocument* document, COrvelString name)
{
    return new COrvelLinePath(document, std::move(name));
}

void COrvelLinePath::SetBasicPath(COrvelBasicPath newPath)
{
    path = std::move(newPath);
}

} // namespace Orvel
