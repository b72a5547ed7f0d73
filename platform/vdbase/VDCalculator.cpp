#include "vdbase/VDCalculator.h"

#include "vdbase/VFNumber.h"

#include <mpParser.h>

#include <cctype>
#include <cstring>
#include <deque>
#include <string_view>
#include <vector>

namespace {

// No matrices: a short expression could ask for any amount of memory with them.
constexpr unsigned VVPackages = mup::pckCOMMON | mup::pckNON_COMPLEX | mup::pckSTRING;

bool IsNameStart(char byte)
{
    return std::isalpha(static_cast<unsigned char>(byte)) != 0 || byte == '_';
}

bool IsNameByte(char byte)
{
    return IsNameStart(byte) || std::isdigit(static_cast<unsigned char>(byte)) != 0;
}

bool ToValue(const VDVariant& variant, mup::Value* value)
{
    bool boolean = false;
    double number = 0;
    VDString text;
    if (variant.GetBoolean(&boolean))
        *value = mup::Value(boolean);
    else if (variant.GetString(&text))
        *value = mup::Value(mup::string_type(text.Str()));
    else if (variant.ConvertToDouble(&number))
        *value = mup::Value(number);
    else
        return false;
    return true;
}

VDVariant ToVariant(const mup::IValue& value)
{
    switch (value.GetType()) {
    case 'b':
        return VDVariant(value.GetBool());
    case 's':
        return VDVariant(VDString(value.GetString()));
    case 'i':
    case 'f':
        return VDVariant(static_cast<double>(value.GetFloat()));
    default:
        return VDVariant();
    }
}

// A function of a derived calculator.
class UserFunction : public mup::ICallback
{
public:
    UserFunction(VDCalculator* calculator, const std::string& name)
        : ICallback(mup::cmFUNC, name.c_str(), -1), calculator_(calculator), name_(name)
    {
    }

    void Eval(mup::ptr_val_type& result, const mup::ptr_val_type* arguments, int count) override
    {
        VDArray<VDVariant> list;
        for (int index = 0; index < count; ++index)
            list.AppendItem(ToVariant(*arguments[index]));
        VDVariant answer;
        mup::Value value;
        if (!calculator_->ExecuteUserFunction(VDString(name_), std::move(list), &answer) || !ToValue(answer, &value))
            throw mup::ParserError("user function " + name_);
        *result = value;
    }
    const mup::char_type* GetDesc() const override { return "function of the host"; }
    mup::IToken* Clone() const override { return new UserFunction(*this); }

private:
    VDCalculator* calculator_;
    std::string name_;
};

}  // namespace

/// The parser, and the variables of the expression that is set.
class VDCalculator::Engine
{
public:
    explicit Engine(VDCalculator* owner) : owner_(owner), parser_(VVPackages) {}

    bool Set(const char* expression);
    const mup::IValue& Evaluate();

private:
    struct Variable
    {
        std::string name;
        int index;
        mup::Value value{0.0};
    };

    bool TakeVariable(std::string_view rest, std::size_t* length, std::string* text);
    std::size_t TakeName(std::string_view rest);

    VDCalculator* owner_;
    mup::ParserX parser_;
    std::deque<Variable> variables_;
    std::vector<std::string> functions_;
    bool ready_ = false;
};

bool VDCalculator::Engine::Set(const char* expression)
{
    ready_ = false;
    parser_.ClearVar();
    variables_.clear();
    for (const std::string& name : functions_)
        parser_.RemoveFun(name);
    functions_.clear();

    const std::string_view whole = expression == nullptr ? std::string_view() : std::string_view(expression);
    if (whole.size() > MaxExpression)
        return false;
    std::string text;
    bool quoted = false;
    for (std::size_t position = 0; position < whole.size();) {
        std::size_t length = 1;
        if (whole[position] == '"')
            quoted = !quoted;
        if (!quoted && whole[position] == '#') {
            if (!TakeVariable(whole.substr(position), &length, &text))
                return false;
        } else {
            if (!quoted && IsNameStart(whole[position]) && (position == 0 || !IsNameByte(whole[position - 1])))
                length = TakeName(whole.substr(position));
            text += whole.substr(position, length);
        }
        position += length;
    }
    parser_.SetExpr(text);
    parser_.GetExprVar();  // reads the expression, and throws if it can't
    ready_ = true;
    return true;
}

