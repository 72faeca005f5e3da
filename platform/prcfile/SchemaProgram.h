#pragma once

#include "platform/prcfile/BitReader.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

/// Schemas: small prefix programs with which a file describes the fields that its writer adds behind the known ones of
/// an entity. Running a program reads these fields and forgets them.
namespace prc
{

/// The programs of a file structure or of a model file, by entity type.
using Schemas = std::map<std::uint32_t, std::vector<std::uint32_t>>;

/// Runs the programs for the entities of one section.
class SchemaRunner
{
public:
    /// Fields that were added in versions up to this one are known to the reader and not described again.
    static constexpr std::uint32_t knownVersion = 10001;
    static constexpr unsigned deepestNesting = 64;

    /// All programs of a section together take so many steps at most, and one more for each bit of the section.
    static constexpr std::uint64_t freeSteps = std::uint64_t{1} << 18;

    /// @param programs not owned.
    explicit SchemaRunner(const Schemas& programs)
        : schemas(programs)
    {}

    /// Reads the added fields of an entity of this type; nothing when there is no program for it. What cannot be done
    /// fails `bits`.
    void run(std::uint32_t entityType, BitReader& bits);

private:
    struct Variable
    {
        std::uint32_t key;
        double value;
    };

    void runProgram(std::span<const std::uint32_t> program, BitReader& bits);
    double execute(unsigned depth);
    double executeField(std::uint32_t token);
    double executeLoop(std::uint32_t token, unsigned depth);
    double executeChoice(unsigned depth);
    double executeVersionBlock(unsigned depth);
    double executeBinary(std::uint32_t token, unsigned depth);
    void executeBlock(unsigned depth);
    void skip(unsigned depth);
    void skipBlock(unsigned depth);
    void readDoubles(unsigned count);
    double* variable(std::uint32_t key);
    bool takeStep(unsigned depth);
    bool nextIs(std::uint32_t token) const { return at < tokens.size() && tokens[at] == token; }
    std::uint32_t next();
    double fail(const char* reason);

    const Schemas& schemas;
    BitReader* stream = nullptr;
    std::span<const std::uint32_t> tokens;
    std::size_t at = 0;
    std::uint64_t steps = 0;
    double loopCounter = 0.0;
    std::vector<Variable> variables;
    std::uint32_t parent = 0; ///< the type whose program follows; 0: none.
};

} // namespace prc
