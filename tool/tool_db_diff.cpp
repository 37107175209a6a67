// `tovren db diff`: what differs between two databases, as a release note or as JSON.
#include "tool_command_line.h"
#include "tool_db_difference.h"
#include "tool_db_record.h"
#include "tool_db_verbs.h"
#include "tool_device_record.h"
#include "tool_error.h"
#include "tool_flash_record.h"
#include "tool_output.h"
#include "tool_text.h"

#include <nlohmann/json.hpp>

namespace {

constexpr size_t LINE_WIDTH = 78;
constexpr size_t MOST_NAMES_SHOWN = 20; // of those that one record serves instead of another

struct DIFF_OPTIONS {
    std::string before;
    std::string after;
};

struct SIDES {
    const DIFF_OPTIONS& names;
    const TOOL_DB_FILE& before;
    const TOOL_DB_FILE& after;
    const TOOL_DB_DIFFERENCE& difference;

    bool is_flash() const { return after.kind == "flash"; }
    const TOOL_DB_RECORD& record_before(size_t position) const { return before.records[position]; }
    const TOOL_DB_RECORD& record_after(size_t position) const { return after.records[position]; }
};

std::string key_text(const TOOL_DB_RECORD& record) {
    const TOOL_RECORD_KEY key = tool_record_key(tool_db_device(record));
    return key.kind + ' ' + tool_printable(key.name);
}

// "QX20 20BA18", "family QUARN-1".
std::string record_text(bool is_flash, const TOOL_DB_RECORD& record) {
    if (!is_flash)
        return key_text(record);
    const TOVREN_SFL_FLASH_INFO flash = tool_db_flash(record);
    return tool_printable(flash.device_name) + ' ' + tool_flash_id_text(flash);
}

std::string position_text(size_t position) {
    return "record " + std::to_string(position);
}

// The INVALID values, which have no name, are searched like all others.
std::string value_name(const TOOL_DB_SERVED& served) {
    using KIND = TOOL_CATALOGUE_VALUE::KIND;
    const std::string kind = served.kind;
    const std::string name = tool_user_name({kind == "family"   ? KIND::FAMILY
                                             : kind == "device" ? KIND::DEVICE
                                                                : KIND::PART,
                                             served.number});
    return name.empty() ? "(none)" : name;
}

// ---- for people ----

std::string heading(const char* title) {
    return std::string("\n") + title + ":\n";
}

std::string flash_summary(const TOOL_DB_RECORD& record) {
    const TOVREN_SFL_FLASH_INFO flash = tool_db_flash(record);
    const bool is_always_shown = tool_equal_ignoring_case(flash.ini, "NONE");
    return ", " + tool_printable(flash.manufacturer_name) + ", " + tool_bits_text(flash.device_bit_size) + ", " +
           tool_flash_sectors_text(flash) +
           (is_always_shown ? "" : ", only with PGM_ALLOW_" + tool_printable(flash.ini));
}

std::string listed(const SIDES& sides, const char* title, const std::vector<size_t>& positions,
                   const std::vector<TOOL_DB_RECORD>& records) {
    std::string text = positions.empty() ? "" : heading(title);
    for (const size_t position : positions)
        text += "  " + record_text(sides.is_flash(), records[position]) +
                (sides.is_flash() ? flash_summary(records[position]) : "") + " (" + position_text(position) + ")\n";
    return text;
}

std::string raw_text(const TOOL_DB_VALUE& value) {
    return tool_db_json(value).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

// The members for people, in record order.
std::vector<std::string> member_texts(bool is_flash, const TOOL_DB_RECORD& record) {
    std::vector<std::string> texts;
    if (is_flash)
        for (TOOL_MEMBER_TEXT& member : tool_flash_member_texts(tool_db_flash(record)))
            texts.push_back(std::move(member.text));
    else
        for (TOOL_DEVICE_MEMBER_TEXT& member : tool_device_member_texts(tool_db_device(record)))
            texts.push_back(std::move(member.text));
    for (size_t i = 0; i < texts.size(); ++i) {
        if (const auto* text = std::get_if<std::string>(&record[i].value))
            texts[i] = tool_quoted(*text);
        else if (texts[i].empty())
            texts[i] = raw_text(record[i].value);
    }
    return texts;
}

std::string changed_text(const SIDES& sides, const TOOL_DB_CHANGE& change) {
    const TOOL_DB_RECORD& before = sides.record_before(change.records.before);
    const TOOL_DB_RECORD& after = sides.record_after(change.records.after);
    const auto former = member_texts(sides.is_flash(), before);
    const auto present = member_texts(sides.is_flash(), after);
    std::string text =
        "  " + record_text(sides.is_flash(), after) + " (" + position_text(change.records.after) + "):\n";
    for (const size_t i : change.members) {
        const bool is_told = former[i] != present[i];
        text += "    " + std::string(after[i].name) + ": " + (is_told ? former[i] : raw_text(before[i].value)) +
                " -> " + (is_told ? present[i] : raw_text(after[i].value)) + '\n';
    }
    return text;
}

std::string moved_text(const SIDES& sides) {
    std::string text = sides.difference.moved.empty() ? "" : heading("Moved among the others");
    for (const TOOL_DB_PAIR& records : sides.difference.moved)
        text += "  " + record_text(sides.is_flash(), sides.record_after(records.after)) + ": " +
                position_text(records.before) + " -> " + position_text(records.after) + '\n';
    return text;
}

std::string answers_text(const SIDES& sides, const char* title, const std::vector<TOOL_DB_ANSWER>& answers) {
    std::string text = answers.empty() ? "" : heading(title);
    for (const TOOL_DB_ANSWER& answer : answers)
        text += "  " + tool_printable(answer.asked) +
                (answer.setting.empty() ? "" : " with " + tool_printable(answer.setting) + " on") + ": " +
                record_text(true, sides.record_before(answer.records.before)) + " (" +
                position_text(answer.records.before) + ") -> " +
                record_text(true, sides.record_after(answer.records.after)) + " (" +
                position_text(answer.records.after) + ")\n";
    return text;
}

// "parts: A, B, C", broken into lines.
std::string names_text(const std::string& label, const std::vector<std::string>& names) {
    std::string text;
    std::string line = "    " + label + ':';
    for (size_t i = 0; i < names.size(); ++i) {
        const bool is_last = i + 1 == names.size();
        const bool is_cut = i == MOST_NAMES_SHOWN && !is_last;
        const std::string item =
            is_cut ? "and " + std::to_string(names.size() - i) + " more" : names[i] + (is_last ? "" : ",");
        if (line.size() + 1 + item.size() > LINE_WIDTH) {
            text += line + '\n';
            line = "     ";
        }
        line += ' ' + item;
        if (is_cut)
            break;
    }
    return text + line + '\n';
}

std::string server_text(const std::vector<TOOL_DB_RECORD>& records, size_t position) {
    return position == TOOL_DB_NO_RECORD ? "none" : key_text(records[position]);
}

// One change of the server: all that it goes for, by kind.
struct SERVED_GROUP {
    TOOL_DB_PAIR records;
    std::vector<std::pair<const char*, std::vector<std::string>>> names;

    void add(const TOOL_DB_SERVED& served) {
        if (names.empty() || names.back().first != std::string(served.kind))
            names.push_back({served.kind, {}});
        names.back().second.push_back(value_name(served));
    }
};

std::vector<SERVED_GROUP> served_groups(const std::vector<TOOL_DB_SERVED>& all) {
    std::vector<SERVED_GROUP> groups;
    for (const TOOL_DB_SERVED& served : all) {
        auto place = groups.begin();
        while (place != groups.end() &&
               (place->records.before != served.records.before || place->records.after != served.records.after))
            ++place;
        if (place == groups.end())
            place = groups.insert(place, {served.records, {}});
        place->add(served);
    }
    return groups;
}

std::string count_of_kind(size_t count, std::string_view kind) {
    return kind == "family" && count != 1 ? std::to_string(count) + " families" : tool_count_text(count, kind);
}

std::string served_text(const SIDES& sides) {
    std::string text = sides.difference.served.empty() ? "" : heading("Served by another record");
    for (const SERVED_GROUP& group : served_groups(sides.difference.served)) {
        text += "  " + server_text(sides.before.records, group.records.before) + " -> " +
                server_text(sides.after.records, group.records.after) + ":\n";
        for (const auto& [kind, names] : group.names)
            text += names_text(count_of_kind(names.size(), kind), names);
    }
    return text;
}

// "2 records added, 1 record changed".
std::string summary_text(const TOOL_DB_DIFFERENCE& difference) {
    std::vector<std::string> parts;
    const auto add = [&parts](size_t count, const char* noun, const char* what) {
        if (count != 0)
            parts.push_back(tool_count_text(count, noun) + ' ' + what);
    };
    add(difference.added.size(), "record", "added");
    add(difference.removed.size(), "record", "removed");
    add(difference.changed.size(), "record", "changed");
    add(difference.moved.size(), "record", "moved");
    add(difference.identified.size(), "identification", "answered by another record");
    add(difference.defaults.size(), "name", "with another default");
    add(difference.served.size(), "catalogue value", "served by another record");
    return parts.empty() ? "no record differs" : tool_join(parts, ", ");
}

std::string side_text(const char* label, const std::string& name, const TOOL_DB_FILE& file) {
    return std::string(label) + tool_printable(name) + ", " + file.kind + " database, " +
           tool_count_text(file.records.size(), "record") + '\n';
}

std::string difference_text(const SIDES& sides) {
    const TOOL_DB_DIFFERENCE& difference = sides.difference;
    std::string text = side_text("before: ", sides.names.before, sides.before) +
                       side_text("after:  ", sides.names.after, sides.after) + summary_text(difference) + '\n';
    if (difference.has_other_md5)
        text += "MD5 text: " + tool_printable(sides.before.md5) + " -> " + tool_printable(sides.after.md5) +
                ": no library reads both\n";
    text += listed(sides, "Added", difference.added, sides.after.records) +
            listed(sides, "Removed", difference.removed, sides.before.records);
    text += difference.changed.empty() ? "" : heading("Changed");
    for (const TOOL_DB_CHANGE& change : difference.changed)
        text += changed_text(sides, change);
    return text + moved_text(sides) +
           answers_text(sides, "Identifications that another record answers to", difference.identified) +
           answers_text(sides, "Names with another default record", difference.defaults) + served_text(sides);
}

// ---- JSON ----

nlohmann::ordered_json as_json(size_t position) {
    return position == TOOL_DB_NO_RECORD ? nlohmann::ordered_json() : nlohmann::ordered_json(position);
}

nlohmann::ordered_json records_json(const std::vector<size_t>& positions, const std::vector<TOOL_DB_RECORD>& records) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const size_t position : positions)
        array.push_back(tool_db_json(records[position], position));
    return array;
}

