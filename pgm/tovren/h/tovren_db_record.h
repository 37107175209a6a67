// Reading a record of either database: one value of the typed stream for each member.
//
// A payload that the library has unpacked has DB_STREAM_SLACK behind it. From such a one a record is read first without
// a decision at each value: what is wrong with the tags is only gathered. A record with anything wrong is then read
// again, value by value, which reports.
#ifndef TOVREN_DB_RECORD_H
#define TOVREN_DB_RECORD_H

#include "tovren_db_stream.h"

#include <memory>

// Reads each member by its type and reports what is wrong with it.
struct DB_CAREFUL_READER {
    const TOVREN_DB_FORMAT& format;
    const unsigned char* data;
    unsigned int& index;

    void operator()(const char*, std::string& value) { db_get_string(format, data, index, true, value); }
    void operator()(const char*, bool& value) { value = db_get_bool(data, index); }
    void operator()(const char*, BYTE& value) { value = db_get_byte(data, index); }
    void operator()(const char*, WORD& value) { value = db_get_word(data, index); }

    // 32-bit numbers and the enumerations, which are as wide.
    template <typename VALUE>
    void operator()(const char*, VALUE& value) {
        value = static_cast<VALUE>(db_get_dword_value(format, data, index));
    }
};

// Reads the same values. `wrong` tells afterwards whether the other reader would have refused one.
struct DB_QUICK_READER {
    unsigned int text_tags;
    unsigned int dword_tags;
    const unsigned char* place;
    unsigned int wrong = 0;

    void operator()(const char*, std::string& value) {
        const bool is_text = db_takes(text_tags, place[0]);
        wrong |= is_text ? 0 : 1;
        const size_t length = is_text ? place[1] : 0;
        assign(value, reinterpret_cast<const char*>(place + 2), length);
        place += 2 + length;
    }
    void operator()(const char*, bool& value) {
        const unsigned int pair = tag_and_byte();
        wrong |= (pair ^ TOVREN_MANAGER_BOOL) & ~(1U << 8);
        value = (pair >> 8 & 1) != 0;
        place += 2;
    }
    void operator()(const char*, BYTE& value) {
        const unsigned int pair = tag_and_byte();
        wrong |= (pair ^ TOVREN_MANAGER_BYTE) & 0xFF;
        value = static_cast<BYTE>(pair >> 8);
        place += 2;
    }
    void operator()(const char*, WORD& value) {
        wrong |= place[0] ^ TOVREN_MANAGER_WORD;
        value = static_cast<WORD>(place[1] | place[2] << 8);
        place += 3;
    }
    template <typename VALUE>
    void operator()(const char*, VALUE& value) {
        wrong |= db_takes(dword_tags, place[0]) ? 0 : 1;
        unsigned int index = 1;
        value = static_cast<VALUE>(db_get_dword(place, index));
        place += index;
    }

private:
    // Both in one load.
    unsigned int tag_and_byte() const { return place[0] | static_cast<unsigned int>(place[1]) << 8; }

    // A copy of a fixed size is a pair of moves: what is too much is cut off again.
    static void assign(std::string& string, const char* text, size_t length) {
        if (length > DB_TEXT_OVERRUN) {
            string.assign(text, length);
            return;
        }
        std::destroy_at(&string);
        std::construct_at(&string, text, DB_TEXT_OVERRUN);
        string.resize(length);
    }
};

template <typename RECORD>
[[gnu::flatten]] bool db_read_record_quickly(const TOVREN_DB_FORMAT& format, const unsigned char* data,
                                             unsigned int& index, RECORD& record) {
    DB_QUICK_READER reader{format.text_tags, format.dword_tags, data + index};
    tovren_visit_members(record, reader);
    if (reader.wrong != 0)
        return false;
    index = static_cast<unsigned int>(reader.place - data);
    return true;
}

// `has_slack`: DB_STREAM_SLACK zeros stand behind the payload.
template <typename RECORD>
void db_read_record(const TOVREN_DB_FORMAT& format, bool has_slack, const unsigned char* data, unsigned int& index,
                    RECORD& record) {
    if (!has_slack || !db_read_record_quickly(format, data, index, record))
        tovren_visit_members(record, DB_CAREFUL_READER{format, data, index});
}

#endif
