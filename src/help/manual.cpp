#include "help/manual.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

namespace brizalog {

namespace {

// The sections of the README that are written for developers of Brizalog, by their headings.
constexpr std::string_view kDeveloperSections[] = {
    "How the code is laid out",
    "Scenario runner",
    "History windows in the scenario runner",
    "Hardening: fuzzing, sanitizers and the long run",
};

// A guide larger than this is no README of ours: it is not read, so that a wrong file in its
// place cannot take the memory of the program.
constexpr std::uintmax_t kLargestGuide = 8u * 1024u * 1024u;

std::string_view TrimBlanks(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) {
        text.remove_suffix(1);
    }
    return text;
}

// Calls `line(text, inFence)` for each line of `markdown` with its line end; `inFence` is true
// for the lines of a fenced code block, its fences included.
template <typename Line>
void ForEachLine(std::string_view markdown, Line&& line) {
    bool inFence = false;
    std::size_t from = 0;
    while (from < markdown.size()) {
        std::size_t end = markdown.find('\n', from);
        end = end == std::string_view::npos ? markdown.size() : end + 1;
        const std::string_view text = markdown.substr(from, end - from);
        const std::string_view trimmed = TrimBlanks(text);
        const bool fence = trimmed.substr(0, 3) == "```" || trimmed.substr(0, 3) == "~~~";
        if (fence) {
            inFence = !inFence;
            line(text, true);
        } else {
            line(text, inFence);
        }
        from = end;
    }
}

// The level and title of a heading line ("## Install" is 2, "Install"); level 0 for any other.
int HeadingOf(std::string_view line, std::string& title) {
    int level = 0;
    while (level < static_cast<int>(line.size()) && line[static_cast<std::size_t>(level)] == '#') {
        ++level;
    }
    if (level == 0 || level > 6 || static_cast<std::size_t>(level) >= line.size() ||
        line[static_cast<std::size_t>(level)] != ' ') {
        return 0;
    }
    std::string_view text = TrimBlanks(line.substr(static_cast<std::size_t>(level)));
    while (!text.empty() && (text.back() == '#' || text.back() == '\n')) {
        text.remove_suffix(1);
    }
    title = std::string(TrimBlanks(text));
    return level;
}

bool ReadGuide(const std::filesystem::path& file, std::string& text) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error) || error) {
        return false;
    }
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error || size > kLargestGuide) {
        return false;
    }
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        return false;
    }
    std::ostringstream whole;
    whole << in.rdbuf();
    if (in.bad()) {
        return false;
    }
    text = whole.str();
    return true;
}

std::string NotFoundPage(const std::vector<std::filesystem::path>& folders) {
    std::string page =
        "# Brizalog manual\n\nThe manual is not on this computer. Brizalog looks for "
        "the file " +
        std::string(kManualFile) + " in these folders, in this order:\n\n";
    for (const std::filesystem::path& folder : folders) {
        page += "- `" + folder.generic_string() + "`\n";
    }
    page +=
        "\nA build copies the manual to the folder manual/ beside the program, and the package "
        "installs it in /usr/share/doc/brizalog. A system that leaves out documentation when it "
        "installs packages (a path-exclude line in /etc/dpkg/dpkg.cfg.d/) leaves it out too; the "
        "same text is the README of Brizalog's sources.\n";
    return page;
}

}  // namespace

std::vector<std::filesystem::path> ManualFolders(const std::filesystem::path& programDir,
                                                 const std::filesystem::path& installedDocDir) {
    std::vector<std::filesystem::path> folders;
    const auto add = [&folders](const std::filesystem::path& folder) {
        if (!folder.empty() && std::find(folders.begin(), folders.end(), folder) == folders.end()) {
            folders.push_back(folder);
        }
    };
    add(programDir / "manual");
    add(installedDocDir);
    if (!programDir.empty()) {
        add((programDir.parent_path() / "share" / "doc" / "brizalog").lexically_normal());
    }
    add("/usr/share/doc/brizalog");
    return folders;
}

