#pragma once

#include "platform/core/COrvelMessage.h"
#include "platform/core/COrvelString.h"
#include "platform/core/Export.h"

#include <vector>

namespace Orvel
{

/// Somebody whom messages reach. There is no ownership: whoever registered a receiver removes it before it dies.
class ORVEL_CORE_API COrvelMessageReceiver
{
public:
    /// May change the message, and may register and remove receivers, itself included.
    ///
    /// @param origin where the message was sent from, for people who look for it.
    virtual void ReceiveMessage(COrvelMessage& message, const COrvelString& origin) = 0;

protected:
    ~COrvelMessageReceiver() = default;
};

/// Hands messages to whoever registered for them, inside the sender's call.
class ORVEL_CORE_API COrvelMessageManager
{
public:
    /// The one manager of the process: made on first use, never destroyed, never null.
    static COrvelMessageManager* Instance();

    COrvelMessageManager(const COrvelMessageManager&) = delete;
    COrvelMessageManager& operator=(const COrvelMessageManager&) = delete;

    /// Null and a receiver that is registered already are ignored.
    void RegisterReceiver(COrvelMessageReceiver* receiver);
    /// Ignored for one that is not registered.
    void RemoveReceiver(COrvelMessageReceiver* receiver);

    /// Calls every receiver, in the order of registration. One that is removed meanwhile is not called any more, one
    /// that is added meanwhile hears of later messages only.
    void DistributeMessage(COrvelMessage& message, COrvelString origin);

private:
    COrvelMessageManager() = default;
    ~COrvelMessageManager() = delete;

    std::vector<COrvelMessageReceiver*> receivers;
};

} // namespace Orvel
