// HTML that is put together from templates.
#include "tool_html.h"

#include "tool_text.h"

#include <algorithm>
#include <stdexcept>

namespace {

std::string_view escaped(char c) {
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return "";
    }
}

} // namespace

TOOL_HTML::TOOL_HTML(std::string_view text) {
    for (const char c : tool_printable(text)) {
        if (const std::string_view reference = escaped(c); reference.empty())
            m_markup += c;
        else
            m_markup += reference;
    }
}

TOOL_HTML& TOOL_HTML::operator+=(const TOOL_HTML& other) {
    m_markup += other.m_markup;
    return *this;
}

TOOL_HTML tool_fill(std::string_view text, TOOL_HTML::VALUES values) {
    TOOL_HTML filled;
    for (size_t begin = text.find("{{"); begin != std::string_view::npos; begin = text.find("{{")) {
        const std::string_view name = text.substr(begin + 2, text.find("}}", begin) - begin - 2);
        const auto* const value =
            std::find_if(values.begin(), values.end(), [name](const auto& entry) { return entry.first == name; });
        if (value == values.end())
            throw std::logic_error("a template asks for {{" + std::string(name) + "}}");
        filled.m_markup += text.substr(0, begin);
        filled.m_markup += value->second.m_markup;
        text.remove_prefix(begin + name.size() + 4);
    }
    filled.m_markup += text;
    return filled;
}
