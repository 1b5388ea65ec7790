#include "window_driver.h"

#include "catalogue/text_rules.h"

namespace brizalog::script {

std::string EscapeText(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (char c : text) {
        switch (c) {
            case '\r':
                escaped.append("\\r");
                break;
            case '\n':
                escaped.append("\\n");
                break;
            case '\\':
                escaped.append("\\\\");
                break;
            default:
                escaped.push_back(c);
        }
    }
    return escaped;
}

void Printer::Line(std::string_view text) {
    m_out << EscapeText(text) << '\n';
}

void Printer::Value(std::string_view name, std::string_view value) {
    m_out << name << '=' << EscapeText(value) << '\n';
}

void Printer::Number(std::string_view name, double value) {
    m_out << name << '=' << FormatShortest(value) << '\n';
}

void Printer::Flag(std::string_view name, bool value) {
    m_out << name << '=' << (value ? '1' : '0') << '\n';
}

void Printer::Message(std::string_view text) {
    m_out << "message: " << EscapeText(text) << '\n';
}

namespace {

[[noreturn]] void NoSuch(std::string_view what, std::string_view window) {
    throw ScriptError("window " + std::string(window) + " has no " + std::string(what));
}

}  // namespace

void WindowDriver::Click(std::string_view window, std::string_view control, std::string_view,
                         RunContext&) {
    NoSuch("control " + std::string(control) + " to click", window);
}

void WindowDriver::Set(std::string_view window, std::string_view control, std::string_view,
                       RunContext&) {
    NoSuch("control " + std::string(control) + " to set", window);
}

void WindowDriver::Mouse(std::string_view window, std::string_view control, std::string_view,
                         double, double, RunContext&) {
    NoSuch("surface " + std::string(control) + " for the mouse", window);
}

void WindowDriver::Dump(std::string_view window, RunContext&) {
    NoSuch("state to dump", window);
}

void WindowDriver::DumpNamed(std::string_view window, const std::vector<std::string_view>& names,
                             RunContext& run) {
    if (!names.empty()) {
        NoSuch("items to dump by name", window);
    }
    Dump(window, run);
}

void WindowDriver::Draw(std::string_view window, RunContext&) {
    NoSuch("drawing surface", window);
}

}  // namespace brizalog::script
