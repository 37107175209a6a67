// Where a command's results go: standard output, as one JSON document or as text for people.
//
// With --json, standard output is set aside for the document when the command begins: what the library prints there
// meanwhile goes to standard error.
#ifndef TOOL_OUTPUT_H
#define TOOL_OUTPUT_H

#include <nlohmann/json_fwd.hpp>

#include <sstream>
#include <string>
#include <string_view>

class TOOL_OUTPUT {
public:
    explicit TOOL_OUTPUT(bool is_json);

    bool is_json() const { return m_is_json; }

    // Columns of the terminal that results go to; 0 where they go elsewhere and nothing needs to fit.
    unsigned int width() const { return m_width; }

    // The text in bold, where results go to a terminal that may be coloured.
    std::string bold(std::string_view text) const;

    // Results. A standard output that cannot be written is refused; a reader that has gone away ends the program
    // without a word.
    void write(std::string_view text) const;

    // One JSON document. `indent` blanks a level, -1 for a single line. Text that is not UTF-8 has its bad bytes
    // replaced.
    void write_json(const nlohmann::ordered_json& document, int indent = 2) const;

private:
    bool m_is_json;
    int m_descriptor;
    unsigned int m_width;
    bool m_has_colour;
};

// A JSON document that is an array, an element a line: each is written as it comes.
class TOOL_JSON_LINES {
public:
    explicit TOOL_JSON_LINES(const TOOL_OUTPUT& output) : m_output(output), m_text("[") {}

    void add(const nlohmann::ordered_json& element);
    void end();

private:
    const TOOL_OUTPUT& m_output;
    std::string m_text; // not written yet
    const char* m_separator = "\n";
};

// A message for people, on standard error: the lines below the first are indented.
void tool_note(std::string_view text);

// Columns of the terminal that notes go to; 0 where they go elsewhere.
unsigned int tool_note_width();

// "tovren: MESSAGE", on standard error.
void tool_complain(std::string_view message);

// Throws where something that the library printed on standard output could not be written.
void tool_confirm_output();

// Holds back what the library prints on standard output as long as it lives.
class TOOL_CAPTURE {
public:
    TOOL_CAPTURE();
    ~TOOL_CAPTURE();
    TOOL_CAPTURE(const TOOL_CAPTURE&) = delete;
    TOOL_CAPTURE& operator=(const TOOL_CAPTURE&) = delete;

    std::string text() const { return m_text.str(); }

private:
    std::ostringstream m_text;
    std::streambuf* m_former;
};

// Opens what is closed of standard input, output and error on /dev/null, so that no other file takes its place.
void tool_open_standard_files();

#endif
