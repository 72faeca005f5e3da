#include "platform/core/COrvelMessageManager.h"

#include <algorithm>

namespace Orvel
{

COrvelMessageManager* COrvelMessageManager::Instance()
{
    static COrvelMessageManager* const manager = new COrvelMessageManager;
    return manager;
}

void COrvelMessageManager::RegisterReceiver(COrvelMessageReceiver* receiver)
{
    if (receiver && std::find(receivers.begin(), receivers.end(), receiver) == receivers.end())
        receivers.push_back(receiver);
}

void COrvelMessageManager::RemoveReceiver(COrvelMessageReceiver* receiver)
{
    std::erase(receivers, receiver);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the parameter list is part of the contract
void COrvelMessageManager::DistributeMessage(COrvelMessage& message, COrvelString origin)
{
    // Receivers change the list while it is walked.
    const std::vector<COrvelMessageReceiver*> called = receivers;
    for (COrvelMessageReceiver* const receiver : called)
        if (std::find(receivers.begin(), receivers.end(), receiver) != receivers.end())
            receiver->ReceiveMessage(message, origin);
}

} // namespace Orvel
