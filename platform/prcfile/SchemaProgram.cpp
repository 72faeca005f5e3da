#include "platform/prcfile/SchemaProgram.h"

#include <algorithm>
#include <cmath>

namespace prc
{

namespace
{

enum Token : std::uint32_t
{
    Boolean,
    Double,
    Character,
    UnsignedInteger,
    Integer,
    String,
    ParentSchema,
    TwoDoubles,
    ThreeDoubles,
    Interval,
    Domain,
    Box,
    Entity,
    Surface,
    Curve,
    Repeat,
    CountedRepeat,
    If,
    Else,
    Block,
    VersionBlock,
    EndBlock,
    Declare,
    Set,
    DeclareAndSet,
    Value,
    Constant,
    LoopCounter,
    CurveIs3D,
    Multiply,
    Divide,
    Add,
    Subtract,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Equal,
    NotEqual,
    IgnoredNumber,
    IgnoredNumber2
};

constexpr std::size_t mostVariables = 64;
constexpr unsigned longestParentChain = 16;

double calculate(std::uint32_t token, double left, double right)
{
    switch (token) {
    case Multiply:
        return left * right;
    case Divide:
        return right != 0.0 ? left / right : 0.0;
    case Add:
        return left + right;
    case Subtract:
        return left - right;
    case Less:
        return left < right ? 1.0 : 0.0;
    case LessOrEqual:
        return left <= right ? 1.0 : 0.0;
    case Greater:
        return left > right ? 1.0 : 0.0;
    case GreaterOrEqual:
        return left >= right ? 1.0 : 0.0;
    case Equal:
        return left == right ? 1.0 : 0.0;
    default:
        return left != right ? 1.0 : 0.0;
    }
}

} // namespace

void SchemaRunner::run(std::uint32_t entityType, BitReader& bits)
{
    if (schemas.empty())
        return;
    std::uint32_t type = entityType;
    for (unsigned generation = 0; generation < longestParentChain; ++generation) {
        const auto found = schemas.find(type);
        if (found == schemas.end())
            return;
        runProgram(found->second, bits);
        if (!bits.ok() || parent == 0)
            return;
        type = parent;
    }
    bits.fail("schemas continue in one another without an end");
}

void SchemaRunner::runProgram(std::span<const std::uint32_t> program, BitReader& bits)
{
    stream = &bits;
    tokens = program;
    at = 0;
    parent = 0;
    loopCounter = 0.0;
    variables.clear();
    while (at < tokens.size() && stream->ok())
        execute(0);
}

double SchemaRunner::fail(const char* reason)
{
    stream->fail(reason);
    at = tokens.size();
    return 0.0;
}

bool SchemaRunner::takeStep(unsigned depth)
{
    if (depth > deepestNesting) {
        fail("a schema is nested too deeply");
        return false;
    }
    if (++steps > freeSteps + stream->bitCount()) {
        fail("schemas take too many steps");
        return false;
    }
    return stream->ok();
}

std::uint32_t SchemaRunner::next()
{
    if (at < tokens.size())
        return tokens[at++];
    fail("a schema ends in the middle of a statement");
    return EndBlock;
}

double* SchemaRunner::variable(std::uint32_t key)
{
    const auto found = std::ranges::find(variables, key, &Variable::key);
    if (found != variables.end())
        return &found->value;
    if (variables.size() == mostVariables) {
        fail("a schema has too many variables");
        return nullptr;
    }
    return &variables.emplace_back(Variable{key, 0.0}).value;
}

void SchemaRunner::readDoubles(unsigned count)
{
    for (unsigned number = 0; number < count; ++number)
        stream->readDouble();
}

double SchemaRunner::executeField(std::uint32_t token)
{
    switch (token) {
    case Boolean:
        return stream->readBoolean() ? 1.0 : 0.0;
    case Double:
        return stream->readDouble();
    case Character:
        return stream->readCharacter();
    case UnsignedInteger:
        return stream->readUnsignedInteger();
    case Integer:
        return stream->readInteger();
    case String:
        stream->skipString();
        return 0.0;
    case TwoDoubles:
    case Interval:
        readDoubles(2);
        return 0.0;
    case ThreeDoubles:
        readDoubles(3);
        return 0.0;
    case Domain:
        readDoubles(4);
        return 0.0;
    default:
        readDoubles(6); // a box
        return 0.0;
    }
}

/// Runs one statement, or works out one expression.
double SchemaRunner::execute(unsigned depth)
{
    if (!takeStep(depth))
        return 0.0;
    const std::uint32_t token = next();
    if (token <= String || (token >= TwoDoubles && token <= Box))
        return executeField(token);
    if (token >= Multiply && token <= NotEqual)
        return executeBinary(token, depth);
    switch (token) {
    case ParentSchema:
        parent = next();
        return 0.0;
    case Repeat:
    case CountedRepeat:
        return executeLoop(token, depth);
    case If:
        return executeChoice(depth);
    case Block:
        executeBlock(depth);
        return 0.0;
    case VersionBlock:
        return executeVersionBlock(depth);
    case Declare:
        variable(next());
        return 0.0;
    case Set:
    case DeclareAndSet: {
        const std::uint32_t key = next();
        const double value = execute(depth + 1);
        if (double* const target = variable(key))
            *target = value;
        return value;
    }
    case Value: {
        const double* const source = variable(next());
        return source != nullptr ? *source : 0.0;
    }
    case Constant:
        return next();
    case LoopCounter:
        return loopCounter;
    case CurveIs3D:
        return 0.0;
    case IgnoredNumber:
    case IgnoredNumber2:
        next();
        return 0.0;
    default:
        return fail(token == Entity || token == Surface || token == Curve
                        ? "a schema adds entities that are not known here"
                        : "a schema holds a token that is not known or stands in a wrong place");
    }
}

double SchemaRunner::executeBinary(std::uint32_t token, unsigned depth)
{
    const double left = execute(depth + 1);
    const double right = execute(depth + 1);
    return calculate(token, left, right);
}

double SchemaRunner::executeLoop(std::uint32_t token, unsigned depth)
{
    const double announced = token == Repeat ? execute(depth + 1) : stream->readUnsignedInteger();
    const std::size_t body = at;
    const double outerCounter = loopCounter;
    const double rounds = std::isfinite(announced) ? announced : 0.0;
    if (rounds < 1.0)
        skip(depth + 1);
    for (double round = 0.0; round + 1.0 <= rounds && stream->ok(); round += 1.0) {
        at = body;
        loopCounter = round;
        execute(depth + 1);
    }
    loopCounter = outerCounter;
    return 0.0;
}

double SchemaRunner::executeChoice(unsigned depth)
{
    const bool isTrue = execute(depth + 1) != 0.0;
    if (isTrue)
        execute(depth + 1);
    else
        skip(depth + 1);
    if (!stream->ok() || !nextIs(Else))
        return 0.0;
    next();
    if (isTrue)
        skip(depth + 1);
    else
        execute(depth + 1);
    return 0.0;
}

double SchemaRunner::executeVersionBlock(unsigned depth)
{
    if (next() > knownVersion)
        executeBlock(depth);
    else
        skipBlock(depth);
    return 0.0;
}

void SchemaRunner::executeBlock(unsigned depth)
{
    while (stream->ok() && !nextIs(EndBlock))
        execute(depth + 1);
    next();
}

void SchemaRunner::skipBlock(unsigned depth)
{
    while (stream->ok() && !nextIs(EndBlock))
        skip(depth + 1);
    next();
}

/// Passes over one statement or expression without reading anything.
void SchemaRunner::skip(unsigned depth)
{
    if (!takeStep(depth))
        return;
    const std::uint32_t token = next();
    unsigned operands = 0;
    if (token >= Multiply && token <= NotEqual) {
        operands = 2;
    } else {
        switch (token) {
        case ParentSchema:
        case Entity:
        case Declare:
        case Value:
        case Constant:
        case IgnoredNumber:
        case IgnoredNumber2:
            next();
            break;
        case Set:
        case DeclareAndSet:
            next();
            operands = 1;
            break;
        case Repeat:
            operands = 2;
            break;
        case CountedRepeat:
            operands = 1;
            break;
        case If:
            operands = 2;
            break;
        case VersionBlock:
            next();
            skipBlock(depth);
            break;
        case Block:
            skipBlock(depth);
            break;
        default:
            break;
        }
    }
    for (unsigned operand = 0; operand < operands; ++operand)
        skip(depth + 1);
    if (token == If && nextIs(Else)) {
        next();
        skip(depth + 1);
    }
}

} // namespace prc
