#pragma once

#include "platform/core/COrvelBasicSceneState.h"
#include "platform/core/COrvelString.h"

#include <utility>

namespace Orvel
{

/// A scene variant under its name.
class COrvelSceneState
{
public:
    COrvelSceneState() = default;
    COrvelSceneState(COrvelString stateName, COrvelBasicSceneState state)
        : name(std::move(stateName))
        , basicState(std::move(state))
    {}

    [[nodiscard]] const COrvelString& Name() const { return name; }
    [[nodiscard]] const COrvelBasicSceneState& BasicSceneState() const { return basicState; }

private:
    COrvelString name;
    COrvelBasicSceneState basicState;
};

} // namespace Orvel
