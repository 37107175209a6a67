// A plain model of flash definitions: fields, list, tag and encoded text, each step spelled out from the format. It
// shares nothing with the library.
#ifndef TESTS_SUPPORT_DEFINITION_MODEL_H
#define TESTS_SUPPORT_DEFINITION_MODEL_H

#include <array>
#include <string>
#include <vector>

// CRC-16, polynomial 0x1021, initial value 0, one bit after the other, the most significant first.
unsigned int crc16_bit_by_bit(const std::string& bytes);

// The 16 letters, under a version text such as "Morvath Version: 7.1.0 SP2 Build 345".
std::string model_tag(const std::string& definition, const std::string& version_text);

// Bytes as 6-bit characters, and back; the last byte may be an addition of zero bits.
std::string model_characters(const std::string& bytes);
std::string model_bytes(const std::string& characters);

// The compressed list; "" where it does not fit into twice the size of the list.
std::string model_stream(const std::string& list);

// The encoded text of a list, and the list behind a text. A bad one gives "".
std::string model_encoded(const std::string& list);
std::string model_decoded(const std::string& text);

// The fields of one definition. Made: a flash whose every field is good; a test sets the one that it wants otherwise.
struct DEFINITION {
    std::array<std::string, 33> fields = {"QXMAKER", "QX25",      "0",     "24", "2", "32",  "1", "161",  "0",
                                          "32",      "1",         "NONE",  "0",  "1", "0",   "1", "0",    "1",
                                          "2",       "268435456", "65536", "0",  "1", "250", "3", "5000", "124",
                                          "92",      "4",         "255",   "32", "0", "1.8V"};

    DEFINITION with(size_t number, const std::string& text) const; // field `number`, counted from 1
    std::string text() const;
};

#endif
