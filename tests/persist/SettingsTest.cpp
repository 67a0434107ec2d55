#include "persist/Settings.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "model/Fault.h"
#include "persist/PackedText.h"
#include "support/PlanFiles.h"
#include "support/ScriptedPlatform.h"

namespace vortan {
namespace {

using Names = std::vector<std::string>;

class SettingsTest : public testing::Test {
  protected:
    std::string File() const { return platform.Directory() + "/Vortan.cfg"; }
    std::string FileText() const { return UnpackText(FileBytes(File())).text; }
    void WriteFile(const std::string& text) const { WriteBytes(File(), PackText(text)); }

    ScriptedPlatform platform;
    Settings settings{platform};
};

TEST_F(SettingsTest, WithoutAFileAreTheDefaults) {
    EXPECT_TRUE(settings.WriteConfigFile());
    EXPECT_FALSE(std::filesystem::exists(File())) << "written without a use";
    EXPECT_EQ(settings.ReadSettings("EfficiencyText"), "0.85");
    EXPECT_EQ(settings.ReadSettings("NeverWritten"), "");
    EXPECT_EQ(settings.RecentFiles(), Names{});
    ASSERT_TRUE(settings.WriteConfigFile());
    const std::string text = FileText();
    EXPECT_TRUE(text.starts_with("INITIALIZATION\r\nAdjustColorsCheck,-\r\nAutomaticBackupCombo,off\r\n"));
    EXPECT_TRUE(text.ends_with("SubprojectDisplayCombo,One level only\r\nWrapTextCheck,-\r\n"));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 16);
}

TEST_F(SettingsTest, StandInTheOrderOfTheirLastChange) {
    settings.WriteSettings("First", "1");
    settings.WriteSettings("BarOption", "-");
    settings.WriteSettings("First", "2");
    settings.WriteConfigFile();
    EXPECT_TRUE(FileText().ends_with("WrapTextCheck,-\r\nBarOption,-\r\nFirst,2\r\n")) << FileText();
    EXPECT_EQ(FileText().find("First,1"), std::string::npos);
    EXPECT_THROW(settings.WriteSettings("", "x"), Fault);
}

TEST_F(SettingsTest, SurviveTheRun) {
    const Names values = {"",    "a,b", "\"quoted\" text", "say \"hi\"", "M\xC3\xBChle", "\"", ",", " ", " a",
                          "a  ", " \"b"};
    for (std::size_t i = 0; i < values.size(); ++i)
        settings.WriteSettings("Key" + std::to_string(i), values[i]);
    settings.WriteSettings("Two\nlines", "1\r\n2");
    settings.WriteSettings(" key, \"blank\" ", "kept");
    settings.AddRecentFile("/home/m/plans, old/a.vtb");
    ASSERT_TRUE(settings.WriteConfigFile());
    Settings next(platform);
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(next.ReadSettings("Key" + std::to_string(i)), values[i]);
    EXPECT_EQ(next.ReadSettings("Two lines"), "1  2");
    EXPECT_EQ(next.ReadSettings(" key, \"blank\" "), "kept");
    EXPECT_EQ(next.RecentFiles(), Names{"/home/m/plans, old/a.vtb"});
    Settings first(platform);
    first.WriteSettings("Key1", "new");  // a first write does not hide the file
    EXPECT_EQ(first.ReadSettings("Key1") + first.ReadSettings("Key9"), "newa  ");
    next.WriteSettings("Key0", "changed");
    next.ReadConfigFile();
    EXPECT_EQ(next.ReadSettings("Key0"), "");
}

TEST_F(SettingsTest, ADamagedFileIsAFaultOnce) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "when expecting \"INITIALIZATION\""},
        {"BarOption,-\r\nKey,read\r\nLast,x\r\n", "when expecting \"INITIALIZATION\""},
        {"INITIALIZATION\r\nKey,read\r\nBarOption\r\nLast,x\r\n", "there is no value for BarOption"},
        {"INITIALIZATION\r\nKey,read\r\nBarOption,-,-\r\nLast,x\r\n", "more than one value for BarOption"},
        {"INITIALIZATION\r\nKey,read\r\nBarOption,\"-\r\nLast,x\r\n", "Line 3"},
        {"INITIALIZATION\r\n\r\n\"\",-\r\nKey,\"-\"x\r\nKey,read\r\nLast,x\r\n",
         "Of the lines behind it, 1 cannot"},
        {"INITIALIZATION\r\nKey,read\r\nLast,x\r\nBarOption,-", "cut off"},
    };
    for (const auto& [text, fragment] : cases) {
        SCOPED_TRACE(text);
        WriteFile(text);
        Settings damaged(platform);
        try {
            damaged.WriteSettings("Mine", "lost with the fault");
            ADD_FAILURE() << "no fault";
        } catch (const Fault& fault) {
            EXPECT_NE(fault.Description().find(fragment), std::string::npos) << fault.Description();
            EXPECT_NE(fault.Description().find(File()), std::string::npos);
        }
        EXPECT_EQ(damaged.ReadSettings("BarOption"), "X");
        EXPECT_EQ(damaged.ReadSettings("Key") + damaged.ReadSettings("Last"), *text ? "readx" : "");
        EXPECT_TRUE(damaged.WriteConfigFile());
        EXPECT_TRUE(Settings(platform).ThePreferences().bars);  // the file is whole again
    }
}

