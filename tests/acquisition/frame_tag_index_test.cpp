#include "acquisition/frame_tag_index.h"

#include <gtest/gtest.h>

#include "catalogue/text_rules.h"

namespace brizalog {
namespace {

// The index must give exactly what a plain search of the frame gives, for every tag shape.
TEST(FrameTagIndex, FindsWhatAPlainSearchFinds) {
    const std::string frame =
        "[<A1>5</A1><<V1>12</V1><A1>7</A1><a<b>3</a<b><>1</><x>y>2</x>y><C>9</C>"
        "<ch1><watts>00412</watts></ch1>< A2>]";
    FrameTagIndex index;
    index.Build(frame, 6);
    for (const char* tag :
         {"<A1>", "</A1>", "<V1>", "</V1>", "<a<b>", "</a<b>", "<>", "</>", "<x>y>", "</x>y>",
          "<C>", "<A2>", "< A2>", "<ch1><watts>", "</watts></ch1>", "<missing>", "<A1", "A1>"}) {
        EXPECT_EQ(index.Find(tag), InStr(frame, tag)) << tag;
    }
}

TEST(FrameTagIndex, ALongRunOfOpenBracketsIsIndexedInOnePass) {
    std::string frame(200000, '<');
    frame += "V1>3</V1>";
    FrameTagIndex index;
    index.Build(frame, 5);
    EXPECT_EQ(index.Find("<V1>"), InStr(frame, "<V1>"));
    EXPECT_EQ(index.Find("</V1>"), InStr(frame, "</V1>"));
    EXPECT_EQ(index.Find("<<V1>"), InStr(frame, "<<V1>"));
}

}  // namespace
}  // namespace brizalog
