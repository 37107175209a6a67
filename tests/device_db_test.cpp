// The device database's variant of the typed stream and of the file: what the manager's readers and writers take, the
// payload's frame, and the three index tables behind the records.
#include "fixtures.h"
#include "report.h"
#include "tovren_dev_info_manager.h"
#include "tovren_standalone_host.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

constexpr char IN_DEVICE_MANAGER[] = "pgm/tovren/tovren_dev_info_manager.cpp";
constexpr char IN_DEVICE_GENERATE[] = "pgm/tovren/tovren_dev_info_manager_generate.cpp";

// ---- readers and writers ----

class DeviceStream : public HOST_TEST {
protected:
    TOVREN_DEV_INFO_MANAGER manager{true, 0};

    // What a writer puts into a buffer of exactly `size` bytes.
    template <typename WRITER>
    BYTES written(size_t size, WRITER&& writer) {
        BYTES bytes(size, 0xEE);
        unsigned char* buffer = bytes.data();
        unsigned int index = 0;
        writer(&buffer, index);
        EXPECT_EQ(size, index);
        return bytes;
    }

    BYTES written_value(const std::string& text, unsigned int count) {
        return written(count + 1, [&](unsigned char** buffer, unsigned int& index) {
            manager.dump_value_to_database(buffer, index, text, count);
        });
    }

    BYTES written_flag(const std::string& text) {
        return written(2, [&](unsigned char** buffer, unsigned int& index) {
            manager.dump_bool_to_database(buffer, index, text);
        });
    }

    BYTES written_text(const std::string& text, TOVREN_MANAGER_TYPE type) {
        return written(text.size() + 2, [&](unsigned char** buffer, unsigned int& index) {
            manager.dump_string_to_database(buffer, index, true, text, type);
        });
    }
};

TEST_F(DeviceStream, ReadsEachValue) {
    const BYTES data = {0, 1, 2, 3, 4, 3, 1, 4, 255, 5, 0x34, 0x12, 7, 0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 'Q', 'X', 2, 0};
    unsigned int index = 0;
    unsigned int dword = 0;
    bool flag = false;
    unsigned char byte = 0;
    unsigned short word = 0;
    std::string text;
    manager.get_dword_data(data.data(), index, &dword);
    EXPECT_EQ(0x04030201U, dword);
    manager.get_bool_data(data.data(), index, &flag);
    EXPECT_TRUE(flag);
    manager.get_byte_data(data.data(), index, &byte);
    EXPECT_EQ(255, byte);
    manager.get_word_data(data.data(), index, &word);
    EXPECT_EQ(0x1234, word);
    manager.get_dword_data(data.data(), index, &dword);
    EXPECT_EQ(0xFFFFFFFFU, dword);
    manager.get_string_data(data.data(), index, false, &text);
    EXPECT_EQ("QX", text);
    manager.get_string_data(data.data(), index, true, &text);
    EXPECT_EQ("", text);
    EXPECT_EQ(data.size(), index);
    EXPECT_EQ(0x04030201U, manager.get_dword(data.data(), index = 1));
}

