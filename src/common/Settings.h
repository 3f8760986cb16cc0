#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace marisonde {

/// Per-user text values by section and key. A missing key gives the caller's default.
class Settings {
  public:
    virtual ~Settings() = default;
    [[nodiscard]] virtual std::string GetSetting(std::string_view section, std::string_view key,
                                                 std::string_view missing = "") const = 0;
    virtual void SaveSetting(std::string_view section, std::string_view key, std::string_view value) = 0;
};

/// Settings that live as long as the object: for tests and for the demonstration.
class MapSettings final : public Settings {
  public:
    [[nodiscard]] std::string GetSetting(std::string_view section, std::string_view key,
                                         std::string_view missing) const override {
        const auto found = values_.find({std::string(section), std::string(key)});
        return found == values_.end() ? std::string(missing) : found->second;
    }
    void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override {
        values_[{std::string(section), std::string(key)}] = value;
    }

  private:
    std::map<std::pair<std::string, std::string>, std::string> values_;
};

}  // namespace marisonde
