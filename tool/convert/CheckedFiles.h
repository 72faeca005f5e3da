#pragma once

#include <assimp/DefaultIOSystem.h>

namespace Orvel::Convert
{

/// Files for Assimp's exporters, which pass over errors of writing: they are kept here.
class CheckedFiles final : public Assimp::DefaultIOSystem
{
public:
    /// @param writeError not owned, must outlive the object; receives the errno of the first failure, also that of the
    ///                   last bytes, when a file is closed.
    explicit CheckedFiles(int& writeError)
        : error(writeError)
    {}

    Assimp::IOStream* Open(const char* file, const char* mode) override;
    void Close(Assimp::IOStream* stream) override;

private:
    int& error;
};

} // namespace Orvel::Convert
