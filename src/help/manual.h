#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace brizalog {

// Brizalog's own user guide, the window "Brizalog manual" of the Help menu. It is the README that
// ships with the program (Markdown), without the sections written for developers, with the
// screenshots that it names as docs/NAME.png in the folder beside it. It stands apart from the
// five help topics of `info`, whose files and messages stay as they are.

inline constexpr std::string_view kManualFile = "README.md";

// The folders where the guide is looked for, in this order: manual/ beside the program, where a
// build copies it; the documentation folder that the program was installed with; the same folder
// under the prefix the program now runs from (a copy moved as a whole); and the package's.
std::vector<std::filesystem::path> ManualFolders(const std::filesystem::path& programDir,
                                                 const std::filesystem::path& installedDocDir);

// The README without its developers' sections (the layout of the code, the scenario runner,
// hardening): each such "## " section goes with everything under it up to the next "## " heading.
// Lines inside fenced code blocks are never headings, whatever they start with. A link to a
// section left out keeps its text and loses its target.
std::string UserGuide(std::string_view readme);

// The anchor that a link inside the README uses for a heading ("[Install](#install)"): lower
// case, each blank a "-", and every character but letters, digits, "-" and "_" dropped, so
// "Hardening: fuzzing, sanitizers and the long run" is
// "hardening-fuzzing-sanitizers-and-the-long-run".
std::string HeadingAnchor(std::string_view heading);

// A heading of the guide: its level (1 for "#", 2 for "##", ...), text and anchor.
struct ManualSection {
    int level = 0;
    std::string title;
    std::string anchor;
};

// The headings of a Markdown text in their order, outside fenced code blocks.
std::vector<ManualSection> ManualSections(std::string_view markdown);

struct ManualModel {
    std::string caption = "Brizalog manual";
    // What the window shows, as Markdown: the guide, or a page that says where it was looked for.
    std::string markdown;
    // The folder the guide was read from, against which its images are found; empty when the
    // guide was not found.
    std::filesystem::path folder;
    std::vector<ManualSection> sections;  // the contents: the "##" headings of the guide

    bool findBarVisible = false;
    std::string findText;
    bool findFailed = false;  // the text typed is nowhere in the guide
};

// The logic of the manual window. The window does the searching in what it shows, and tells the
// outcome through FindResult.
class ManualViewer {
public:
    explicit ManualViewer(std::vector<std::filesystem::path> folders);

    static constexpr std::string_view kWindow = "BrizalogManual";

    // Reads the guide from the first folder that holds it as a regular, readable file. A guide
    // that is nowhere, or that cannot be read, gives a page naming the places looked in; nothing
    // here ever ends the program.
    void Form_Load();
    // Ctrl+F shows the find bar; Escape in it hides it and forgets its outcome.
    void Find_Shortcut();
    void Find_Close();
    // The text of the find bar has changed.
    void FindText_Change(std::string_view text);
    // The window's outcome of a search for the find bar's text.
    void FindResult(bool found);

    // The section that an internal link ("#install") leads to, or nullptr for any other link.
    const ManualSection* SectionOfLink(std::string_view link) const;

    const ManualModel& model() const { return m_model; }

private:
    std::vector<std::filesystem::path> m_folders;
    std::vector<ManualSection> m_allSections;
    ManualModel m_model;
};

}  // namespace brizalog
