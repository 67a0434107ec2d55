#pragma once

#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/Platform.h"
#include "persist/Preferences.h"

namespace vortan {

class TokenReader;

/// The font of a screen. The size is in points.
struct FormFont {
    std::string name = "Times New Roman";
    double size = 9;
    bool bold = false, italic = false;
};

/// The user's preferences, the recent files and the fonts of the screens: one table of names and texts, kept
/// in Vortan.cfg from one run to the next. The program owns one.
///
/// The first use reads the file. If that is damaged its fault goes out of that one call, and the table holds
/// the defaults and all lines that are whole; from then on everything works.
class Settings {
  public:
    static constexpr int kRecentFiles = 9;

    /// `platform` must outlive the settings.
    explicit Settings(Platform& platform) : platform_(platform) {}

    /// Empty for a key that was never written.
    std::string ReadSettings(const std::string& key);
    /// Stays in memory until WriteConfigFile. An empty key is a fault.
    void WriteSettings(const std::string& key, const std::string& value);
    /// What the settings say of the preferences.
    Preferences ThePreferences();

    /// Starts again from the defaults and the file. A missing file means defaults.
    void ReadConfigFile();
    /// Writes all settings in the order of their last change. Without a use of the settings there is nothing
    /// to write. A failure is told in a box and gives false.
    bool WriteConfigFile();

    /// Makes `name` the newest of the recent files; one that is there already, in whatever case, moves up.
    void AddRecentFile(const std::string& name);
    /// Takes it out of them.
    void DropRecentFile(const std::string& name);
    /// The newest first.
    std::vector<std::string> RecentFiles();

    /// The font of the screen of that name.
    FormFont FontOf(const std::string& form);
    void SetFont(const std::string& form, const FormFont& font);

  private:
    using Entry = std::pair<std::string, std::string>;

    void ReadOnce();
    void ReadSetting(TokenReader& reader);
    std::string FileName() const;
    std::string Find(const std::string& key) const;
    void Store(std::string_view key, std::string_view value);

    Platform& platform_;
    bool read_ = false;
    std::list<Entry> entries_;  // in the order of their last change
    std::unordered_map<std::string, std::list<Entry>::iterator> byKey_;
};

}  // namespace vortan
