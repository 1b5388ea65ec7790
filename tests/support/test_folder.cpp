#include "support/test_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

namespace brizalog::testing {

TestFolder::TestFolder() {
    std::random_device seed;
    std::mt19937_64 random(seed());
    m_path = std::filesystem::temp_directory_path() / ("brizalog-test-" + std::to_string(random()));
    std::filesystem::create_directories(m_path);
}

TestFolder::~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

void TestFolder::Write(const std::string& relative, const std::string& text) const {
    const std::filesystem::path file = m_path / relative;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out << text;
}

std::string TestFolder::Read(const std::string& relative) const {
    std::ifstream in(m_path / relative, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

bool TestFolder::Exists(const std::string& relative) const {
    return std::filesystem::exists(m_path / relative);
}

std::string FirstRunFile(const std::string& name) {
    std::ifstream in(std::string(BRIZALOG_TEST_DATA) + "/catalogue/fixtures/" + name,
                     std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    EXPECT_FALSE(text.str().empty()) << name;
    return text.str();
}

}  // namespace brizalog::testing