TEST_F(DeviceStream, EachReaderAcceptsItsOwnTagsOnly) {
    for (unsigned int tag = 0; tag < 256; ++tag) {
        const BYTES data = {static_cast<unsigned char>(tag), 1, 'x', 0, 0};
        unsigned int index = 0;
        bool flag = false;
        unsigned char byte = 0;
        unsigned short word = 0;
        unsigned int dword = 0;
        std::string text;
        if (tag != 0 && tag != 6 && tag != 7) {
            EXPECT_REPORT(manager.get_dword_data(data.data(), index = 0, &dword),
                          "type == TOVREN_MANAGER_DEVID_ENUM || type == TOVREN_MANAGER_DWORD || "
                          "type == TOVREN_MANAGER_ENUM",
                          IN_DB_STREAM);
        }
        if (tag != 1 && tag != 2) {
            EXPECT_REPORT(manager.get_string_data(data.data(), index = 0, true, &text),
                          "type == TOVREN_MANAGER_DEVID_STR || type == TOVREN_MANAGER_STRING", IN_DB_STREAM);
        }
        if (tag != 3) {
            EXPECT_REPORT(manager.get_bool_data(data.data(), index = 0, &flag), "type == TOVREN_MANAGER_BOOL",
                          IN_DB_STREAM);
        }
        if (tag != 4) {
            EXPECT_REPORT(manager.get_byte_data(data.data(), index = 0, &byte), "type == TOVREN_MANAGER_BYTE",
                          IN_DB_STREAM);
        }
        if (tag != 5) {
            EXPECT_REPORT(manager.get_word_data(data.data(), index = 0, &word), "type == TOVREN_MANAGER_WORD",
                          IN_DB_STREAM);
        }
    }
}

TEST_F(DeviceStream, RefusesAFlagOfTwoAndAnEmptyTextWhereNotAllowed) {
    const BYTES data = {3, 2, 1, 0};
    unsigned int index = 0;
    bool flag = false;
    std::string text;
    EXPECT_REPORT(manager.get_bool_data(data.data(), index, &flag), "value == 0 || value == 1", IN_DB_STREAM);
    EXPECT_REPORT(manager.get_string_data(data.data(), index = 2, false, &text), "allow_empty", IN_DB_STREAM);
}

TEST_F(DeviceStream, ConfirmsTheMarkers) {
    const BYTES data = text_bytes("END1END2");
    unsigned int index = 0;
    manager.confirm_data_type_end(data.data(), index);
    manager.confirm_database_end(data.data(), index);
    EXPECT_EQ(8U, index);
    EXPECT_REPORT(manager.confirm_data_type_end(data.data(), index = 4), "data[index++] == '1'", IN_DB_STREAM);
    EXPECT_REPORT(manager.confirm_database_end(data.data(), index = 0), "data[index++] == '2'", IN_DB_STREAM);
}

TEST_F(DeviceStream, WritesFlagsAndTheEmptyTextAsOne) {
    EXPECT_EQ("03 01", hex_text(written_flag("TRUE")));
    EXPECT_EQ("03 00", hex_text(written_flag("FALSE")));
    EXPECT_EQ("03 00", hex_text(written_flag("")));
}

TEST_F(DeviceStream, WritesNoOtherTextAsAFlag) {
    for (const char* text : {"true", "false", "1", "0", " ", "TRUE "})
        EXPECT_REPORT(written_flag(text), R"(string == "" || string == "FALSE" || string == "TRUE")",
                      IN_DEVICE_GENERATE)
            << text;
}

TEST_F(DeviceStream, WritesNumbersAndTheEmptyTextAsZero) {
    EXPECT_EQ("04 2C", hex_text(written_value("300", 1)));
    EXPECT_EQ("05 34 12", hex_text(written_value("0x1234", 2)));
    EXPECT_EQ("06 FF FF FF FF", hex_text(written_value("4294967295", 4)));
    EXPECT_EQ("06 00 00 00 00", hex_text(written_value("", 4)));
    EXPECT_EQ(0U, manager.get_dword_from_string(""));
    EXPECT_EQ(16U, manager.get_dword_from_string("0x10"));
}

TEST_F(DeviceStream, WritesNoOtherWidthThanOneTwoAndFour) {
    for (const unsigned int count : {0U, 3U, 5U, 8U})
        EXPECT_REPORT(written_value("1", count), "count == 1 || count == 2 || count == 4", IN_DB_STREAM) << count;
}

TEST_F(DeviceStream, WritesTextsBehindEitherTag) {
    EXPECT_EQ("01 02 51 58", hex_text(written_text("QX", TOVREN_MANAGER_DEVID_STR)));
    EXPECT_EQ("02 02 51 58", hex_text(written_text("QX", TOVREN_MANAGER_STRING)));
    EXPECT_EQ("02 00", hex_text(written_text("", TOVREN_MANAGER_STRING)));
    EXPECT_EQ(join({{2, 0}, BYTES(256, 'x')}), written_text(std::string(256, 'x'), TOVREN_MANAGER_STRING));
}

