#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brizalog {

// Brizalog's own choices, beyond the three configuration files: options.cfg of the program
// folder, one "<Tag>value</Tag>" line each, CR LF, in the settings' tag format and replaced whole
// by the same crash-safe write. Provisioning never makes it: a missing file, a damaged one or a
// missing tag means that choice's default, so a program folder without the file behaves exactly
// as one where nobody ever opened the Options window.

inline constexpr std::string_view kOptionsFile = "/options.cfg";

// What kind of value an option holds, which also tells the Options window how to edit it.
enum class OptionKind {
    Flag,      // "0" or "1": a check box
    Text,      // free text: a line box
    Number,    // a decimal number: a line box that takes digits
    Secret,    // free text shown as dots; a file that holds one is readable by its owner only
    FilePath,  // a path: a line box with a "Browse…" button
};

// One row of the Options window and one tag of options.cfg. The rows are a table: adding an
// option is one row here and one read where the program uses it.
struct OptionRow {
    std::string_view tag;      // the tag in options.cfg, without brackets
    std::string_view group;    // the heading it stands under in the Options window
    std::string_view caption;  // what the window shows beside its box
    OptionKind kind;
    std::string_view fallback;  // the value when the file or the tag is missing or damaged
    std::string_view hint;      // a tooltip: what the user sees happen when it is on
};

// Every option Brizalog has, in the order the Options window shows them.
const std::vector<OptionRow>& OptionRows();
const OptionRow* FindOptionRow(std::string_view tag);

// The choices in memory. Tags of no row are kept and written back as they were, so a file
// written by a newer program loses nothing when an older one saves it.
class Options {
public:
    // The stored value, or the row's fallback (empty for a tag of no row).
    std::string Text(std::string_view tag) const;
    // True for a value whose number is not 0 ("1"); the fallback's when the value is no number.
    bool Flag(std::string_view tag) const;
    // The value's number; the fallback's when the value is empty or no number.
    double Number(std::string_view tag) const;
    // True when the tag has a value of its own in memory (read or set), not the fallback.
    bool Has(std::string_view tag) const;

    void Set(std::string_view tag, std::string value);
    void SetFlag(std::string_view tag, bool on) { Set(tag, on ? "1" : "0"); }
    // Forgets the tag's own value: the fallback holds again, and the file no longer names it.
    void Erase(std::string_view tag);

    // The file's text: one line per stored value, the rows' tags in the table's order first.
    std::string FileText() const;
    // True when some stored value is of a Secret row and not empty.
    bool HoldsSecret() const;

    bool operator==(const Options&) const = default;

private:
    std::map<std::string, std::string, std::less<>> m_values;
};

// Reads options.cfg. Never fails: a missing, unreadable or damaged file gives the defaults, and a
// damaged line is skipped while the lines around it are read.
Options ReadOptions(const std::filesystem::path& folder);
// The values of a file's text; what ReadOptions reads.
Options ParseOptions(std::string_view text);
// Replaces options.cfg whole. A file that holds a secret is made readable by its owner only
// before it takes the old file's place. Failures are the file failures of WriteWholeFile.
void WriteOptions(const Options& options, const std::filesystem::path& folder);
// True when options.cfg holds a secret and other users of the machine may read it.
bool OptionsReadableByOthers(const std::filesystem::path& folder);

// Where the program's own health is told in one line (a file it could not write, a broker it
// cannot reach): the headless logger writes each notice on standard error, the desktop program
// shows it in its status bar. `source` names what the notice is about ("log", "mqtt"); a notice
// with an empty text withdraws that source's last one. Nothing is told before a teller is set.
using NoticeTeller = std::function<void(std::string_view source, const std::string& text)>;
void SetNoticeTeller(NoticeTeller teller);
void TellNotice(std::string_view source, const std::string& text);

}  // namespace brizalog
