#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "model/Workspace.h"
#include "persist/Records.h"
#include "support/Paths.h"
#include "support/TextPlan.h"

namespace vortan {

inline std::string FileBytes(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    EXPECT_TRUE(file.good()) << name;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const std::string& name, std::string_view bytes) {
    std::ofstream(name, std::ios::binary) << bytes;
}

/// The names in a directory, sorted.
inline std::vector<std::string> NamesIn(const std::string& directory) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

/// The files of a directory with that extension (".vta"), sorted.
inline std::vector<std::string> FilesIn(const std::string& directory, const std::string& extension) {
    std::vector<std::string> files;
    for (const std::string& name : NamesIn(directory))
        if (name.ends_with(extension)) files.push_back(directory + "/" + name);
    return files;
}

inline LoadReport LoadText(Workspace& workspace, std::string_view text, bool packed = false) {
    TokenReader reader(text, "plan.vta", packed);
    LoadReport report;
    LoadRecords(workspace, reader, report);
    return report;
}

/// A project of one journal with one task on each of `taskIDs`, without dependencies.
inline std::string SmallPlan(const std::string& projectName, const std::vector<int>& taskIDs = {1}) {
    std::string words = "project " + projectName + " \"Small\" rule 1";
    for (const int id : taskIDs) words += "; task " + std::to_string(id) + " \"Dig\" clock 60";
    return PlanText(words);
}
/// A dependency record that has the task before it begin on 2001-09-03.
inline std::string StartsOnADate() {
    return "DEPENDENCY\r\n  Include,True\r\n  DepDate,09/03/2001 08:00am\r\n  TaskRequired,\"\"\r\n"
           "  FromPercent,100\r\n  ToPercent,0\r\n  Offset,0\r\n";
}

/// A dependency record for the task before it.
inline std::string DependencyOn(const std::string& project, int taskID) {
    return "DEPENDENCY\r\n  Include,True\r\n  DepDate,12/30/1899 12:00am\r\n  TaskRequired," + project + "," +
           std::to_string(taskID) + "\r\n  FromPercent,100\r\n  ToPercent,0\r\n  Offset,0\r\n";
}

}  // namespace vortan