nlohmann::ordered_json pair_json(const SIDES& sides, const TOOL_DB_PAIR& records) {
    return {{"before", as_json(records.before)},
            {"after", as_json(records.after)},
            {"record", record_text(sides.is_flash(), sides.record_after(records.after))}};
}

nlohmann::ordered_json changed_json(const SIDES& sides) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const TOOL_DB_CHANGE& change : sides.difference.changed) {
        nlohmann::ordered_json object = pair_json(sides, change.records);
        for (const size_t i : change.members)
            object["members"].push_back({{"name", std::string(sides.record_after(change.records.after)[i].name)},
                                         {"before", tool_db_json(sides.record_before(change.records.before)[i].value)},
                                         {"after", tool_db_json(sides.record_after(change.records.after)[i].value)}});
        array.push_back(std::move(object));
    }
    return array;
}

nlohmann::ordered_json moved_json(const SIDES& sides) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const TOOL_DB_PAIR& records : sides.difference.moved)
        array.push_back(pair_json(sides, records));
    return array;
}

nlohmann::ordered_json answers_json(const char* asked, const std::vector<TOOL_DB_ANSWER>& answers) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const TOOL_DB_ANSWER& answer : answers) {
        array.push_back({{asked, answer.asked},
                         {"setting", nullptr},
                         {"before", as_json(answer.records.before)},
                         {"after", as_json(answer.records.after)}});
        if (!answer.setting.empty())
            array.back()["setting"] = answer.setting;
    }
    return array;
}

