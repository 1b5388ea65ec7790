#pragma once

#include <filesystem>
#include <string>

namespace brizalog::testing {

// A fresh, empty program folder for one test, removed when the test ends.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    // Writes `text` (byte for byte) to `relative`, making folders on the way.
    void Write(const std::string& relative, const std::string& text) const;
    // The whole text of `relative`; empty when it is missing.
    std::string Read(const std::string& relative) const;
    bool Exists(const std::string& relative) const;

private:
    std::filesystem::path m_path;
};

// The first-run file `name` as written out by hand, line by line with CR LF, in
// tests/catalogue/fixtures/; a test failure when there is none.
std::string FirstRunFile(const std::string& name);

}  // namespace brizalog::testing
