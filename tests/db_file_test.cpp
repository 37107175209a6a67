// The file envelope: each field wrong in turn, and what must stand at the path. The flash database goes through the
// manager, the device database through the shared reader.
#include "bytes.h"
#include "fixtures.h"
#include "flash_model.h"
#include "report.h"
#include "tovren_db_stream.h"
#include "tovren_flash_manager.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char FLASH_EXISTS[] = "FIO_FILE_SYSTEM::exists(flash_file.fullpath().c_str()) && "
                                "FIO_FILE_SYSTEM::status(flash_file.fullpath().c_str(), &stat_info)";
constexpr char DEVICE_EXISTS[] = "FIO_FILE_SYSTEM::exists(device_file.fullpath().c_str()) && "
                                 "FIO_FILE_SYSTEM::status(device_file.fullpath().c_str(), &stat_info)";
constexpr char FILE_SIZE[] = "file_size > (8 + 32 + 4 + 2)";
constexpr char FLASH_MAGIC[] =
    "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && data[index++] == 'I' && "
    "data[index++] == 'O' && data[index++] == '_' && data[index++] == 'F' && data[index++] == 'M'";
constexpr char DEVICE_MAGIC[] =
    "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && data[index++] == 'I' && "
    "data[index++] == 'O' && data[index++] == '_' && data[index++] == 'D' && data[index++] == 'M'";
constexpr char OTHER_CSV[] = "Mismatch ID between flash file and reader";
constexpr char SIZES[] = "decompressed_count > 0 && original_count > 0";
constexpr char ZLIB[] = "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == ZLIB_OK";
constexpr char TRUE_SIZE[] = "new_dcmp_size == original_count";

class DbFile : public FLASH_TEST {
protected:
    FLASH_FILE file{{make_flash("QX1"), make_flash("QX2")}};
};

// Files that are not a database at all: 44 bytes of a header and whatever makes up the size.
BYTES file_of_size(size_t size) {
    BYTES bytes = FLASH_FILE().bytes();
    bytes.resize(size);
    return bytes;
}

// ---- the path ----

TEST_F(DbFile, LoadsWhatIsWhole) {
    EXPECT_EQ(2U, load(file)->m_flash_count);
}

TEST_F(DbFile, MustExist) {
    EXPECT_REPORT(TOVREN_FLASH_MANAGER(true, 1, false, false), FLASH_EXISTS, IN_DB_STREAM);
}

TEST_F(DbFile, IsNoFolder) {
    std::filesystem::create_directory(database);
    EXPECT_REPORT(TOVREN_FLASH_MANAGER(true, 1, false, false), FLASH_EXISTS, IN_DB_STREAM);
}

TEST_F(DbFile, IsNoPipe) {
    ASSERT_EQ(0, mkfifo(database.c_str(), 0600));
    EXPECT_REPORT(TOVREN_FLASH_MANAGER(true, 1, false, false), FLASH_EXISTS, IN_DB_STREAM);
}

TEST_F(DbFile, IsNoLinkToNowhere) {
    std::filesystem::create_symlink(folder.path("nowhere"), database);
    EXPECT_REPORT(TOVREN_FLASH_MANAGER(true, 1, false, false), FLASH_EXISTS, IN_DB_STREAM);
}

TEST_F(DbFile, MayBeALink) {
    write_file(folder.path("elsewhere.pcf"), file.bytes());
    std::filesystem::create_symlink(folder.path("elsewhere.pcf"), database);
    EXPECT_EQ(2U, TOVREN_FLASH_MANAGER(true, 1, false, false).m_flash_count);
}

