#include "acquisition/frame_tag_index.h"

#include <gtest/gtest.h>

#include "catalogue/text_rules.h"

namespace brizalog {
namespace {

// The index must give exactly what a plain search of the frame gives, for every tag shape.
TEST(FrameTagIndex, FindsWhatAPlainSearchFinds) {
    const std::vector<std::string> tags = {"<A1>",      "</A1>",        "<V1>",
                                           "</V1>",     "<a<b>",        "</a<b>",
                                           "<>",        "</>",          "<x>y>",
                                           "</x>y>",    "<C>",          "<A2>",
                                           "< A2>",     "<ch1><watts>", "</watts></ch1>",
                                           "<missing>", "<A1",          "A1>",
                                           "<A1>",      "<V1>",         "<ALongerTagThanAnyOther>"};
    FrameTagIndex index;
    index.SetTags(tags);
    for (const std::string frame :
         {"[<A1>5</A1><<V1>12</V1><A1>7</A1><a<b>3</a<b><>1</><x>y>2</x>y><C>9</C>"
          "<ch1><watts>00412</watts></ch1>< A2><ALongerTagThanAnyOther>]",
          "<<<V1>", ">>><A1><", "", "A1>"}) {
        index.Build(frame);
        for (std::size_t id = 0; id < tags.size(); ++id) {
            EXPECT_EQ(index.Position(id), InStr(frame, tags[id])) << frame << " " << tags[id];
        }
    }
}

TEST(FrameTagIndex, ALongRunOfOpenBracketsCostsOnePass) {
    std::string frame(200000, '<');
    frame += "V1>3</V1>";
    FrameTagIndex index;
    index.SetTags({"<V1>", "</V1>", "<<V1>"});
    index.Build(frame);
    EXPECT_EQ(index.Position(0), InStr(frame, "<V1>"));
    EXPECT_EQ(index.Position(1), InStr(frame, "</V1>"));
    EXPECT_EQ(index.Position(2), InStr(frame, "<<V1>"));
}

}  // namespace
}  // namespace brizalog