nlohmann::ordered_json served_json(const std::vector<TOOL_DB_SERVED>& all) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const TOOL_DB_SERVED& served : all)
        array.push_back({{"kind", served.kind},
                         {"number", served.number},
                         {"name", value_name(served)},
                         {"before", as_json(served.records.before)},
                         {"after", as_json(served.records.after)}});
    return array;
}

nlohmann::ordered_json side_json(const std::string& name, const TOOL_DB_FILE& file) {
    return {{"file", name}, {"md5", file.md5}, {"records", file.records.size()}};
}

nlohmann::ordered_json difference_json(const SIDES& sides) {
    const TOOL_DB_DIFFERENCE& difference = sides.difference;
    nlohmann::ordered_json document = {{"kind", sides.after.kind},
                                       {"same", difference.is_none()},
                                       {"before", side_json(sides.names.before, sides.before)},
                                       {"after", side_json(sides.names.after, sides.after)},
                                       {"added", records_json(difference.added, sides.after.records)},
                                       {"removed", records_json(difference.removed, sides.before.records)},
                                       {"changed", changed_json(sides)},
                                       {"moved", moved_json(sides)}};
    if (sides.is_flash()) {
        document["identified"] = answers_json("identification", difference.identified);
        document["defaults"] = answers_json("device_name", difference.defaults);
    } else {
        document["served"] = served_json(difference.served);
    }
    return document;
}

