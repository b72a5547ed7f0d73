#include "UffHeader.h"

#include "vdbase/VDUnicodeString.h"

#include <charconv>
#include <utility>

namespace {

constexpr std::size_t LineColumns = 80;
constexpr std::size_t NameColumns = 10;
constexpr std::size_t LabelColumns = 20;
/// What marks the exact numbers behind the columns of a line.
constexpr const char* ExactMark = "exact ";
constexpr const char* SingleMark = " single";

std::u32string ToCharacters(const std::string& text)
{
    VDUnicodeString unicode;
    VFUtf8ToUnicode(VFTextAsUtf8(text.c_str()), &unicode);
    return unicode.CodePoints();
}

std::string ToUtf8(std::u32string_view characters)
{
    return VDUnicodeString(std::u32string(characters)).GetUtf8().Str();
}

/// Takes the columns of a line one field after another.
class Columns
{
public:
    explicit Columns(const std::string& line) : characters_(ToCharacters(line)) {}

    void Skip(std::size_t width) { at_ += width; }
    std::u32string_view Take(std::size_t width)
    {
        const std::u32string_view all(characters_);
        const std::u32string_view field = at_ < all.size() ? all.substr(at_, width) : std::u32string_view();
        at_ += width;
        return field;
    }
    std::string Text(std::size_t width)
    {
        const std::u32string_view field = Take(width);
        const std::size_t first = field.find_first_not_of(U" \t");
        return first == field.npos ? std::string() : ToUtf8(field.substr(first, field.find_last_not_of(U" \t") - first + 1));
    }
    bool Number(std::size_t width, long long* value) { return UffReadField(Text(width), value); }
    bool Number(std::size_t width, double* value) { return UffReadField(Text(width), value); }
    /// A number that is as good as not there if it can't be read.
    int Int(std::size_t width)
    {
        long long value = 0;
        return Number(width, &value) && std::in_range<int>(value) ? static_cast<int>(value) : 0;
    }

private:
    std::u32string characters_;
    std::size_t at_ = 0;
};

UffEntity ReadEntity(Columns& columns)
{
    UffEntity entity;
    columns.Skip(1);
    entity.name = columns.Text(NameColumns);
    entity.node = columns.Int(10);
    entity.direction = columns.Int(4);
    return entity;
}

UffAxis ReadAxis(const std::string& line)
{
    UffAxis axis;
    Columns columns(line);
    axis.type = columns.Int(10);
    for (int& exponent : axis.exponents)
        exponent = columns.Int(5);
    columns.Skip(1);
    axis.title = columns.Text(LabelColumns);
    columns.Skip(1);
    axis.units = columns.Text(LabelColumns);
    return axis;
}

/// A number in its columns, and whether it stands there with all its digits.
std::string WriteExactly(double value, bool* exact)
{
    const std::string text = UffWriteNumber(value, 13, 5);
    double read = 0;
    *exact = *exact && UffReadField(text, &read) && read == value;
    return text;
}

std::string Shortest(double value)
{
    char buffer[64];
    return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

/// What is too wide for its columns would move all that follows; 0 says that it isn't known.
std::string Right(long long value, std::size_t width)
{
    const std::string text = std::to_string(value);
    return text.size() <= width ? std::string(width - text.size(), ' ') + text : Right(0, width);
}

std::string Left(const std::string& text, std::size_t width)
{
    const std::string fit = UffFitText(text, width);
    return fit + std::string(width - ToCharacters(fit).size(), ' ');
}

std::string WriteEntity(const UffEntity& entity)
{
    return " " + Left(entity.name.empty() ? "NONE" : entity.name, NameColumns) + Right(entity.node, 10) +
           Right(entity.direction, 4);
}

std::string WriteAxis(const UffAxis& axis)
{
    std::string line = Right(axis.type, 10);
    for (const int exponent : axis.exponents)
        line += Right(exponent, 5);
    return line + " " + Left(axis.title.empty() ? "NONE" : axis.title, LabelColumns) + " " +
           Left(axis.units.empty() ? "NONE" : axis.units, LabelColumns);
}

}  // namespace

std::string UffFitText(const std::string& text, std::size_t columns)
{
    std::u32string characters = ToCharacters(text);
    for (char32_t& character : characters)
        if (character < U' ')
            character = U' ';
    characters.erase(0, characters.find_first_not_of(U' '));
    if (characters.size() > columns)
        characters.resize(columns);
    while (characters.ends_with(U' '))
        characters.pop_back();
    return ToUtf8(characters);
}

UffColumns UffHeader::GetColumns() const
{
    if (!IsDouble())
        return {13, 13, isEven ? 1 : GetParts(), isEven ? 6 : 6 / GetParts()};
    if (isEven)
        return {20, 20, 1, 4};
    return {13, 20, GetParts(), IsComplex() ? 1 : 2};
}

bool UffHeader::Read(const std::array<std::string, Lines>& lines, std::string* problem)
{
    for (std::size_t i = 0; i < ids.size(); ++i)
        ids[i] = Columns(lines[i]).Text(LineColumns);
    Columns dof(lines[5]);
    function = dof.Int(5);
    functionId = dof.Int(10);
    version = dof.Int(5);
    loadCase = dof.Int(10);
    response = ReadEntity(dof);
    reference = ReadEntity(dof);

    Columns form(lines[6]);
    long long type = 0;
    long long spacing = 0;
    const bool good = form.Number(10, &type) && form.Number(10, &count) && form.Number(10, &spacing) &&
                      form.Number(13, &first) && form.Number(13, &step) && form.Number(13, &z);
    if (!good || count < 0 || (spacing != 0 && spacing != 1)) {
        *problem = "has a header without the form of its data";
        return false;
    }
    if (type != RealSingle && type != RealDouble && type != ComplexSingle && type != ComplexDouble) {
        *problem = "has values of the unknown type " + std::to_string(type);
        return false;
    }
    ordinateType = static_cast<int>(type);
    isEven = spacing == 1;
    ReadExact(lines[6]);
    for (std::size_t i = 0; i < axes.size(); ++i)
        axes[i] = ReadAxis(lines[7 + i]);
    return true;
}

/// Exact numbers count if the columns have them with fewer digits.
void UffHeader::ReadExact(const std::string& line)
{
    if (line.size() <= LineColumns || !std::string_view(line).substr(LineColumns).starts_with(ExactMark))
        return;
    std::string_view text = std::string_view(line).substr(LineColumns + std::string_view(ExactMark).size());
    const bool hasSingles = text.ends_with(SingleMark);
    if (hasSingles)
        text.remove_suffix(std::string_view(SingleMark).size());
    std::vector<double> exact;
    const auto isSame = [](double number, double rounded) {
        return UffWriteNumber(number, 13, 5) == UffWriteNumber(rounded, 13, 5);
    };
    const UffColumns columns(20, 20, 1, 4);
    if (!UffReadLine(text, columns, 4, &exact) || exact.size() != 4 ||
        !isSame(exact[0], first) || !isSame(exact[1], step) || !isSame(exact[2], z))
        return;
    first = exact[0];
    step = exact[1];
    z = exact[2];
    isSingle = hasSingles;
    rate = exact[3] > 0 && 1 / exact[3] == step ? exact[3] : 0;
}

std::string UffHeader::Write() const
{
    std::string text;
    const auto put = [&text](const std::string& line) { text += line + "\n"; };
    for (const std::string& id : ids)
        put(Left(id.empty() ? "NONE" : id, LineColumns));
    put(Right(function, 5) + Right(functionId, 10) + Right(version, 5) + Right(loadCase, 10) + WriteEntity(response) +
        WriteEntity(reference));
    bool exact = !isSingle && (rate == 0 || 1 / step == rate);
    std::string form = Right(ordinateType, 10) + Right(count, 10) + Right(isEven ? 1 : 0, 10);
    for (const double number : {first, step, z})
        form += WriteExactly(number, &exact);
    if (!exact) {
        form.resize(LineColumns, ' ');
        form += ExactMark + Shortest(first) + " " + Shortest(step) + " " + Shortest(z) + " " + Shortest(rate) +
                (isSingle ? SingleMark : "");
    }
    put(form);
    for (const UffAxis& axis : axes)
        put(WriteAxis(axis));
    return text;
}
