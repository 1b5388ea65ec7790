#include "catalogue/plot.h"

#include "catalogue/text_rules.h"

namespace brizalog {

std::vector<std::string> RecordingPlot::Lines() const {
    std::vector<std::string> lines;
    lines.reserve(m_ops.size());
    for (const Op& op : m_ops) {
        switch (op.kind) {
            case OpKind::Background:
                lines.push_back("background " + std::to_string(op.colour));
                break;
            case OpKind::Scale:
                lines.push_back("scale " + FormatShortest(op.x1) + " " + FormatShortest(op.y1));
                break;
            case OpKind::Width:
                lines.push_back("width " + std::to_string(op.colour));
                break;
            case OpKind::Line:
                lines.push_back("line " + FormatShortest(op.x1) + " " + FormatShortest(op.y1) +
                                " " + FormatShortest(op.x2) + " " + FormatShortest(op.y2) + " " +
                                std::to_string(op.colour));
                break;
        }
    }
    return lines;
}

}  // namespace brizalog
