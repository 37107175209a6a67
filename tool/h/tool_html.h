// HTML that is put together from templates. What is no markup gets in by the constructor alone, which escapes it, so no
// text of a table can become markup.
//
//     TOOL_HTML row = tool_fill("<td>{{name}}</td>", {{"name", TOOL_HTML(flash.device_name)}});
#ifndef TOOL_HTML_H
#define TOOL_HTML_H

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

class TOOL_HTML {
public:
    TOOL_HTML() = default;

    // The text as it is read, escaped. It is made printable first: the result is UTF-8 without control characters.
    explicit TOOL_HTML(std::string_view text);

    TOOL_HTML& operator+=(const TOOL_HTML& other);
    bool empty() const { return m_markup.empty(); }
    const std::string& markup() const { return m_markup; }

private:
    using VALUES = std::initializer_list<std::pair<std::string_view, TOOL_HTML>>;
    friend TOOL_HTML tool_fill(std::string_view text, VALUES values);

    std::string m_markup;
};

// The template with each {{name}} replaced by the value of that name. A name without a value is a fault of the program.
TOOL_HTML tool_fill(std::string_view text, std::initializer_list<std::pair<std::string_view, TOOL_HTML>> values = {});

#endif
