#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "model/Platform.h"

namespace vortan {

/// A Platform for tests, which plays a script: the boxes that must come, in their order, and the answers to
/// them. A box that is not next in the script fails the test and is answered with what changes least; so does
/// a box left over at the end. Its directories are one new directory, which goes when the object does.
class ScriptedPlatform : public Platform {
  public:
    ScriptedPlatform() : directory_(MakeDirectory()) {}
    ~ScriptedPlatform() override {
        for (const Box& box : boxes_)
            ADD_FAILURE() << "The box \"" << box.title << "\" (" << box.fragment << ") never came";
        if (!inputs_.empty()) ADD_FAILURE() << inputs_.size() << " input boxes never came";
        if (!fileNames_.empty()) ADD_FAILURE() << fileNames_.size() << " file dialogs never came";
        std::error_code ignored;
        std::filesystem::remove_all(directory_, ignored);
    }
    ScriptedPlatform(const ScriptedPlatform&) = delete;
    ScriptedPlatform& operator=(const ScriptedPlatform&) = delete;

    /// A message box of that title whose text contains `fragment` must come next.
    void ExpectBox(const std::string& title, BoxAnswer answer, const std::string& fragment = "") {
        boxes_.push_back({title, fragment, answer});
    }
    void ExpectInput(InputAnswer answer) { inputs_.push_back(std::move(answer)); }
    void ExpectSaveFileDialog(InputAnswer answer) { fileNames_.push_back(std::move(answer)); }
    bool AllBoxesCame() const { return boxes_.empty(); }

    const std::string& Directory() const { return directory_; }

    DateTime now{37137.5};  ///< 2001-09-03 12:00, a Monday
    std::string currencySymbol = "$";
    std::string logDirectory;             ///< empty: Directory()
    std::string backupDirectory;          ///< empty: Directory()
    std::string programFile = "vortan";   ///< of no file that there is
    std::function<void()> onServeEvents;  ///< what the user does while a solve runs
    std::function<void()> onBox;          ///< what goes on while a box is open
    std::vector<std::string> boxTexts;    ///< of all boxes that came
    std::vector<std::string> statusMessages;
    std::vector<std::string> solveStatuses;
    bool keepsSolveStatuses = true;
    bool solveTimerArmed = false;
    int beeps = 0;
    std::string offered;  ///< by the last input box

    BoxAnswer MessageBox(const std::string& text, const std::string& title, BoxIcon,
                         BoxButtons buttons) override {
        boxTexts.push_back(text);
        if (boxes_.empty() || boxes_.front().title != title ||
            text.find(boxes_.front().fragment) == std::string::npos) {
            ADD_FAILURE() << "Unexpected box \"" << title << "\": " << text;
            return Harmless(buttons);
        }
        const BoxAnswer answer = boxes_.front().answer;
        boxes_.pop_front();
        if (onBox) onBox();
        return answer;
    }
    InputAnswer InputBox(const std::string& prompt, const std::string& title,
                         const std::string& initial) override {
        offered = initial;
        return Take(inputs_, "input box \"" + title + "\": " + prompt);
    }
    InputAnswer SaveFileDialog(const std::string&, const std::string& suggestedName) override {
        return Take(fileNames_, "file dialog for " + suggestedName);
    }
    void Beep() override { ++beeps; }
    void StatusMessage(const std::string& text) override { statusMessages.push_back(text); }
    void SolveStatus(const std::string& text) override {
        if (keepsSolveStatuses) solveStatuses.push_back(text);
    }
    void ServeEvents() override {
        if (onServeEvents) onServeEvents();
    }
    void ArmSolveTimer(bool armed) override { solveTimerArmed = armed; }
    DateTime Now() override { return now; }
    std::string CurrencySymbol() override { return currencySymbol; }
    std::string SettingsDirectory() override { return directory_; }
    std::string LogDirectory() override { return logDirectory.empty() ? directory_ : logDirectory; }
    std::string BackupDirectory() override { return backupDirectory.empty() ? directory_ : backupDirectory; }
    std::string ProgramFile() override { return programFile; }

  private:
    struct Box {
        std::string title, fragment;
        BoxAnswer answer;
    };

    static std::string MakeDirectory() {
        std::random_device random;
        for (;;) {
            const auto path = std::filesystem::temp_directory_path() /
                              ("vortan-test-" + std::to_string(random()) + std::to_string(random()));
            if (std::filesystem::create_directory(path)) return path.string();
        }
    }

    static BoxAnswer Harmless(BoxButtons buttons) {
        switch (buttons) {
            case BoxButtons::Ok:
                return BoxAnswer::Ok;
            case BoxButtons::YesNo:
                return BoxAnswer::No;
            case BoxButtons::AbortRetryIgnore:
                return BoxAnswer::Abort;
            default:
                return BoxAnswer::Cancel;
        }
    }

    static InputAnswer Take(std::deque<InputAnswer>& answers, const std::string& what) {
        if (answers.empty()) {
            ADD_FAILURE() << "Unexpected " << what;
            return {};
        }
        InputAnswer answer = std::move(answers.front());
        answers.pop_front();
        return answer;
    }

    std::string directory_;
    std::deque<Box> boxes_;
    std::deque<InputAnswer> inputs_, fileNames_;
};

}  // namespace vortan