TEST_F(DeviceStream, LooksAtATextsLengthBeforeItsTag) {
    BYTES bytes(10);
    unsigned char* buffer = bytes.data();
    unsigned int index = 0;
    EXPECT_REPORT(manager.dump_string_to_database(&buffer, index, false, "", TOVREN_MANAGER_BOOL),
                  "string.size() > 0 || allow_empty", IN_DEVICE_GENERATE);
    EXPECT_REPORT(manager.dump_string_to_database(&buffer, index, true, "", TOVREN_MANAGER_BOOL),
                  "type == TOVREN_MANAGER_DEVID_STR || type == TOVREN_MANAGER_STRING", IN_DEVICE_GENERATE);
    EXPECT_REPORT(manager.dump_string_to_database(&buffer, index, false, "QX", TOVREN_MANAGER_ENUM),
                  "type == TOVREN_MANAGER_DEVID_STR || type == TOVREN_MANAGER_STRING", IN_DEVICE_GENERATE);
}

TEST_F(DeviceStream, CompressesAndDecompresses) {
    const BYTES data = join({text_bytes("HEAD"), BYTES(500, 'x')});
    unsigned int size = 0;
    const std::unique_ptr<unsigned char[]> packed(manager.compress_data(data.data(), 4, 504, size));
    EXPECT_EQ(text_bytes("HEAD"), BYTES(packed.get(), packed.get() + 4));
    EXPECT_EQ(BYTES(500, 'x'), inflated({packed.get() + 4, packed.get() + size}));
    const std::unique_ptr<unsigned char[]> unpacked(manager.decompress_data(packed.get() + 4, size - 4, 500));
    EXPECT_EQ(BYTES(500, 'x'), BYTES(unpacked.get(), unpacked.get() + 500));
    EXPECT_REPORT(manager.compress_data(data.data(), 4, 4, size), "offset < count", IN_DB_STREAM);
    EXPECT_REPORT(manager.decompress_data(packed.get() + 4, size - 4, 501), "new_dcmp_size == original_count",
                  IN_DB_STREAM);
    EXPECT_EQ(0U, manager.calculate_crc16(data.data(), 504 * 8));
}

// ---- files ----

// The tags of a record's 86 members, in order: s and e are the PCF name and an enumeration of the catalogue, t b 1 2 4
// a text, a flag and numbers of that many bytes, E another enumeration.
constexpr char MEMBER_TAGS[] = "esee"
                               "bbbbbbbbbb"
                               "t"
                               "bbbbbbbb"
                               "444444444"
                               "E1111EE4"
                               "bbbb4bbbb444"
                               "11111"
                               "44bt"
                               "44444EE"
                               "bbbbb4E4t"
                               "bbbbt124b";

BYTES member_bytes_of(char tag) {
    switch (tag) {
    case 'e':
        return {0, 1, 0, 0, 0};
    case 's':
        return {1, 2, 'Q', 'X'};
    case 't':
        return {2, 1, 't'};
    case 'b':
        return {3, 1};
    case '1':
        return {4, 11};
    case '2':
        return {5, 22, 0};
    case '4':
        return {6, 44, 0, 0, 0};
    default:
        return {7, 2, 0, 0, 0};
    }
}

BYTES device_record() {
    BYTES bytes;
    for (const char* tag = MEMBER_TAGS; *tag != '\0'; ++tag)
        bytes = join({bytes, member_bytes_of(*tag)});
    return join({bytes, text_bytes("END1")});
}

