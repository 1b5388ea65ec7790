// The help viewer's topic split and the text maker: a topic's ".cfg" file, or the author's
// "codetext.txt", holds the input.

#include <fstream>

#include "fuzz_support.h"
#include "help/help_viewer.h"

using namespace brizalog;
using namespace brizalog::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Platform platform;
    static const std::filesystem::path folder = [] {
        std::filesystem::path f = FreshFolder("help");
        for (const HelpTopic& topic : kHelpTopics) {
            std::ofstream(f / std::string(topic.tested).substr(1)) << "shown\r\n";
        }
        return f;
    }();
    static HelpViewer viewer(folder, platform.dialogs);
    Input in(data, size);
    const std::size_t which = in.Byte() % (kHelpTopics.size() + 1);
    const std::string_view text = in.Rest();
    if (which == kHelpTopics.size()) {
        std::ofstream(folder / "codetext.txt", std::ios::binary | std::ios::trunc) << text;
        viewer.codeMaker_Click();
    } else {
        const HelpTopic& topic = kHelpTopics[which];
        std::ofstream(folder / std::string(topic.read).substr(1),
                      std::ios::binary | std::ios::trunc)
            << text;
        viewer.ShowTopic(topic);
        if (viewer.model().rows.size() > HelpViewer::kHighestLine) {
            std::abort();  // the list holds no more lines than its index reaches
        }
    }
    platform.dialogs.messages.clear();
    return 0;
}