// ---- the command ----

void check(const DIFF_OPTIONS& options, const TOOL_DB_FILE& before, const TOOL_DB_FILE& after) {
    std::vector<std::string> faults = tool_db_refusals(options.before, before);
    for (std::string& fault : tool_db_refusals(options.after, after))
        faults.push_back(std::move(fault));
    if (!faults.empty())
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, faults.front(), {faults.begin() + 1, faults.end()});
    if (before.kind != after.kind)
        throw tool_usage_error("db diff", tool_printable(options.before) + " is a " + before.kind + " database, " +
                                              tool_printable(options.after) + " a " + after.kind +
                                              " database; only two of one kind can be compared");
}

void note_trailing_bytes(const std::string& name, const TOOL_DB_FILE& file) {
    if (file.trailing_size != 0)
        tool_note("note: " + tool_printable(name) + ": " + tool_count_text(file.trailing_size, "byte") +
                  " behind the last record are not compared");
}

int diff(const DIFF_OPTIONS& options, const TOOL_OUTPUT& output) {
    const TOOL_DB_FILE before = tool_read_db_file(options.before);
    const TOOL_DB_FILE after = tool_read_db_file(options.after);
    check(options, before, after);
    const TOOL_DB_DIFFERENCE difference = tool_db_difference(before, after);
    const SIDES sides = {options, before, after, difference};
    if (output.is_json())
        output.write_json(difference_json(sides));
    else
        output.write(difference_text(sides));
    note_trailing_bytes(options.before, before);
    note_trailing_bytes(options.after, after);
    return difference.is_none() ? TOOL_EXIT_DONE : TOOL_EXIT_NOT_FOUND;
}

} // namespace

void tool_add_db_diff(TOOL_GROUP& group) {
    const auto options = std::make_shared<DIFF_OPTIONS>();
    group
        .add_verb("diff", "What differs between two databases of one kind",
                  [options](const TOOL_OUTPUT& output) { return diff(*options, output); })
        .argument("BEFORE", options->before, "The older database")
        .argument("AFTER", options->after, "The newer one")
        .footer("\nExit code 0: they hold the same; 1: they differ; 3: one of them is broken.\n");
}