// A device database, field by field.
struct DEVICE_FILE {
    unsigned int version = 1;
    unsigned int device_count = 2;
    unsigned int member_count = 86;
    BYTES records = join({device_record(), device_record()});
    std::string end = "END2";
    BYTES behind_end;
    unsigned char table_tags[3] = {8, 10, 11};
    unsigned int table_counts[3] = {74, 1048, DEV_PART_MAX};

    BYTES tables() const {
        BYTES bytes;
        for (size_t table = 0; table < 3; ++table) {
            const unsigned int entries[] = {74, 1048, DEV_PART_MAX};
            bytes = join({bytes, {table_tags[table]}, le32_bytes(table_counts[table])});
            const size_t start = bytes.size();
            bytes.resize(start + size_t{entries[table]} * 4, 0xFF);
            bytes[start + 4] = static_cast<unsigned char>(table); // entry 1 is record 0, 1 or 2
            bytes[start + 5] = bytes[start + 6] = bytes[start + 7] = 0;
        }
        return bytes;
    }

    BYTES record_part() const {
        return join({le32_bytes(version), le32_bytes(device_count), le32_bytes(member_count), records, text_bytes(end),
                     behind_end});
    }

    BYTES payload() const { return join({record_part(), tables()}); }

    static BYTES file_around(const BYTES& payload) {
        FLASH_FILE envelope;
        envelope.magic = "PGMIO_DM";
        envelope.md5 = TOVREN_DEV_INFO_CSV_MD5;
        return envelope.bytes_around(payload);
    }

    BYTES bytes() const { return file_around(payload()); }
};

class DeviceFile : public HOST_TEST {
protected:
    std::string path = folder.path("pgm_dev_info.pcf");
    DEVICE_FILE file;

    std::unique_ptr<TOVREN_DEV_INFO_MANAGER> load(const BYTES& bytes) const {
        write_file(path, bytes);
        auto manager = std::make_unique<TOVREN_DEV_INFO_MANAGER>(true, 0);
        manager->initialize_device_database(path);
        return manager;
    }
};

TEST_F(DeviceFile, HasMembersOfTheListedTypes) {
    ASSERT_EQ(86U, sizeof MEMBER_TAGS - 1);
    ASSERT_EQ(86U, TOVREN_DEV_INFO_MANAGER::m_db_type_list.size());
    for (size_t member = 0; member < 86; ++member)
        EXPECT_EQ(member_bytes_of(MEMBER_TAGS[member])[0], TOVREN_DEV_INFO_MANAGER::m_db_type_list[member]) << member;
}

TEST_F(DeviceFile, LoadsRecordsAndTables) {
    const auto manager = load(file.bytes());
    EXPECT_EQ(1U, manager->m_version);
    EXPECT_EQ(2U, manager->m_device_count);
    EXPECT_EQ(86U, manager->m_type_count);
    EXPECT_EQ(file.record_part().size(), manager->m_csv_memory_size);
    EXPECT_EQ("QX", manager->get_record(1)->pcf);
    EXPECT_EQ(INVALID_DWORD, manager->m_family_table[0]);
    EXPECT_EQ(0U, manager->m_family_table[1]);
    EXPECT_EQ(1U, manager->m_device_table[1]);
    EXPECT_EQ(2U, manager->m_part_table[1]);
    EXPECT_EQ(INVALID_DWORD, manager->m_family_table[73]);
    EXPECT_EQ(INVALID_DWORD, manager->m_device_table[1047]);
    EXPECT_EQ(INVALID_DWORD, manager->m_part_table[DEV_PART_MAX - 1]);
}

TEST_F(DeviceFile, HasTablesOfAKnownSize) {
    EXPECT_EQ(4503 + 4 * DEV_PART_MAX, TOVREN_DEV_INFO_MANAGER(true, 0).get_table_size());
    EXPECT_EQ(file.tables().size(), TOVREN_DEV_INFO_MANAGER(true, 0).get_table_size());
}

