// Why an answer identifies the flash that it does, or none: for people.
#include "tool_flash_why.h"
#include "tool_output.h"
#include "tool_table.h"
#include "tool_text.h"

#include <algorithm>

namespace {

using WORDS = std::vector<std::string>;

std::string hex(BYTE byte) {
    return tool_hex_text(&byte, 1);
}

std::string name_and_index(const TOOL_LISTED_FLASH& flash) {
    return tool_printable(flash.flash->device_name) + " [" + std::to_string(flash.index) + ']';
}

// Words that a comma follows, the last one aside.
WORDS listed_words(const WORDS& texts) {
    WORDS words;
    for (const std::string& text : texts)
        words.push_back(text + (&text == &texts.back() ? "" : ","));
    return words;
}

void write_compared(const TOOL_WHY_RECORD& taken, bool has_csv, const TOOL_OUTPUT& output) {
    std::vector<TOOL_COLUMN> columns = {{"Byte", true}, {"Answer"}, {"Record"}, {"Member"}};
    if (has_csv)
        columns.push_back({"Column", true});
    TOOL_TABLE table(std::move(columns));
    for (const TOOL_COMPARED_BYTE& byte : taken.compared) {
        WORDS cells = {std::to_string(byte.place), hex(*byte.found), hex(byte.expected), byte.member};
        if (has_csv)
            cells.push_back(std::to_string(TOOL_FLASH_CSV::column_of(byte.member)));
        table.add_row(std::move(cells));
    }
    table.write(output);
}

std::string result_text(const TOOL_WHY_RECORD& record) {
    if (record.is_taken)
        return "taken: the first that matches";
    if (record.miss_count == 0)
        return record.is_hidden() ? "would match" : "matches too";
    const auto miss = std::find_if(record.compared.begin(), record.compared.end(),
                                   [](const TOOL_COMPARED_BYTE& byte) { return !byte.is_equal(); });
    return "byte " + std::to_string(miss->place) + " is " + (miss->found ? hex(*miss->found) : "not given") + ", not " +
           hex(miss->expected);
}

void write_records(const TOOL_FLASH_WHY& why, const TOOL_WHY_TABLES& tables, const TOOL_OUTPUT& output) {
    if (why.records.empty()) {
        output.write("No record matches or misses by one byte.\n");
        return;
    }
    output.write("Records that match or miss by one byte, in scan order" +
                 (tables.csv ? ", with their lines of " + tool_printable(tables.csv->file) : "") + ":\n");
    std::vector<TOOL_COLUMN> columns = {{"Index", true}, {"Flash"}, {"Maker", false, 3}, {"ID"}, {"Result"}};
    columns.push_back({"Hidden by", false, 1});
    if (tables.csv)
        columns.push_back({"Line", true, 2});
    TOOL_TABLE table(std::move(columns));
    for (const TOOL_WHY_RECORD& record : why.records) {
        const TOOL_LISTED_FLASH& flash = *record.flash;
        WORDS cells = {record.is_hidden() ? "-" : std::to_string(flash.index),
                       flash.flash->device_name,
                       flash.flash->manufacturer_name,
                       tool_flash_id_text(*flash.flash),
                       result_text(record),
                       flash.shown_by};
        if (tables.csv)
            cells.push_back(record.csv_line == 0 ? "-" : std::to_string(record.csv_line));
        table.add_row(std::move(cells));
    }
    table.write(output);
    if (tables.csv && std::all_of(why.records.begin(), why.records.end(),
                                  [](const TOOL_WHY_RECORD& record) { return record.csv_line == 0; }))
        output.write("None of them stands in " + tool_printable(tables.csv->file) +
                     ": the database was made from another description.\n");
}

void write_hidden(const TOOL_FLASH_WHY& why, const TOOL_OUTPUT& output) {
    for (const auto& [setting, names] : why.hidden()) {
        output.write("Hidden unless --set " + tool_printable(setting) + "=on:\n");
        WORDS texts;
        for (const std::string& name : names)
            texts.push_back(tool_printable(name));
        output.write(tool_wrapped(listed_words(texts), output.width()));
    }
}

// ---- several candidates ----

void write_agreed(const TOOL_FLASH_WHY& why, const TOOL_OUTPUT& output) {
    WORDS agreed;
    for (const TOOL_MEMBER_TEXT& member : why.telling.agreed)
        agreed.push_back(std::string(member.name) + ' ' + tool_printable(member.text));
    if (agreed.empty())
        return;
    output.write("All " + std::to_string(why.candidates.size()) + " that match agree on:\n" +
                 tool_wrapped(listed_words(agreed), output.width()));
}

std::string further_bytes_text(const TOOL_FLASH_WHY& why, const TOOL_TELLING::STATED& stated) {
    const bool is_judged = why.telling.answer_size > 3;
    return name_and_index(*why.candidate(stated.candidate).flash) + ' ' +
           tool_hex_text(stated.bytes.data(), stated.bytes.size()) +
           (is_judged ? stated.fits ? " (as here)" : " (not as here)" : "");
}

WORDS names_without_bytes(const TOOL_FLASH_WHY& why) {
    WORDS names;
    for (size_t i = 0; i < why.candidates.size(); ++i)
        if (std::none_of(why.telling.stated.begin(), why.telling.stated.end(),
                         [i](const TOOL_TELLING::STATED& stated) { return stated.candidate == i; }))
            names.push_back(name_and_index(*why.candidate(i).flash));
    return names;
}

void write_further_read(const TOOL_FLASH_WHY& why, const TOOL_OUTPUT& output) {
    const TOOL_TELLING& telling = why.telling;
    if (telling.stated.empty())
        return;
    WORDS texts;
    for (const TOOL_TELLING::STATED& stated : telling.stated)
        texts.push_back(further_bytes_text(why, stated));
    output.write(
        std::string(telling.has_read_enough() ? "The bytes" : "To tell them apart, read ") +
        (telling.has_read_enough() ? "" : std::to_string(telling.read_size) + " bytes of the identification; those") +
        " from byte 3 on are:\n" + tool_wrapped(listed_words(texts), output.width()));
    if (const WORDS unknown = names_without_bytes(why); !unknown.empty())
        output.write("Nothing is known of these bytes for:\n" + tool_wrapped(listed_words(unknown), output.width()));
}

void write_candidates(const TOOL_FLASH_WHY& why, const TOOL_OUTPUT& output) {
    if (why.candidates.size() < 2)
        return;
    output.write("\n");
    write_agreed(why, output);
    write_further_read(why, output);
    if (!why.telling.told_by_sfdp.empty()) {
        const WORDS members(why.telling.told_by_sfdp.begin(), why.telling.told_by_sfdp.end());
        output.write("Its parameter table (SFDP, command 5Ah) tells, given by --sfdp FILE:\n" +
                     tool_wrapped(listed_words(members), output.width()));
    }
    if (why.telling.stated.empty() && why.telling.told_by_sfdp.empty())
        output.write("No further read that would tell them apart is known.\n");
}

// ---- no candidate ----

void write_causes(const TOOL_FLASH_WHY& why, const TOOL_OUTPUT& output) {
    if (why.causes.empty())
        return;
    output.write("What may have happened, the most plausible first:\n");
    for (const TOOL_FLASH_CAUSE& cause : why.causes) {
        std::string text = "  " + cause.text + (cause.meant.empty() ? "\n" : ":\n");
        for (const TOOL_MEANT_FLASHES& meant : cause.meant)
            text += "    " + tool_meant_text(meant) + '\n';
        if (cause.left_out > 0)
            text += "    and " + tool_count_text(cause.left_out, "more identification") + '\n';
        output.write(text);
    }
    output.write("\n");
}

} // namespace

std::string tool_wrapped(const std::vector<std::string>& words, unsigned int width) {
    constexpr char INDENT[] = "    ";
    std::string text;
    std::string line = " ";
    for (const std::string& word : words) {
        if (width != 0 && tool_text_width(line) + 1 + tool_text_width(word) > width) {
            text += line + '\n';
            line = INDENT;
        }
        line += ' ' + word;
    }
    return text + line + '\n';
}

void tool_write_why(const TOOL_FLASH_WHY& why, size_t device, const TOOL_WHY_TABLES& tables,
                    const TOOL_OUTPUT& output) {
    const std::string answer = tool_hex_text(why.answer.data(), why.answer.size());
    const std::string title = output.bold("Device " + std::to_string(device)) + ": why " + answer;
    if (why.candidates.empty()) {
        output.write("\n" + title + " is no flash\n");
        write_causes(why, output);
    } else {
        output.write("\n" + title + " is " + name_and_index(*why.candidate(0).flash) + "\n");
        write_compared(why.candidate(0), tables.csv.has_value(), output);
        output.write("\n");
    }
    write_records(why, tables, output);
    write_hidden(why, output);
    write_candidates(why, output);
}
