// Hostile tables: published ones, changed by a seeded generator, 100,000 in all. Each must be decoded or refused with a
// byte of the image; the sanitizers watch what happens on the way.
#include "sfdp.h"
#include "sfdp_image.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>

namespace {

constexpr size_t MUTATIONS = 100000;
constexpr unsigned int SEED = 20260117;

class MUTATOR {
public:
    MUTATOR() {
        for (const nlohmann::json& entry : sfdp_document("vectors.json"))
            m_images.push_back(hex_bytes(entry.at("sfdp_hex").get<std::string>()));
    }

    BYTES next() {
        BYTES image = m_images[below(m_images.size())];
        for (size_t changes = 1 + below(4); changes > 0; --changes)
            change(image);
        return image;
    }

private:
    size_t below(size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(m_random); }
    unsigned char byte() { return static_cast<unsigned char>(below(256)); }

    // Half of the changes hit the headers and the first table, where they tell most.
    size_t place(const BYTES& image) {
        return below(below(2) == 0 ? std::min<size_t>(image.size(), 128) : image.size());
    }

    void change(BYTES& image) {
        if (image.empty())
            return;
        constexpr unsigned char EDGES[] = {0x00, 0x01, 0x7F, 0x80, 0xFE, 0xFF};
        const size_t at = place(image);
        switch (below(6)) {
        case 0:
            image[at] = static_cast<unsigned char>(image[at] ^ 1U << below(8));
            break;
        case 1:
            image[at] = EDGES[below(std::size(EDGES))];
            break;
        case 2:
            image[at] = byte();
            break;
        case 3:
            image.resize(at);
            break;
        case 4:
            image.insert(image.begin() + static_cast<std::ptrdiff_t>(at), byte());
            break;
        default:
            image[at] = image[place(image)];
        }
    }

    std::mt19937 m_random{SEED};
    std::vector<BYTES> m_images;
};

} // namespace

TEST(SfdpMutation, IsDecodedOrRefused) {
    MUTATOR mutator;
    size_t decoded = 0;
    size_t refused = 0;
    for (size_t i = 0; i < MUTATIONS; ++i) {
        const BYTES image = mutator.next();
        // In a buffer of its own length: a read behind it is seen.
        const SFDP_RESULT result = sfdp_decode(std::vector<std::uint8_t>(image));
        if (const auto* refusal = std::get_if<SFDP_REFUSAL>(&result)) {
            ASSERT_LE(refusal->offset, image.size()) << hex_text(image);
            ASSERT_FALSE(refusal->reason.empty()) << hex_text(image);
            ++refused;
        } else {
            ASSERT_FALSE(std::get<SFDP_TABLE>(result).erase_types.empty()) << hex_text(image);
            ++decoded;
        }
    }
    // Neither outcome is rare: the changes neither miss the tables nor break all of them.
    EXPECT_GT(decoded, MUTATIONS / 10);
    EXPECT_GT(refused, MUTATIONS / 10);
}