// Puts an identifier of our own in the place of a "#...#" token.
bool VDCalculator::Engine::TakeVariable(std::string_view rest, std::size_t* length, std::string* text)
{
    std::size_t end = 1;
    for (int depth = 0; end < rest.size() && (rest[end] != '#' || depth > 0); ++end)
        depth += rest[end] == '(' ? 1 : rest[end] == ')' ? -1 : 0;
    if (end >= rest.size())
        return false;
    const std::string name(rest.substr(0, end + 1));
    int index = -1;
    if (!owner_->IsVariableNameValid(name.c_str(), &index))
        return false;
    const std::string identifier = "dax_variable_" + std::to_string(variables_.size());
    variables_.push_back({name, index});
    parser_.DefineVar(identifier, mup::Variable(&variables_.back().value));
    *text += identifier;
    *length = end + 1;
    return true;
}

// Makes a name in front of a bracket a function of the derived calculator, unless the parser knows it.
std::size_t VDCalculator::Engine::TakeName(std::string_view rest)
{
    std::size_t length = 1;
    while (length < rest.size() && IsNameByte(rest[length]))
        ++length;
    const std::size_t next = rest.find_first_not_of(" \t", length);
    const std::string name(rest.substr(0, length));
    const bool known = parser_.IsFunDefined(name) || parser_.IsOprtDefined(name) || parser_.IsInfixOprtDefined(name) ||
                       parser_.IsPostfixOprtDefined(name) || parser_.IsConstDefined(name);
    if (next != std::string_view::npos && rest[next] == '(' && !known) {
        parser_.DefineFun(mup::ptr_cal_type(new UserFunction(owner_, name)));
        functions_.push_back(name);
    }
    return length;
}

const mup::IValue& VDCalculator::Engine::Evaluate()
{
    if (!ready_)
        throw mup::ParserError("no expression");
    for (Variable& variable : variables_) {
        VDVariant value;
        if (variable.index >= 0)
            owner_->GetVariableByIndex(variable.index, value);
        else
            owner_->GetVariableByName(variable.name.c_str(), value);
        if (!ToValue(value, &variable.value))
            throw mup::ParserError("no value for " + variable.name);
    }
    return parser_.Eval();
}

VDCalculator::VDCalculator() = default;

VDCalculator::~VDCalculator() = default;

void VDCalculator::GetVariableByName(const char*, VDVariant&) {}

void VDCalculator::GetVariableByIndex(int, VDVariant&) {}

bool VDCalculator::IsVariableNameValid(const char* name, int*)
{
    return name != nullptr && std::strlen(name) > 2;
}

bool VDCalculator::ExecuteUserFunction(const VDString&, VDArray<VDVariant>, VDVariant*)
{
    return false;
}

bool VDCalculator::SetExpression(const char* expression)
{
    try {
        if (engine_ == nullptr)
            engine_ = std::make_unique<Engine>(this);
        return engine_->Set(expression);
    } catch (const mup::ParserError&) {
        return false;
    } catch (const std::exception&) {
        return false;
    }
}

bool VDCalculator::EvaluateToDouble(const char* expression, double* value)
{
    if (!SetExpression(expression))
        return false;
    try {
        return ToVariant(engine_->Evaluate()).ConvertToDouble(value);
    } catch (const mup::ParserError&) {
        return false;
    } catch (const std::exception&) {
        return false;
    }
}

bool VDCalculator::EvaluateExpressionToBoolean(bool* value)
{
    if (engine_ == nullptr)
        return false;
    try {
        const VDVariant result = ToVariant(engine_->Evaluate());
        VDString text;
        double number = 0;
        if (result.GetString(&text))
            return VFAscToBoolean(text, value);
        if (!result.ConvertToDouble(&number))
            return false;
        *value = number != 0;
        return true;
    } catch (const mup::ParserError&) {
        return false;
    } catch (const std::exception&) {
        return false;
    }
}
