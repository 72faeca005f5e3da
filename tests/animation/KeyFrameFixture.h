#pragma once

#include "animation/COrvelKeyFrameManager.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelTransform.h"

#include <gtest/gtest.h>

namespace Orvel
{

/// A document and a manager of its own, installed for the process.
class KeyFrames : public testing::Test
{
protected:
    KeyFrames() { COrvelKeyFrameManager::SetInstance(manager); }
    ~KeyFrames() override { COrvelKeyFrameManager::SetInstance(nullptr); }

    /// Gives a new data its range.
    template <class Data>
    static COrvelPtr<Data> Over(int start, int end, Data* made)
    {
        COrvelPtr<Data> data(made);
        data->SetStartFrame(start, true);
        data->SetEndFrame(end, true);
        return data;
    }

    /// The same, stored in the manager.
    template <class Data>
    COrvelPtr<Data> Store(int start, int end, Data* made)
    {
        const COrvelPtr<Data> data = Over(start, end, made);
        COrvelPtr<COrvelKeyFrameData> stored = data;
        manager->AddKeyFrameData(stored, true);
        return data;
    }

    /// The evaluated state as its own class; null when it is of another one.
    template <class Data>
    COrvelPtr<Data> StateAt(const COrvelID& entity, int frame)
    {
        return COrvelPtr<Data>(dynamic_cast<Data*>(manager->KeyFrameDataAtFrame(entity, frame).Get()));
    }

    static COrvelMatrix Shift(double x, double y, double z) { return COrvelMatrix::CreateTranslation({x, y, z}); }

    COrvelDocument document;
    COrvelKeyFrameManager* manager = new COrvelKeyFrameManager;
    COrvelTransform* transform = COrvelTransform::Create(&document);
    COrvelID id = transform->ID();
};

} // namespace Orvel