TEST_F(DeviceFile, HasVersionOne) {
    for (const unsigned int version : {0U, 2U, 0xFFFFFFFFU}) {
        file.version = version;
        EXPECT_REPORT(load(file.bytes()), "Mismatch version between device file and reader", IN_DEVICE_MANAGER);
    }
}

TEST_F(DeviceFile, HasRecordsAndMembers) {
    file.device_count = 0;
    EXPECT_REPORT(load(file.bytes()), "m_device_count > 0 && m_type_count > 0", IN_DEVICE_MANAGER);
    file.device_count = 2;
    file.member_count = 0;
    EXPECT_REPORT(load(file.bytes()), "m_device_count > 0 && m_type_count > 0", IN_DEVICE_MANAGER);
}

TEST_F(DeviceFile, ClaimsNoOtherNumberOfRecords) {
    file.device_count = 1;
    EXPECT_REPORT(load(file.bytes()), "data[index++] == 'E'", IN_DB_STREAM);
    for (const unsigned int count : {3U, 1000U, 0x80000000U, 0xFFFFFFFFU}) {
        file.device_count = count;
        EXPECT_TRUE(report_of([&] { load(file.bytes()); }).has_value()) << count;
    }
}

TEST_F(DeviceFile, NeedsItsMarkers) {
    file.end = "END1";
    EXPECT_REPORT(load(file.bytes()), "data[index++] == '2'", IN_DB_STREAM);
    file.end = "END2";
    file.records.back() = '2';
    EXPECT_REPORT(load(file.bytes()), "data[index++] == '1'", IN_DB_STREAM);
}

TEST_F(DeviceFile, HasItsTablesRightBehindTheEnd) {
    file.behind_end = {0};
    EXPECT_REPORT(load(file.bytes()), "index == m_csv_memory_size", IN_DEVICE_MANAGER);
    file.behind_end.clear();
    const BYTES payload = file.payload();
    EXPECT_REPORT(load(DEVICE_FILE::file_around(first(payload, payload.size() - 1))), "index == m_csv_memory_size",
                  IN_DEVICE_MANAGER);
}

TEST_F(DeviceFile, IsLongerThanItsTables) {
    const BYTES tables = file.tables();
    EXPECT_REPORT(load(DEVICE_FILE::file_around(tables)), "memory_size > get_table_size()", IN_DEVICE_MANAGER);
    EXPECT_REPORT(load(DEVICE_FILE::file_around({1, 0, 0, 0})), "memory_size > get_table_size()", IN_DEVICE_MANAGER);
}

TEST_F(DeviceFile, HasTheTablesTags) {
    const char* const texts[] = {"data[index++] == TOVREN_MANAGER_FAMILY_TBL",
                                 "data[index++] == TOVREN_MANAGER_DEVICE_TBL",
                                 "data[index++] == TOVREN_MANAGER_PART_TBL"};
    for (size_t table = 0; table < 3; ++table) {
        DEVICE_FILE wrong = file;
        wrong.table_tags[table] = 9;
        EXPECT_REPORT(load(wrong.bytes()), texts[table], IN_DEVICE_MANAGER);
    }
}

TEST_F(DeviceFile, HasTheTablesCounts) {
    const char* const texts[] = {"get_dword(data, index) == DWORD(DEV_FAMILY_MAX)",
                                 "get_dword(data, index) == DWORD(DEV_DEVICE_MAX)",
                                 "get_dword(data, index) == DWORD(DEV_PART_MAX)"};
    for (size_t table = 0; table < 3; ++table) {
        DEVICE_FILE wrong = file;
        ++wrong.table_counts[table];
        EXPECT_REPORT(load(wrong.bytes()), texts[table], IN_DEVICE_MANAGER);
    }
}

TEST_F(DeviceFile, ReadsNoTablesIntoAManagerWithoutRecords) {
    TOVREN_DEV_INFO_MANAGER generator(true, 0);
    BYTES tables = file.tables();
    unsigned int index = 0;
    EXPECT_REPORT(generator.get_table(tables.data(), index),
                  "m_device_database != NULL && m_family_table != NULL && m_device_table != NULL && "
                  "m_part_table != NULL",
                  IN_DEVICE_MANAGER);
}

