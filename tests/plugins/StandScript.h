#pragma once

#include <charconv>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// The first line of a stand-in file: what the plug-ins are to do with it.
class StandScript
{
public:
    StandScript() = default;
    explicit StandScript(std::string_view header)
    {
        if (!header.starts_with("STAND"))
            return;
        valid_ = true;
        std::string_view line = header.substr(5);
        line = line.substr(0, line.find_first_of(std::string_view("\r\n\0", 3)));
        std::size_t at = 0;
        while ((at = line.find_first_not_of(' ', at)) < line.size()) {
            const std::size_t equals = line.find('=', at);
            if (equals == std::string_view::npos)
                return;
            const bool quoted = equals + 1 < line.size() && line[equals + 1] == '"';
            const std::size_t begin = equals + (quoted ? 2U : 1U);
            const std::size_t end = std::min(line.find(quoted ? '"' : ' ', begin), line.size());
            values_[std::string(line.substr(at, equals - at))] = Unescape(line.substr(begin, end - begin));
            at = end + (quoted ? 1U : 0U);
        }
    }

    static StandScript OfFile(const char* filename)
    {
        std::string header(512, '\0');
        std::ifstream file(filename, std::ios::binary);
        file.read(header.data(), 512);
        return StandScript(std::string_view(header.data(), static_cast<std::size_t>(file.gcount())));
    }

    bool IsValid() const { return valid_; }
    bool Has(const std::string& key) const { return values_.contains(key); }
    std::string Text(const std::string& key, const std::string& otherwise = {}) const
    {
        const auto found = values_.find(key);
        return found == values_.end() ? otherwise : found->second;
    }
    double Number(const std::string& key, double otherwise = 0.0) const
    {
        return Has(key) ? std::strtod(Text(key).c_str(), nullptr) : otherwise;
    }
    int Int(const std::string& key, int otherwise = 0) const { return static_cast<int>(Number(key, otherwise)); }
    std::vector<std::string> List(const std::string& key, const std::string& otherwise = {}) const
    {
        std::vector<std::string> items;
        const std::string text = Text(key, otherwise);
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find(',', at), text.size());
            items.push_back(text.substr(at, end - at));
            at = end + 1;
        }
        return items;
    }
    bool Lists(const std::string& key, std::string_view item, const std::string& otherwise = {}) const
    {
        for (const std::string& listed : List(key, otherwise))
            if (listed == item)
                return true;
        return false;
    }

private:
    static std::string Unescape(std::string_view text)
    {
        std::string result(text);
        for (std::size_t at = 0; (at = result.find("\\n", at)) != std::string::npos; ++at)
            result.replace(at, 2, "\n");
        return result;
    }

    bool valid_ = false;
    std::map<std::string, std::string> values_;
};
