// Makes a source of the pages of a folder, which compiles them into a program; or only checks them.
//   vortan-helpc FOLDER OUT.cpp [--only-warn]
//   vortan-helpc FOLDER --check SOURCES   also looks up the texts of the program in the sources below a
//   folder

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "help/ManualCheck.h"

namespace {

using namespace vortan;
namespace fs = std::filesystem;

std::string ContentOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<fs::path> FilesBelow(const fs::path& folder, std::initializer_list<const char*> extensions) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (std::find(extensions.begin(), extensions.end(), entry.path().extension()) != extensions.end())
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

struct Folder {
    std::vector<std::pair<std::string, std::string>> pages;  // file and text
    std::set<std::string> pictures;
};

Folder ReadFolder(const fs::path& path) {
    Folder folder;
    for (const fs::path& file : FilesBelow(path, {".txt"})) {
        if (file.filename() != "pictures.txt") folder.pages.emplace_back(file.string(), ContentOf(file));
    }
    std::ifstream pictures(path / "pictures.txt");
    for (std::string line; std::getline(pictures, line);)
        folder.pictures.insert(line.substr(0, line.find(':')));
    return folder;
}

/// As many literals in a row as it takes: compilers bound the length of one.
void WriteLiteral(std::ostream& out, std::string_view text) {
    constexpr std::size_t kLongest = 12'000;
    for (std::size_t at = 0; at < text.size(); at += kLongest)
        out << "R\"page~(" << text.substr(at, kLongest) << ")page~\"\n";
}

bool WriteSource(const Folder& folder, const char* name) {
    std::ofstream out(name, std::ios::binary);
    out << "#include \"help/Manual.h\"\n\nnamespace vortan {\nnamespace {\n\nconstexpr HelpSource kPages[] = "
           "{\n";
    for (const auto& [file, text] : folder.pages) {
        out << "{\"" << fs::path(file).filename().string() << "\",\n";
        WriteLiteral(out, text);
        out << "},\n";
    }
    out << "};\n\n}  // namespace\n\nconst Manual& TheManual() {\n"
           "    static std::vector<HelpFault> faults;  // none, else there were no program\n"
           "    static const Manual manual(kPages, faults);\n    return manual;\n}\n\n}  // namespace "
           "vortan\n";
    return out.flush().good();
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() < 2) return 2;
    const Folder folder = ReadFolder(words[0]);
    const bool check = words[1] == "--check";
    const bool onlyWarn = words.back() == "--only-warn";
    std::vector<HelpSource> sources;
    for (const auto& [file, text] : folder.pages) sources.push_back({file, text});
    std::vector<HelpFault> faults;
    const Manual manual(sources, faults);
    manual.Check(faults);
    if (check && words.size() > 2) {
        ProgramTexts program;
        for (const fs::path& file : FilesBelow(words[2], {".cpp", ".h"})) program.AddSource(ContentOf(file));
        CheckTexts(manual, program, folder.pictures, faults);
    }
    for (const HelpFault& fault : faults)
        std::cerr << fault.file << ":" << std::max(fault.line, 1) << (onlyWarn ? ": warning: " : ": error: ")
                  << fault.text << "\n";
    if (!faults.empty() && !onlyWarn) return 1;
    return check || WriteSource(folder, words[1].c_str()) ? 0 : 1;
}