// Also root, who may read everything, cannot open a file when there is no descriptor left.
class NO_DESCRIPTORS {
public:
    NO_DESCRIPTORS() {
        getrlimit(RLIMIT_NOFILE, &m_former);
        const int lowest_free = dup(0);
        close(lowest_free);
        const rlimit none = {static_cast<rlim_t>(lowest_free), m_former.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NO_DESCRIPTORS() { setrlimit(RLIMIT_NOFILE, &m_former); }
    NO_DESCRIPTORS(const NO_DESCRIPTORS&) = delete;
    NO_DESCRIPTORS& operator=(const NO_DESCRIPTORS&) = delete;

private:
    rlimit m_former{};
};

TEST_F(DbFile, MustOpen) {
    put_database(file.bytes());
    const NO_DESCRIPTORS none_left;
    EXPECT_REPORT(TOVREN_FLASH_MANAGER(true, 1, false, false), "input.good()", IN_DB_STREAM);
}

// ---- the size ----

TEST_F(DbFile, OfUpTo46BytesIsTooShort) {
    for (size_t size = 0; size <= 46; ++size)
        EXPECT_REPORT(load(file_of_size(size)), FILE_SIZE, IN_DB_STREAM) << size;
}

TEST_F(DbFile, Of47BytesIsLongEnough) {
    EXPECT_REPORT(load(file_of_size(47)), ZLIB, IN_DB_STREAM);
}

// ---- the header ----

TEST_F(DbFile, EachMagicCharacterCounts) {
    for (size_t position = 0; position < 8; ++position)
        EXPECT_REPORT(load(with_byte(file.bytes(), position, '?')), FLASH_MAGIC, IN_DB_STREAM) << position;
}

TEST_F(DbFile, OfDevicesIsNoFlashDatabase) {
    file.magic = "PGMIO_DM";
    EXPECT_REPORT(load(file), FLASH_MAGIC, IN_DB_STREAM);
}

TEST_F(DbFile, EachCharacterOfTheMd5Counts) {
    for (size_t position = 8; position < 40; ++position)
        EXPECT_REPORT(load(with_byte(file.bytes(), position, '?')), OTHER_CSV, IN_DB_STREAM) << position;
}

TEST_F(DbFile, OfTheDeviceCsvIsRefused) {
    file.md5 = TOVREN_DEV_INFO_CSV_MD5;
    EXPECT_REPORT(load(file), OTHER_CSV, IN_DB_STREAM);
}

TEST_F(DbFile, LooksAtTheMagicFirst) {
    file.magic = "PGMIO_XX";
    file.md5 = std::string(32, '?');
    EXPECT_REPORT(load(file), FLASH_MAGIC, IN_DB_STREAM);
}

TEST_F(DbFile, LooksAtTheMd5BeforeThePayload) {
    file.md5 = std::string(32, '?');
    file.payload_size = 0;
    EXPECT_REPORT(load(file), OTHER_CSV, IN_DB_STREAM);
}

// ---- the payload ----

TEST_F(DbFile, ClaimsNoEmptyPayload) {
    file.payload_size = 0;
    EXPECT_REPORT(load(file), SIZES, IN_DB_STREAM);
}

TEST_F(DbFile, ClaimsNoLargerPayload) {
    const unsigned int true_size = static_cast<unsigned int>(file.payload().size());
    for (const unsigned int size : {true_size + 1, true_size * 2, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        file.payload_size = size;
        EXPECT_REPORT(load(file), TRUE_SIZE, IN_DB_STREAM) << size;
    }
}

TEST_F(DbFile, ClaimsNoSmallerPayload) {
    const unsigned int true_size = static_cast<unsigned int>(file.payload().size());
    for (const unsigned int size : {1U, 12U, true_size / 2, true_size - 1}) {
        file.payload_size = size;
        EXPECT_REPORT(load(file), ZLIB, IN_DB_STREAM) << size;
    }
}

TEST_F(DbFile, IsNotCut) {
    // With 47 bytes or more the header is whole and the zlib stream is what misses its end.
    const BYTES bytes = file.bytes();
    for (size_t size = 47; size < bytes.size(); ++size)
        EXPECT_REPORT(load(first(bytes, size)), ZLIB, IN_DB_STREAM) << size;
}

TEST_F(DbFile, NeedsAZlibStream) {
    file.payload_size = 5;
    EXPECT_REPORT(load(file.bytes_around_stream(text_bytes("hello"))), ZLIB, IN_DB_STREAM);
}

TEST_F(DbFile, NeedsAZlibStreamWhateverSizeIsClaimed) {
    for (const unsigned int size : {1U, 100U, 1000000U, 0xFFFFFFFFU}) {
        file.payload_size = size;
        EXPECT_REPORT(load(file.bytes_around_stream(text_bytes("hello"))), ZLIB, IN_DB_STREAM) << size;
    }
}

TEST_F(DbFile, IsNotCutWithinTheFirstBytesOfALongStream) {
    for (unsigned int number = 3; number < 400; ++number)
        file.flashes.push_back(make_flash("QX" + std::to_string(number)));
    const BYTES bytes = file.bytes();
    for (const size_t size : {47U, 50U, 60U, 90U, 200U})
        EXPECT_REPORT(load(first(bytes, size)), ZLIB, IN_DB_STREAM) << size;
}

TEST_F(DbFile, MayEndInAnyTwoBytes) {
    file.check = {0xAB, 0xCD};
    EXPECT_EQ(2U, load(file)->m_flash_count);
}

TEST_F(DbFile, MayHaveBytesBehindTheStream) {
    const BYTES payload = file.payload();
    file.payload_size = static_cast<unsigned int>(payload.size());
    const BYTES stream = join({zlib_stream(payload), {1, 2, 3}});
    EXPECT_EQ(2U, load(file.bytes_around_stream(stream))->m_flash_count);
}

TEST_F(DbFile, MayHoldAStoredPayload) {
    // A zlib stream of one stored block, by hand: header, last-block bit, length, its complement, bytes, Adler-32.
    FLASH_FILE one{{make_flash("QX1")}};
    const BYTES payload = one.payload();
    unsigned int low = 1;
    unsigned int high = 0;
    for (const unsigned char byte : payload) {
        low = (low + byte) % 65521;
        high = (high + low) % 65521;
    }
    const auto length = static_cast<unsigned int>(payload.size());
    const BYTES lengths = le32_bytes(length | (~length & 0xFFFF) << 16);
    const BYTES adler = {static_cast<unsigned char>(high >> 8), static_cast<unsigned char>(high & 0xFF),
                         static_cast<unsigned char>(low >> 8), static_cast<unsigned char>(low & 0xFF)};
    one.payload_size = length;
    EXPECT_EQ(1U, load(one.bytes_around_stream(join({{0x78, 0x01, 0x01}, lengths, payload, adler})))->m_flash_count);
}

// ---- the payload's frame ----

TEST_F(DbFile, HasVersionOne) {
    for (const unsigned int version : {0U, 2U, 0x01000000U, 0xFFFFFFFFU}) {
        file.version = version;
        EXPECT_REPORT(load(file), "Mismatch version between flash file and reader", IN_FLASH_MANAGER) << version;
    }
}

TEST_F(DbFile, HasRecordsAndMembers) {
    file.flash_count = 0;
    EXPECT_REPORT(load(file), "m_flash_count > 0 && m_type_count > 0", IN_FLASH_MANAGER);
    file.flash_count.reset();
    file.member_count = 0;
    EXPECT_REPORT(load(file), "m_flash_count > 0 && m_type_count > 0", IN_FLASH_MANAGER);
}

TEST_F(DbFile, LooksAtTheVersionBeforeTheCounts) {
    file.version = 2;
    file.flash_count = 0;
    EXPECT_REPORT(load(file), "Mismatch version between flash file and reader", IN_FLASH_MANAGER);
}

TEST_F(DbFile, MayClaimAnotherMemberCount) {
    file.member_count = 34;
    const MANAGER manager = load(file);
    EXPECT_EQ(2U, manager->m_flash_count);
    EXPECT_EQ(34U, manager->m_type_count);
}

TEST_F(DbFile, MayHaveBytesBehindTheEndMarker) {
    file.behind_end = text_bytes("more");
    EXPECT_EQ(2U, load(file)->m_flash_count);
}

TEST_F(DbFile, NeedsTheEndMarker) {
    file.end = "";
    EXPECT_REPORT(load(file), "data[index++] == 'E'", IN_DB_STREAM);
    file.end = "END1";
    EXPECT_REPORT(load(file), "data[index++] == '2'", IN_DB_STREAM);
}

TEST_F(DbFile, ClaimsNoFewerRecordsThanThereAre) {
    file.flash_count = 1;
    EXPECT_REPORT(load(file), "data[index++] == 'E'", IN_DB_STREAM);
}

TEST_F(DbFile, ClaimsNoMoreRecordsThanThePayloadHasRoomFor) {
    for (const unsigned int count : {3U, 1000U, 0x80000000U, 0xFFFFFFFFU}) {
        file.flash_count = count;
        EXPECT_REPORT(load(file), "type == TOVREN_MANAGER_STRING", IN_DB_STREAM) << count;
    }
}

TEST_F(DbFile, ClaimsNoMoreRecordsThanThereAre) {
    // Room for a third, whose first tag is not there.
    file.flash_count = 3;
    file.behind_end = BYTES(100);
    EXPECT_REPORT(load(file), "type == TOVREN_MANAGER_STRING", IN_DB_STREAM);
}

// ---- the device database ----

class DeviceDbFile : public HOST_TEST {
protected:
    DeviceDbFile() {
        file.magic = "PGMIO_DM";
        file.md5 = TOVREN_DEV_INFO_CSV_MD5;
    }

    std::string path = folder.path("pgm_dev_info.pcf");
    FLASH_FILE file;
    BYTES payload = text_bytes("the payload is the manager's own business");

    DB_PAYLOAD read(const BYTES& bytes) {
        write_file(path, bytes);
        return db_read_file(TOVREN_DEVICE_DB_FORMAT, path);
    }
};

TEST_F(DeviceDbFile, GivesThePayloadAndZerosBehindIt) {
    const DB_PAYLOAD result = read(file.bytes_around(payload));
    EXPECT_EQ(payload.size(), result.size);
    EXPECT_EQ(payload, BYTES(result.data.get(), result.data.get() + result.size));
    const unsigned char* behind = result.data.get() + result.size;
    EXPECT_EQ(BYTES(DB_STREAM_SLACK), BYTES(behind, behind + DB_STREAM_SLACK));
}

TEST_F(DeviceDbFile, MustExist) {
    EXPECT_REPORT(db_read_file(TOVREN_DEVICE_DB_FORMAT, path), DEVICE_EXISTS, IN_DB_STREAM);
}

TEST_F(DeviceDbFile, MustBeLongEnough) {
    EXPECT_REPORT(read(first(file.bytes_around(payload), 46)), FILE_SIZE, IN_DB_STREAM);
}

TEST_F(DeviceDbFile, OfFlashesIsNoDeviceDatabase) {
    file.magic = "PGMIO_FM";
    EXPECT_REPORT(read(file.bytes_around(payload)), DEVICE_MAGIC, IN_DB_STREAM);
}

TEST_F(DeviceDbFile, OfAnotherCsvIsRefusedWithTheFlashReadersWords) {
    file.md5 = TOVREN_FLASH_INFO_CSV_MD5;
    EXPECT_REPORT(read(file.bytes_around(payload)), OTHER_CSV, IN_DB_STREAM);
}

TEST_F(DeviceDbFile, MayEndInAnyTwoBytes) {
    file.check = {0xFF, 0xFF};
    EXPECT_EQ(payload.size(), read(file.bytes_around(payload)).size);
}

TEST_F(DeviceDbFile, WritesItsHeaders) {
    BYTES bytes(57, 0xEE);
    unsigned char* buffer = bytes.data();
    unsigned int index = 0;
    db_put_headers(TOVREN_DEVICE_DB_FORMAT, &buffer, index, 0x01020304, 79, 86);
    EXPECT_EQ(56U, index);
    EXPECT_EQ(join({text_bytes("PGMIO_DM"),
                    text_bytes(TOVREN_DEV_INFO_CSV_MD5),
                    {4, 3, 2, 1, 1, 0, 0, 0, 79, 0, 0, 0, 86, 0, 0, 0, 0xEE}}),
              bytes);
}

TEST_F(DeviceDbFile, IsWrittenCompressedWithTwoZerosBehind) {
    const BYTES image = join({BYTES(44, 'h'), payload});
    db_write_file(path, image.data(), static_cast<unsigned int>(image.size()));
    const BYTES bytes = read_file(path);
    ASSERT_GT(bytes.size(), 46U);
    EXPECT_EQ(BYTES(44, 'h'), first(bytes, 44));
    EXPECT_EQ(payload, inflated({bytes.begin() + 44, bytes.end() - 2}));
    EXPECT_EQ((BYTES{0, 0}), BYTES(bytes.end() - 2, bytes.end()));
}

} // namespace
