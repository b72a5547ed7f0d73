#include "FormatText.h"

#include <cstdio>
#include <locale.h>

namespace {

// Puts the calling thread into the "C" locale.
class PlainLocale
{
public:
    PlainLocale()
    {
        static const locale_t plain = newlocale(LC_ALL_MASK, "C", locale_t{});
        previous_ = uselocale(plain);
    }
    ~PlainLocale() { uselocale(previous_); }
    PlainLocale(const PlainLocale&) = delete;
    PlainLocale& operator=(const PlainLocale&) = delete;

private:
    locale_t previous_;
};

}  // namespace

std::string VFFormatArguments(const char* format, std::va_list arguments)
{
    if (format == nullptr)
        return {};
    const PlainLocale locale;
    std::va_list again;
    va_copy(again, arguments);
    // Long enough for nearly every report, so that the usual case takes one pass.
    char buffer[512];
    std::string text;
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    if (length > 0 && static_cast<std::size_t>(length) < sizeof buffer) {
        text.assign(buffer, static_cast<std::size_t>(length));
    } else if (length > 0) {
        text.resize(static_cast<std::size_t>(length));
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return text;
}
