#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "FuzzTargets.h"
#include "support/Paths.h"

namespace {

namespace fs = std::filesystem;

TEST(FuzzReplay, EveryTargetSurvivesItsCorpus) {
    ASSERT_FALSE(FuzzTarget::All().empty());
    for (const FuzzTarget* const target : FuzzTarget::All()) {
        int inputs = 0;
        for (const auto& entry : fs::directory_iterator(fs::path(vortan::FuzzCorpus()) / target->Name)) {
            SCOPED_TRACE(entry.path().string());
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file),
                                          std::istreambuf_iterator<char>()};
            EXPECT_NO_THROW(target->Run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
            ++inputs;
        }
        EXPECT_GT(inputs, 0) << target->Name;
    }
}

TEST(FuzzReplay, EveryCorpusHasATarget) {
    std::set<std::string> names;
    for (const FuzzTarget* const target : FuzzTarget::All()) names.insert(target->Name);
    for (const auto& entry : fs::directory_iterator(vortan::FuzzCorpus()))
        EXPECT_TRUE(names.count(entry.path().filename().string())) << entry.path();
}

}  // namespace
