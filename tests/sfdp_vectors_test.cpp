// Every published table, and every broken or odd one made of them, against its decoding: all keys, and no other.
#include "sfdp.h"
#include "sfdp_image.h"
#include "tool_sfdp_json.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using JSON = nlohmann::json;

// The keys of both, with both values where they differ.
std::string differences(const JSON& expected, const JSON& decoded) {
    return JSON::diff(expected, decoded).dump(1);
}

void expect_decoding(const JSON& entry) {
    const BYTES image = hex_bytes(entry.at("sfdp_hex").get<std::string>());
    const SFDP_RESULT result = sfdp_decode(image);
    const auto* table = std::get_if<SFDP_TABLE>(&result);
    ASSERT_NE(nullptr, table) << std::get<SFDP_REFUSAL>(result).reason;
    const JSON decoded = JSON::parse(tool_sfdp_json(*table).dump());
    EXPECT_TRUE(entry.at("expected") == decoded) << differences(entry.at("expected"), decoded);
}

void expect_refusal(const JSON& entry) {
    const BYTES image = hex_bytes(entry.at("sfdp_hex").get<std::string>());
    const SFDP_RESULT result = sfdp_decode(image);
    const auto* refusal = std::get_if<SFDP_REFUSAL>(&result);
    ASSERT_NE(nullptr, refusal);
    EXPECT_EQ(entry.at("kind").get<std::string>(), refusal->kind) << refusal->reason;
    EXPECT_FALSE(refusal->reason.empty());
    EXPECT_LT(refusal->offset, image.size());
}

} // namespace

TEST(SfdpVectors, ArePublishedTablesDecodedInEveryKey) {
    const JSON vectors = sfdp_document("vectors.json");
    ASSERT_EQ(35U, vectors.size());
    for (const JSON& entry : vectors) {
        SCOPED_TRACE(entry.at("name").get<std::string>());
        expect_decoding(entry);
    }
}

TEST(SfdpVectors, AreOddTablesDecodedInEveryKey) {
    for (const JSON& entry : sfdp_document("hostile.json")) {
        SCOPED_TRACE(entry.at("name").get<std::string>());
        if (entry.at("expect") == "accept")
            expect_decoding(entry);
    }
}

TEST(SfdpVectors, AreBrokenTablesRefusedWithTheirKind) {
    size_t refused = 0;
    for (const JSON& entry : sfdp_document("hostile.json")) {
        SCOPED_TRACE(entry.at("name").get<std::string>());
        if (entry.at("expect") != "refuse")
            continue;
        expect_refusal(entry);
        ++refused;
    }
    EXPECT_EQ(29U, refused);
}

TEST(SfdpVectors, IsEveryTableRefusedWhenCutBeforeItsEnd) {
    for (const JSON& entry : sfdp_document("vectors.json")) {
        SCOPED_TRACE(entry.at("name").get<std::string>());
        const BYTES image = hex_bytes(entry.at("sfdp_hex").get<std::string>());
        const JSON& basic = entry.at("expected").at("bfpt");
        const auto end = basic.at("offset").get<size_t>() + 4 * basic.at("dwords").get<size_t>();
        for (size_t kept = 0; kept < end; ++kept)
            ASSERT_TRUE(std::holds_alternative<SFDP_REFUSAL>(sfdp_decode(first(image, kept)))) << kept;
    }
}
