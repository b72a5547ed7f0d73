#pragma once

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
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
        valid_ = header.starts_with("STAND");
        if (!valid_)
            return;
        static const std::regex setting("([^ =]+)=(?:\"([^\"]*)\"|([^ ]*))");
        static const std::regex lineFeed("\\\\n");
        const std::string line(header.substr(0, header.find_first_of(std::string_view("\r\n\0", 3))));
        for (std::sregex_iterator found(line.begin(), line.end(), setting), end; found != end; ++found)
            values_[(*found)[1]] = std::regex_replace((*found)[2].str() + (*found)[3].str(), lineFeed, "\n");
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
        std::istringstream text(Text(key, otherwise));
        for (std::string item; std::getline(text, item, ',');)
            items.push_back(item);
        return items;
    }
    bool Lists(const std::string& key, std::string_view item, const std::string& otherwise = {}) const
    {
        const std::vector<std::string> items = List(key, otherwise);
        return std::find(items.begin(), items.end(), item) != items.end();
    }

private:
    bool valid_ = false;
    std::map<std::string, std::string> values_;
};
