#include "persist/Settings.h"

#include <algorithm>
#include <filesystem>

#include "model/Characters.h"
#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/NumberText.h"
#include "model/ValueText.h"
#include "persist/TokenReader.h"
#include "persist/Vfile.h"

namespace vortan {
namespace {

constexpr const char* kDefaults[][2] = {
    {"AdjustColorsCheck", "-"},
    {"AutomaticBackupCombo", "off"},
    {"BarOption", "X"},
    {"CriticalPathRedCheck", "-"},
    {"DateDependencyCombo", "Line to top of chart"},
    {"DependencyArrowsCombo", "Control"},
    {"EfficiencyText", "0.85"},
    {"ListAllDepsCheck", "X"},
    {"ListTaskLeaderCheck", "X"},
    {"MilestoneOption", "-"},
    {"ShowMarkersCheck", "X"},
    {"ShowProjectManagerCheck", "-"},
    {"SortByDateCheck", "-"},
    {"SubprojectDisplayCombo", "One level only"},
    {"WrapTextCheck", "-"},
};

constexpr double kLargestFont = 500;  // points; what is beyond cannot have been meant

std::string RecentKey(int number) {
    return "RecentFile" + std::to_string(number);
}

bool SameText(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}

void AppendToken(std::string& out, std::string text) {
    // A line break cannot stand in a line.
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    AppendQuoted(out, text);
}

}  // namespace

std::string Settings::FileName() const {
    return JoinPath(platform_.SettingsDirectory(), "Vortan.cfg");
}

void Settings::ReadOnce() {
    if (!read_) ReadConfigFile();
}

std::string Settings::Find(const std::string& key) const {
    const auto at = byKey_.find(key);
    return at == byKey_.end() ? std::string() : at->second->second;
}

void Settings::Store(std::string_view key, std::string_view value) {
    Entry entry(key, value);
    if (const auto at = byKey_.find(entry.first); at != byKey_.end()) {
        entries_.erase(at->second);
        byKey_.erase(at);
    }
    entries_.push_back(std::move(entry));
    byKey_.emplace(entries_.back().first, std::prev(entries_.end()));
}

std::string Settings::ReadSettings(const std::string& key) {
    ReadOnce();
    return Find(key);
}

void Settings::WriteSettings(const std::string& key, const std::string& value) {
    if (key.empty()) AssertionFailed();
    ReadOnce();
    Store(key, value);
}

void Settings::ReadConfigFile() {
    const Section section("Settings:ReadConfigFile");
    read_ = true;
    entries_.clear();
    byKey_.clear();
    for (const auto& setting : kDefaults) Store(setting[0], setting[1]);

    const std::string name = FileName();
    FileText file;
    if (!ReadFileText(platform_, name, file)) return;
    TokenReader reader(file.text, name, true);
    int broken = 0;
    std::string damage;
    const auto readLine = [&](auto&& read) {
        try {
            read();
        } catch (const Fault& fault) {
            if (++broken == 1) damage = fault.Description();
        }
        reader.SkipLine();
    };
    readLine([&] { reader.ExpectToken("INITIALIZATION"); });
    while (!reader.AtEnd()) readLine([&] { ReadSetting(reader); });
    if (broken > 1) damage += "\nOf the lines behind it, " + std::to_string(broken - 1) + " cannot be read.";
    if (broken > 0) Refuse(damage);
}

void Settings::ReadSetting(TokenReader& reader) {
    const std::string key(reader.ReadToken());
    if (key.empty() && reader.EndOfLine()) return;
    if (key.empty()) reader.Fail("there is no name of a setting");
    if (reader.EndOfLine()) reader.Fail("there is no value for " + key);
    const std::string value(reader.ReadToken());
    if (!reader.EndOfLine()) reader.Fail("there is more than one value for " + key);
    Store(key, value);
}

bool Settings::WriteConfigFile() {
    const Section section("Settings:WriteConfigFile");
    if (!read_) return true;
    std::string text = "INITIALIZATION\r\n";
    for (const auto& [key, value] : entries_) {
        AppendToken(text, key);
        text += ',';
        AppendToken(text, value);
        text += "\r\n";
    }
    std::error_code ignored;  // writing tells soon enough
    std::filesystem::create_directories(platform_.SettingsDirectory(), ignored);
    return WriteFileText(platform_, FileName(), text);
}

void Settings::AddRecentFile(const std::string& name) {
    ReadOnce();
    int place = 1;
    while (place < kRecentFiles && !SameText(Find(RecentKey(place)), name)) ++place;
    for (; place > 1; --place) Store(RecentKey(place), Find(RecentKey(place - 1)));
    Store(RecentKey(1), name);
}

std::vector<std::string> Settings::RecentFiles() {
    ReadOnce();
    std::vector<std::string> names;
    for (int number = 1; number <= kRecentFiles; ++number) {
        std::string name = Find(RecentKey(number));
        if (!name.empty()) names.push_back(std::move(name));
    }
    return names;
}

FormFont Settings::FontOf(const std::string& form) {
    ReadOnce();
    FormFont font;
    const std::string name = Find(form + ".FontName");
    if (name.empty()) return font;
    font.name = name;
    const double size = ScanNumber(Find(form + ".FontSize"));
    if (size > 0 && size <= kLargestFont) font.size = size;
    font.bold = ParseBool(Find(form + ".FontBold")).value_or(false);
    font.italic = ParseBool(Find(form + ".FontItalic")).value_or(false);
    return font;
}

}  // namespace vortan
