#include "prc/COrvelPRCHandler.h"

namespace Orvel
{

COrvelPRCHandler* COrvelPRCHandler::Instance()
{
    static COrvelPRCHandler* const instance = new COrvelPRCHandler;
    return instance;
}

bool COrvelPRCHandler::VisitSceneNode(COrvelSceneNode* /*node*/)
{
    return true;
}

} // namespace Orvel
