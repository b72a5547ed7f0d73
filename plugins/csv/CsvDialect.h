#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

/// How a table is written down. It is guessed from a file, or chosen by the host; each part has a name and texts for its
/// values, under which hosts see and put it.
struct CsvDialect
{
    enum Units : char { NoUnits, UnitsLine, UnitsInBrackets };
    enum Encoding : char { Utf8, Utf8WithMark, Windows1252 };

    char separator = ',';  ///< a blank stands for any run of blanks and tabs
    char decimal = '.';
    bool header = true;
    Units units = NoUnits;
    Encoding encoding = Utf8;
    std::string lineEnd = "\n";
    std::string comment;         ///< lines in front of the table, in UTF-8
    bool quotedNumbers = false;  ///< quotes say nothing about what is in them, since all cells have them

    bool operator==(const CsvDialect&) const = default;
};

/// What a host wishes for, under the names of `CsvSettings`; the rest is guessed, or as `CsvDialect` begins.
class CsvSettings
{
public:
    enum Key : std::size_t { Separator, DecimalSign, Header, Units, Encoding, LineEnd, Comment, Count };
    static const char* GetName(std::size_t key);
    /// The key of a name, without regard to case; `Count` if there is none.
    static std::size_t Find(const char* name);

    /// False if the value isn't one of the key's.
    bool Put(std::size_t key, const std::string& text);
    bool Has(std::size_t key) const { return texts_[key].has_value(); }
    /// Puts everything that was wished for into a dialect.
    void ApplyTo(CsvDialect& dialect) const;
    bool operator==(const CsvSettings&) const = default;

    /// The text of a dialect's value.
    static std::string GetText(const CsvDialect& dialect, std::size_t key);

private:
    std::array<std::optional<std::string>, Count> texts_;
};