TEST_F(SettingsTest, PreferencesAreKnownByTheirFirstLetter) {
    const auto read = [this](const std::string& text) {
        for (const char* key : {"SubprojectDisplayCombo", "DependencyArrowsCombo", "DateDependencyCombo",
                                "SortByDateCheck", "AutomaticBackupCombo", "EfficiencyText"})
            settings.WriteSettings(key, text);
        const Preferences all = settings.ThePreferences();
        EXPECT_EQ(all.efficiency, text);
        return std::tuple(all.subprojects, all.arrows, all.dateDeps, all.sortByDate, all.backupMinutes);
    };
    constexpr auto kLevel = Subprojects::OneLevel;
    constexpr auto kNone = Arrows::None;
    constexpr auto kHidden = DateDeps::Hidden;
    for (const char* text : {"", "Do not show", "-1"})
        EXPECT_EQ(read(text), std::tuple(kLevel, kNone, kHidden, false, 0)) << text;
    EXPECT_EQ(read("All"), std::tuple(Subprojects::All, Arrows::All, kHidden, false, 0));
    EXPECT_EQ(read("Tasks"), std::tuple(Subprojects::Flat, kNone, DateDeps::Triangle, false, 0));
    EXPECT_EQ(read("Control"), std::tuple(kLevel, Arrows::Control, kHidden, false, 0));
    EXPECT_EQ(read("Line"), std::tuple(kLevel, kNone, DateDeps::LineToTop, false, 0));
    EXPECT_EQ(read("Short"), std::tuple(kLevel, kNone, DateDeps::ShortArrow, false, 0));
    EXPECT_EQ(read("X"), std::tuple(kLevel, kNone, kHidden, true, 0));
    EXPECT_EQ(read("10 or so"), std::tuple(kLevel, kNone, kHidden, false, 10));
    EXPECT_EQ(read("32768"), std::tuple(kLevel, kNone, kHidden, false, 32767));
}

TEST_F(SettingsTest, TheNewestOfNineRecentFilesIsInFront) {
    for (int i = 1; i <= 10; ++i) settings.AddRecentFile("/f" + std::to_string(i));
    EXPECT_EQ(settings.RecentFiles(),
              (Names{"/f10", "/f9", "/f8", "/f7", "/f6", "/f5", "/f4", "/f3", "/f2"}));
    // Up, in whatever case; what stands behind it stays.
    for (const char* name : {"/F8", "/F8", "/f2"}) settings.AddRecentFile(name);
    EXPECT_EQ(settings.RecentFiles(),
              (Names{"/f2", "/F8", "/f10", "/f9", "/f7", "/f6", "/f5", "/f4", "/f3"}));
    EXPECT_EQ(settings.ReadSettings("RecentFile1"), "/f2");
}

TEST_F(SettingsTest, FontsHaveDefaults) {
    const FormFont plain = settings.FontOf("Gantt");
    EXPECT_TRUE(plain.name == "Times New Roman" && plain.size == 9 && !plain.bold && !plain.italic);
    settings.WriteSettings("Gantt.FontSize", "12");  // counts with a name only
    EXPECT_EQ(settings.FontOf("Gantt").size, 9);
    settings.SetFont("Gantt", {"Serif", 10.5, true, false});
    const FormFont chosen = settings.FontOf("Gantt");
    EXPECT_TRUE(chosen.name == "Serif" && chosen.size == 10.5 && chosen.bold && !chosen.italic);
    for (const char* const size : {"", "0", "-3", "1e9", "large"}) {
        settings.WriteSettings("Gantt.FontSize", size);
        EXPECT_EQ(settings.FontOf("Gantt").size, 9) << size;
    }
}

}  // namespace
}  // namespace vortan
