#include "persist/Settings.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "model/Characters.h"
#include "model/ErrTrap.h"
#include "model/Fault.h"
#include "model/NumberText.h"
#include "persist/FieldWriter.h"
#include "persist/TokenReader.h"
#include "persist/Vfile.h"

namespace vortan {
namespace {

constexpr double kLargestFont = 500;  // points; what is beyond cannot have been meant

constexpr Subprojects LeastOf(Subprojects) {
    return Subprojects::OneLevel;
}
constexpr Arrows LeastOf(Arrows) {
    return Arrows::None;
}
constexpr DateDeps LeastOf(DateDeps) {
    return DateDeps::Hidden;
}

// What a preference is called in the settings. A choice is known by its first letter; what has another is the
// one that draws the least.
std::string TextOf(bool on) {
    return on ? "X" : "-";
}
std::string TextOf(const std::string& text) {
    return text;
}
std::string TextOf(std::int32_t minutes) {
    return minutes == 0 ? "off" : FormatNumber(minutes);
}
template <class Choice>
std::string TextOf(Choice choice) {
    return ChoiceTexts(choice)[static_cast<std::size_t>(choice)];
}
void TakeText(bool& on, const std::string& text) {
    on = text == "X";
}
void TakeText(std::string& value, const std::string& text) {
    value = text;
}
void TakeText(std::int32_t& minutes, const std::string& text) {
    minutes = std::clamp<std::int32_t>(ScanInt32(text), 0, INT16_MAX);
}
template <class Choice>
void TakeText(Choice& choice, const std::string& text) {
    const auto texts = ChoiceTexts(choice);
    const auto at = std::find_if(texts.begin(), texts.end(),
                                 [&](const char* each) { return !text.empty() && each[0] == text[0]; });
    const bool known = at != texts.end();
    choice = known ? static_cast<Choice>(at - texts.begin()) : LeastOf(choice);
}

std::string RecentKey(int number) {
    return "RecentFile" + std::to_string(number);
}

}  // namespace

std::string Settings::FileName() const {
    return (std::filesystem::path(platform_.SettingsDirectory()) / "Vortan.cfg").string();
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

Preferences Settings::ThePreferences() {
    ReadOnce();
    Preferences preferences;
    Preferences::ForEach(preferences, [this](const char* key, auto& value) { TakeText(value, Find(key)); });
    return preferences;
}

void Settings::ReadConfigFile() {
    const Section section("Settings:ReadConfigFile");
    read_ = true;
    entries_.clear();
    byKey_.clear();
    std::map<std::string, std::string> defaults;
    Preferences::ForEach(Preferences(),
                         [&](const char* key, const auto& value) { defaults[key] = TextOf(value); });
    for (const auto& [key, value] : defaults) Store(key, value);

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

void Settings::DropRecentFile(const std::string& name) {
    auto names = RecentFiles();
    std::erase_if(names, [&](const std::string& each) { return SameText(each, name); });
    names.resize(kRecentFiles);
    for (int place = 1; place <= kRecentFiles; ++place)
        Store(RecentKey(place), names[static_cast<std::size_t>(place - 1)]);
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

void Settings::SetFont(const std::string& form, const FormFont& font) {
    ReadOnce();
    Store(form + ".FontName", font.name);
    Store(form + ".FontSize", FormatNumber(font.size));
    Store(form + ".FontBold", FormatNumber(font.bold));
    Store(form + ".FontItalic", FormatNumber(font.italic));
}

}  // namespace vortan
