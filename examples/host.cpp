// The smallest host: builds a document in memory and exports it.

#include "platform/core/COrvel3DObject.h"
#include "platform/core/COrvelDocument.h"
#include "platform/core/COrvelGeometry.h"
#include "writer/COrvelPRCWriter.h"

int main()
{
    using namespace Orvel;
    COrvelDocument document;
    COrvelGeometry* shape = COrvelGeometry::Create(&document, {0, 0, 0, 10, 0, 0, 0, 10, 0, 0, 0, 10},
                                                   {0, 2, 1, 0, 1, 3, 1, 2, 3, 0, 3, 2});
    document.AddRootNode(COrvel3DObject::Create(&document, "tetrahedron", shape));
    COrvelPRCWriter writer;
    return writer.Export(&document, "tetrahedron.prc", nullptr, nullptr, nullptr, nullptr, COrvelUnit()) ? 0 : 1;
}
