#include "platform/prcfile/PRC3DTess.h"

#include <utility>

namespace prc
{

void PRC3DTess::addTessFace(PRCTessFace*& face)
{
    std::unique_ptr<PRCTessFace> owned(std::exchange(face, nullptr));
    if (owned)
        faceTessellation.push_back(std::move(owned));
}

} // namespace prc
