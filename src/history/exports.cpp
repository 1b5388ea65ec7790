#include <string>

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/patterns.h"
#include "catalogue/text_rules.h"
#include "history/graph_window.h"

namespace brizalog {

// ---- Collation ------------------------------------------------------------------------------

void GraphWindow::Collate() {
    const CollationNames& names = m_member.collation;
    // The test looks for the file under the name it is created with, so that a second visit
    // finds it. GraphCC creates "CCWattWours.txt" but reads and appends "CCWattHours.txt".
    LogFileFound = FileExists(InFolder(m_folder, "/logs/" + std::string(names.create)));
    if (!LogFileFound) {
        // The heading carries a line end of its own before the file's: one empty line follows.
        // The log on display now gets no line in this click.
        WriteWholeFile(InFolder(m_folder, "/logs/" + std::string(names.create)),
                       std::string(names.heading) + std::string(kCrLf) + std::string(kCrLf));
        return;
    }
    const std::string text = ReadWholeFile(InFolder(m_folder, names.read));
    const std::string& fileName = Ctl("FileName").text;
    // A log gets one line at most; a name inside another line's name counts as there.
    if (InStr(text, fileName) != 0) {
        return;
    }
    // The total is a field that nothing assigns: always "00000".
    AppendToFile(InFolder(m_folder, "/logs/" + std::string(names.append)),
                 fileName + "  ,  " + FormatPattern(0, "00000") + std::string(kCrLf));
}

// ---- CSV export -------------------------------------------------------------------------------

std::string GraphWindow::CsvName() const {
    const auto text = [&](std::string_view name) -> const std::string& {
        return m_controls.Find(name)->text;
    };
    const std::string& fileName = text("FileName");
    // A name without "." fails on the cut.
    return Mid(fileName, 1, InStr(fileName, ".") - 1) + "_" + text("Time1h") + text("Time1m") +
           "_" + text("Time2h") + text("Time2m");
}

void GraphWindow::ExportCsv() {
    const std::string& fileName = Ctl("FileName").text;
    const std::string csvName = CsvName();
    const std::filesystem::path csvPath =
        InFolder(m_folder, std::string(m_member.csvFolder) + csvName + ".csv");
    if (m_member.csvMarksExcel) {
        // A file with the log's own name gathers one empty line per export in the Excel folder.
        AppendToFile(InFolder(m_folder, "/Excel/" + fileName), kCrLf);
        WriteWholeFile(csvPath, kCrLf);
    }
    if (RecordCount == 0) {
        m_dialogs.ShowMessage("No data for that date");
        return;
    }
    std::string text = std::string(m_member.csvHeading) + std::string(kCrLf);
    try {
        for (int i = PositionIndex(ViewStart); i <= PositionIndex(ViewEnd); ++i) {
            std::string line = DayFractionText(LogTime[i]);
            for (const CsvColumn& column : m_member.csvColumns) {
                const double value =
                    column.source == kIntervalTarget ? LogInterval[i] : Series(column.source)[i];
                line += "," + FormatPattern(value, column.pattern);
            }
            text += line;
            text += kCrLf;
        }
    } catch (const Failure&) {
        WriteWholeFile(csvPath, text);  // the rows written before the failure stay
        throw;
    }
    WriteWholeFile(csvPath, text);
    m_dialogs.ShowMessage("Done");
}

// ---- Print ------------------------------------------------------------------------------------

void GraphWindow::PrintButton_Click() {
    if (m_member.print == PrintKind::PrintForm) {
        m_plot.SetBackColour(kPlotPrintColour);
        Ctl("Plot").colour = kPlotPrintColour;
        try {
            if (m_printer == nullptr) {
                throw Failure(FailureKind::FileAccess, "no printer");
            }
            m_printer->PrintForm(m_member.name);
        } catch (const std::exception&) {
            m_dialogs.ShowMessage("The form could not be printed");
        }
        m_plot.SetBackColour(kPlotScreenColour);
        Ctl("Plot").colour = kPlotScreenColour;
        return;
    }
    if (m_member.print != PrintKind::RedrawTwice) {
        return;
    }
    // GraphBZ and GraphDEMO: the chart shows in white and comes back dark; no page comes out.
    const auto redraw = [&] {
        if (Ctl("XAxisTime").checked) {
            XAxisTime_Click();
        } else if (Ctl("XAxisRPM").checked) {
            XAxisRPM_Click();
        } else if (Ctl("XAxisWind").checked) {
            XAxisWind_Click();
        } else if (Ctl("Distribution").checked) {
            Distribution_Click();
        }
    };
    m_plot.SetBackColour(kPlotPrintColour);
    Ctl("Plot").colour = kPlotPrintColour;
    redraw();
    try {
        m_plot.SetBackColour(kPlotScreenColour);
        Ctl("Plot").colour = kPlotScreenColour;
        redraw();
    } catch (const Failure&) {
        m_dialogs.ShowMessage("The form could not be printed");
    }
}

}  // namespace brizalog
