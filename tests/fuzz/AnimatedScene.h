#pragma once

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelCamera.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "platform/core/COrvelLight.h"
#include "platform/core/COrvelLightSource.h"
#include "platform/core/COrvelLinePath.h"
#include "platform/core/COrvelMaterial.h"
#include "platform/core/COrvelMorphingTable.h"
#include "platform/core/COrvelTransform.h"
#include "platform/core/COrvelVerticiesTable.h"

namespace Orvel
{

/// The entities that animation archives of the corpus name. Made first in a program, they have the same ids in each.
struct AnimatedScene
{
    AnimatedScene()
    {
        object->SetGeometry(geometry);
        object->SetLocalTransform(transform);
        object->CreateMorphingTable()->AddMorphGeometry(geometry);
        path->SetBasicPath(COrvelBasicPath::Polyline({{0, 0, 0}, {2, 3, 5}, {7, 11, 13}}, false));
    }

    COrvelDocument document;
    COrvelTransform* transform = COrvelTransform::Create(&document);
    COrvelGeometry* geometry = COrvelGeometry::Create(&document, {0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2});
    COrvel3DObject* object = COrvel3DObject::Create(&document, "object");
    COrvelCamera* camera = COrvelCamera::Create(&document, "camera");
    COrvelMaterial* material = COrvelMaterial::Create(&document);
    COrvelLight* light = COrvelLight::Create(&document, "light");
    COrvelLightSource* source = COrvelLightSource::Create(&document, "source", light);
    COrvelLinePath* path = COrvelLinePath::Create(&document, "path");
};

} // namespace Orvel
