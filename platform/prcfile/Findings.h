#pragma once

#include "platform/prcfile/PRCModel.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace prc
{

/// Gathers what a reader has to say about one place of a file, a section as a rule. A model has a limited number of
/// findings; notes leave room for errors, so that none of these is overlooked.
class Findings
{
public:
    static constexpr std::size_t mostNotes = 200;
    static constexpr std::size_t mostFindings = 250;

    /// @param target    gets the findings; not owned.
    /// @param placeName "tree of file structure 0".
    Findings(Model::PRCModel& target, std::string placeName)
        : model(target)
        , place(std::move(placeName))
    {}

    void error(std::string text) { add(Model::Severity::Error, place, std::move(text)); }
    void errorAtBit(std::size_t bit, std::string text)
    {
        add(Model::Severity::Error, place + ", bit " + std::to_string(bit), std::move(text));
    }
    void errorAtByte(std::uint64_t byte, std::string text)
    {
        add(Model::Severity::Error, place + ", byte " + std::to_string(byte), std::move(text));
    }
    void note(std::string text) { add(Model::Severity::Note, place, std::move(text)); }

private:
    void add(Model::Severity severity, std::string where, std::string text)
    {
        if (model.findings.size() < (severity == Model::Severity::Note ? mostNotes : mostFindings))
            model.findings.push_back({severity, std::move(where), std::move(text)});
        else
            ++model.findingsLeftOut;
    }

    Model::PRCModel& model;
    std::string place;
};

/// Checks indices of one kind against their table: a wrong one becomes "none". However many are wrong, one finding
/// tells of them.
class IndexCheck
{
public:
    IndexCheck(Findings& target, const char* indexName, std::size_t tableSize)
        : findings(target)
        , what(indexName)
        , size(tableSize)
    {}
    IndexCheck(const IndexCheck&) = delete;
    IndexCheck& operator=(const IndexCheck&) = delete;
    ~IndexCheck() = default;

    void operator()(std::uint32_t& index)
    {
        if (index != nullIndex && index >= size)
            refuse(index);
    }

    /// Counts an index as wrong and makes it "none".
    void refuse(std::uint32_t& index)
    {
        if (wrong++ == 0)
            first = index;
        index = nullIndex;
    }

    /// Tells what was found. Called once, at the end.
    void report()
    {
        if (wrong == 0)
            return;
        findings.note(std::to_string(wrong) + " of the " + what + " lie outside their table of " +
                      std::to_string(size) + ", the first is " + std::to_string(first) + "; they count as none");
    }

private:
    Findings& findings;
    const char* what;
    std::size_t size;
    std::uint64_t wrong = 0;
    std::uint32_t first = 0;
};

} // namespace prc