namespace {

// "[text](#anchor)" becomes "text" where no heading of `markdown` has the anchor any more: a
// link to a section that the guide leaves out would lead nowhere.
std::string UnlinkMissingSections(const std::string& markdown) {
    std::vector<std::string> anchors;
    for (const ManualSection& section : ManualSections(markdown)) {
        anchors.push_back(section.anchor);
    }
    std::string out;
    out.reserve(markdown.size());
    std::size_t from = 0;
    for (;;) {
        const std::size_t middle = markdown.find("](#", from);
        const std::size_t open =
            middle == std::string::npos ? std::string::npos : markdown.rfind('[', middle);
        const std::size_t close =
            middle == std::string::npos ? std::string::npos : markdown.find(')', middle);
        if (middle == std::string::npos || open == std::string::npos || open < from ||
            close == std::string::npos) {
            out.append(markdown, from, std::string::npos);
            return out;
        }
        const std::string anchor = markdown.substr(middle + 3, close - middle - 3);
        if (std::find(anchors.begin(), anchors.end(), anchor) != anchors.end()) {
            out.append(markdown, from, close + 1 - from);
        } else {
            out.append(markdown, from, open - from);
            out.append(markdown, open + 1, middle - open - 1);
        }
        from = close + 1;
    }
}

}  // namespace

std::string UserGuide(std::string_view readme) {
    std::string guide;
    guide.reserve(readme.size());
    bool dropping = false;
    ForEachLine(readme, [&](std::string_view line, bool inFence) {
        std::string title;
        const int level = inFence ? 0 : HeadingOf(line, title);
        if (level == 1 || level == 2) {
            dropping = level == 2 &&
                       std::find(std::begin(kDeveloperSections), std::end(kDeveloperSections),
                                 title) != std::end(kDeveloperSections);
        }
        if (!dropping) {
            guide.append(line);
        }
    });
    return UnlinkMissingSections(guide);
}

std::string HeadingAnchor(std::string_view heading) {
    std::string anchor;
    for (const char c : heading) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 'A' && byte <= 'Z') {
            anchor.push_back(static_cast<char>(byte - 'A' + 'a'));
        } else if ((byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || c == '-' ||
                   c == '_' || byte >= 0x80) {
            anchor.push_back(c);
        } else if (c == ' ') {
            anchor.push_back('-');
        }
    }
    return anchor;
}

std::vector<ManualSection> ManualSections(std::string_view markdown) {
    std::vector<ManualSection> sections;
    ForEachLine(markdown, [&sections](std::string_view line, bool inFence) {
        std::string title;
        const int level = inFence ? 0 : HeadingOf(line, title);
        if (level > 0) {
            std::string anchor = HeadingAnchor(title);
            sections.push_back({level, std::move(title), std::move(anchor)});
        }
    });
    return sections;
}

ManualViewer::ManualViewer(std::vector<std::filesystem::path> folders)
    : m_folders(std::move(folders)) {}

void ManualViewer::Form_Load() {
    m_model.folder.clear();
    for (const std::filesystem::path& folder : m_folders) {
        std::string readme;
        if (ReadGuide(folder / kManualFile, readme)) {
            m_model.markdown = UserGuide(readme);
            m_model.folder = folder;
            break;
        }
    }
    if (m_model.folder.empty()) {
        m_model.markdown = NotFoundPage(m_folders);
    }
    m_allSections = ManualSections(m_model.markdown);
    m_model.sections.clear();
    std::copy_if(m_allSections.begin(), m_allSections.end(), std::back_inserter(m_model.sections),
                 [](const ManualSection& section) { return section.level == 2; });
}

void ManualViewer::Find_Shortcut() {
    m_model.findBarVisible = true;
}

void ManualViewer::Find_Close() {
    m_model.findBarVisible = false;
    m_model.findFailed = false;
}

void ManualViewer::FindText_Change(std::string_view text) {
    m_model.findText = std::string(text);
    m_model.findFailed = false;
}

void ManualViewer::FindResult(bool found) {
    m_model.findFailed = !found && !m_model.findText.empty();
}

const ManualSection* ManualViewer::SectionOfLink(std::string_view link) const {
    if (link.size() < 2 || link.front() != '#') {
        return nullptr;
    }
    link.remove_prefix(1);
    const auto found =
        std::find_if(m_allSections.begin(), m_allSections.end(),
                     [link](const ManualSection& section) { return section.anchor == link; });
    return found == m_allSections.end() ? nullptr : &*found;
}

}  // namespace brizalog