TEST_F(DeviceFile, IsParsedOnce) {
    const auto manager = load(file.bytes());
    EXPECT_REPORT(manager->initialize_device_database(path), "m_device_database == NULL", IN_DEVICE_MANAGER);
}

TEST_F(DeviceFile, OfFlashesIsRefusedAtTheMagic) {
    write_file(path, FLASH_FILE({make_flash("QX1")}).bytes());
    const auto report = report_of([&] { TOVREN_DEV_INFO_MANAGER(true, 0).initialize_device_database(path); });
    EXPECT_TRUE(is_report(report,
                          "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && "
                          "data[index++] == 'I' && data[index++] == 'O' && data[index++] == '_' && "
                          "data[index++] == 'D' && data[index++] == 'M'",
                          IN_DB_STREAM));
}

TEST_F(DeviceFile, IsLookedForUnderTheRoot) {
    TOVREN_STANDALONE_HOST::set_device_db_root(folder.path());
    EXPECT_REPORT(TOVREN_DEV_INFO_MANAGER(false, 0),
                  "FIO_FILE_SYSTEM::exists(device_file.fullpath().c_str()) && "
                  "FIO_FILE_SYSTEM::status(device_file.fullpath().c_str(), &stat_info)",
                  IN_DB_STREAM);
    std::filesystem::create_directory(folder.path("programmer"));
    write_file(folder.path("programmer/pgm_dev_info.pcf"), file.bytes());
    EXPECT_EQ(2U, TOVREN_DEV_INFO_MANAGER(false, 0).get_record_count());
}

// ---- hostile files ----

class DeviceMutation : public DeviceFile {
protected:
    DeviceMutation() {
        file.device_count = 1;
        file.records = device_record();
    }

    // Loads this record part with whole tables behind it.
    void expect_load_or_report(const BYTES& record_part) {
        const BYTES bytes = DEVICE_FILE::file_around(join({record_part, file.tables()}));
        const std::optional<REPORT> report = report_of([&] {
            const auto manager = load(bytes);
            for (unsigned int index = 0; index < manager->get_record_count(); ++index)
                EXPECT_NE(nullptr, manager->get_record(index));
            ++loaded;
        });
        if (!report)
            return;
        EXPECT_EQ("TOVREN", report->prefix);
        EXPECT_TRUE(report->file.starts_with("pgm/tovren/tovren_")) << report->file;
        ++reported;
    }

    unsigned int loaded = 0;
    unsigned int reported = 0;
};

TEST_F(DeviceMutation, LoadsOrReportsEveryFlippedBitOfTheRecordPart) {
    BYTES record_part = file.record_part();
    for (size_t bit = 0; bit < record_part.size() * 8; ++bit) {
        unsigned char& byte = record_part[bit / 8];
        byte = static_cast<unsigned char>(byte ^ (1U << bit % 8));
        expect_load_or_report(record_part);
        byte = static_cast<unsigned char>(byte ^ (1U << bit % 8));
    }
    EXPECT_GT(loaded, 0U);
    EXPECT_GT(reported, 0U);
}

TEST_F(DeviceMutation, ReportsEveryRecordPartThatIsCut) {
    const BYTES record_part = file.record_part();
    for (size_t size = 0; size < record_part.size(); ++size)
        expect_load_or_report(first(record_part, size));
    EXPECT_EQ(0U, loaded);
}

TEST_F(DeviceMutation, ReportsTablesThatAreCut) {
    const BYTES payload = file.payload();
    for (size_t size = 1; size < payload.size(); size += size < payload.size() - 2000 ? 997 : 1) {
        EXPECT_TRUE(report_of([&] { load(DEVICE_FILE::file_around(first(payload, size))); }).has_value()) << size;
    }
}

} // namespace
