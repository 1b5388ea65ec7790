// brizalog-script FOLDER SCRIPT: runs the core headless on the program folder FOLDER under a
// virtual clock, one command per line of SCRIPT ("-" reads standard input).
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "script_runner.h"

int main(int argc, char* argv[]) {
    using namespace brizalog::script;
    if (argc != 3) {
        std::cerr
            << "usage: brizalog-script FOLDER SCRIPT   (SCRIPT may be - for standard input)\n";
        return kStatusScriptError;
    }
    const std::string scriptName = argv[2];
    std::ifstream file;
    std::istream* in = &std::cin;
    if (scriptName != "-") {
        // A folder opens as a stream on some systems and reads as an empty script.
        std::error_code error;
        if (std::filesystem::is_directory(scriptName, error)) {
            std::cerr << "error: cannot read " << scriptName << ": a folder\n";
            return kStatusScriptError;
        }
        file.open(scriptName, std::ios::binary);
        if (!file) {
            std::cerr << "error: cannot read " << scriptName << '\n';
            return kStatusScriptError;
        }
        in = &file;
    }
    std::vector<std::string> lines;
    for (std::string line; std::getline(*in, line);) {
        lines.push_back(line);
    }
    ScriptRunner runner(argv[1], std::cout, std::cerr);
    return runner.Run(lines);
}
