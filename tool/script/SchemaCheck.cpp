#include "tool/script/SchemaCheck.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace Orvel::Script
{

namespace
{

using nlohmann::json;

bool IsOfType(const json& value, std::string_view type)
{
    if (type == "integer")
        return value.is_number_integer() ||
               (value.is_number_float() && std::trunc(value.get<double>()) == value.get<double>());
    if (type == "number")
        return value.is_number();
    return value.type_name() == type;
}

std::string WithArticle(const std::string& type)
{
    return (type == "integer" || type == "object" || type == "array" ? "an " : "a ") + type;
}

class Checker
{
public:
    explicit Checker(const json& root)
        : schema(root)
    {}

    std::optional<SchemaFault> Check(const json& value, const json& rules, const json::json_pointer& path) const
    {
        if (const auto reference = rules.find("$ref"); reference != rules.end())
            return Check(value, Referenced(*reference), path);
        if (std::string text = FaultOfValue(value, rules); !text.empty())
            return SchemaFault{path.to_string(), std::move(text)};
        if (value.is_object())
            return CheckMembers(value, rules, path);
        if (value.is_array())
            return CheckElements(value, rules, path);
        return std::nullopt;
    }

private:
    const json& Referenced(const std::string& reference) const
    {
        return schema.at(json::json_pointer(reference.substr(1))); // after the '#'
    }

    static std::string FaultOfValue(const json& value, const json& rules)
    {
        if (rules.contains("type") && !IsOfType(value, rules["type"].get_ref<const std::string&>()))
            return "this must be " + WithArticle(rules["type"]) + ", not " + value.dump().substr(0, 40);
        if (const auto words = rules.find("enum");
            words != rules.end() && std::find(words->begin(), words->end(), value) == words->end())
            return "this must be one of " + words->dump();
        if (value.is_number() && rules.contains("minimum") && value < rules["minimum"])
            return "this must be " + rules["minimum"].dump() + " or more";
        if (value.is_number() && rules.contains("maximum") && value > rules["maximum"])
            return "this must be " + rules["maximum"].dump() + " or less";
        if (value.is_string() && value.get_ref<const std::string&>().size() < rules.value("minLength", 0U))
            return "this must not be empty";
        return value.is_array() ? FaultOfLength(value, rules) : std::string();
    }

    static std::string FaultOfLength(const json& value, const json& rules)
    {
        const std::size_t least = rules.value("minItems", std::size_t{0});
        const std::size_t most = rules.value("maxItems", value.size());
        if (value.size() >= least && value.size() <= most)
            return {};
        const std::string wanted = least == most ? std::to_string(least)
                                                 : std::to_string(value.size() < least ? least : most) +
                                                       (value.size() < least ? " or more" : " or fewer");
        return "this must have " + wanted + " elements, not " + std::to_string(value.size());
    }

    std::optional<SchemaFault> CheckMembers(const json& value, const json& rules, const json::json_pointer& path) const
    {
        for (const json& name : rules.value("required", json::array()))
            if (!value.contains(name.get_ref<const std::string&>()))
                return SchemaFault{path.to_string(), "member " + name.dump() + " is missing"};
        const json& known = rules.at("properties");
        for (const auto& [name, member] : value.items()) {
            const auto rule = known.find(name);
            if (rule == known.end())
                return SchemaFault{(path / name).to_string(), "there is no such member here"};
            if (auto fault = Check(member, *rule, path / name))
                return fault;
        }
        return std::nullopt;
    }

    std::optional<SchemaFault> CheckElements(const json& value, const json& rules, const json::json_pointer& path) const
    {
        for (std::size_t i = 0; i < value.size(); ++i)
            if (auto fault = Check(value[i], rules.at("items"), path / i))
                return fault;
        return std::nullopt;
    }

    const json& schema;
};

} // namespace

std::optional<SchemaFault> FindSchemaFault(const json& value, const json& schema)
{
    return Checker(schema).Check(value, schema, nlohmann::json::json_pointer());
}

} // namespace Orvel::Script
