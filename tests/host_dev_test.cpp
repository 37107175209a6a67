// The catalogue of the standalone host: names and numbers, what belongs to what, the filter of parts; and its mail.
#include "device_fixtures.h"
#include "host_dev.h"
#include "host_pgm_common.h"
#include "tovren_catalogue_tables.h"
#include "tovren_standalone_host.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace {

std::string lower(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// ---- names ----

TEST(Catalogue, LeadsFromEveryNameToItsNumber) {
    for (unsigned int family = 1; family < 74; ++family)
        EXPECT_EQ(family, dstr_get_dev_family_enum_by_string(dstr_get_user_string(DEV_FAMILY_ENUM(family))));
    for (unsigned int device = 1; device < 1048; ++device)
        EXPECT_EQ(device, dstr_get_dev_device_enum_by_string(dstr_get_user_string(DEV_DEVICE_ENUM(device))));
    for (unsigned int part = 1; part < DEV_PART_MAX; ++part)
        EXPECT_EQ(part, dstr_get_dev_part_enum_by_string(dstr_get_user_string(DEV_PART_ENUM(part))));
}

TEST(Catalogue, LeadsFromEveryNameInLowerCaseToItsNumber) {
    for (unsigned int family = 1; family < 74; ++family)
        EXPECT_EQ(family, dstr_get_dev_family_enum_by_string(lower(dstr_get_user_string(DEV_FAMILY_ENUM(family)))));
    for (unsigned int device = 1; device < 1048; ++device)
        EXPECT_EQ(device, dstr_get_dev_device_enum_by_string(lower(dstr_get_user_string(DEV_DEVICE_ENUM(device)))));
    for (unsigned int part = 1; part < DEV_PART_MAX; ++part)
        EXPECT_EQ(part, dstr_get_dev_part_enum_by_string(lower(dstr_get_user_string(DEV_PART_ENUM(part)))));
}

TEST(Catalogue, HasTheScaleOfTheSystem) {
    EXPECT_EQ(74U, unsigned{DEV_FAMILY_MAX});
    EXPECT_EQ(1048U, unsigned{DEV_DEVICE_MAX});
    EXPECT_EQ(0U, unsigned{DEV_PART_INVALID});
    EXPECT_GE(DEV_PART_GENERIC, 9273U);
    EXPECT_EQ(DEV_PART_GENERIC + 1U, unsigned{DEV_PART_MAX});
}

TEST(Catalogue, CallsTheGenericValuesGeneric) {
    EXPECT_EQ("GENERIC", dstr_get_user_string(DEV_FAMILY_GENERIC));
    EXPECT_EQ("GENERIC", dstr_get_user_string(DEV_DEVICE_GENERIC));
    EXPECT_EQ("GENERIC", dstr_get_user_string(DEV_PART_GENERIC));
    EXPECT_EQ(DEV_FAMILY_GENERIC, dstr_get_dev_family_enum_by_string("Generic"));
}

TEST(Catalogue, HasNoNameForInvalidAndOutOfBounds) {
    EXPECT_EQ("", dstr_get_user_string(DEV_FAMILY_INVALID));
    EXPECT_EQ("", dstr_get_user_string(DEV_DEVICE_INVALID));
    EXPECT_EQ("", dstr_get_user_string(DEV_PART_INVALID));
    EXPECT_EQ("", dstr_get_user_string(DEV_FAMILY_MAX));
    EXPECT_EQ("", dstr_get_user_string(DEV_DEVICE_MAX));
    EXPECT_EQ("", dstr_get_user_string(DEV_PART_MAX));
    EXPECT_EQ("", dstr_get_user_string(DEV_FAMILY_ENUM(0xFFFFFFFF)));
    EXPECT_EQ("", dstr_get_user_string(DEV_DEVICE_ENUM(0xFFFFFFFF)));
    EXPECT_EQ("", dstr_get_user_string(DEV_PART_ENUM(0xFFFFFFFF)));
}

TEST(Catalogue, GivesInvalidForUnknownNames) {
    for (const char* name : {"", " ", "QUARN", "QUARN-1 ", " QUARN-1", "QUARN-11", "QUARN_1", "QA02A", "~", "\xFF"})
        EXPECT_EQ(DEV_FAMILY_INVALID, dstr_get_dev_family_enum_by_string(name)) << name;
    for (const char* name : {"", "QA02", "QA02AX", "QA02A ", "QUARN-1", "QA02AE144", "~"})
        EXPECT_EQ(DEV_DEVICE_INVALID, dstr_get_dev_device_enum_by_string(name)) << name;
    for (const char* name : {"", "QA02A", "QA02AE144X", "QA02AE14", "QUARN-1", "~"})
        EXPECT_EQ(DEV_PART_INVALID, dstr_get_dev_part_enum_by_string(name)) << name;
}

TEST(Catalogue, TakesANameWithATerminatorInItForUnknown) {
    EXPECT_EQ(DEV_FAMILY_INVALID, dstr_get_dev_family_enum_by_string(std::string("QUARN-1\0X", 9)));
}

TEST(Catalogue, HoldsValuesBetweenInvalidAndTheBoundForValid) {
    for (const unsigned int family : {1U, 72U, 73U})
        EXPECT_TRUE(dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM(family)));
    for (const unsigned int family : {0U, 74U, 0xFFFFFFFFU})
        EXPECT_FALSE(dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM(family)));
    for (const unsigned int device : {1U, 1046U, 1047U})
        EXPECT_TRUE(dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM(device)));
    for (const unsigned int device : {0U, 1048U, 0xFFFFFFFFU})
        EXPECT_FALSE(dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM(device)));
}

// ---- what belongs to what ----

TEST(Catalogue, HasAFamilyForEveryDeviceAndADeviceForEveryPart) {
    const DEV_PART_MANAGER catalogue;
    for (unsigned int device = 1; device < 1047; ++device) {
        const DEV_FAMILY_ENUM family = catalogue.get_family_of(DEV_DEVICE_ENUM(device));
        EXPECT_TRUE(family > DEV_FAMILY_INVALID && family < DEV_FAMILY_GENERIC) << device;
    }
    for (unsigned int part = 1; part < DEV_PART_GENERIC; ++part) {
        const DEV_DEVICE_ENUM device = catalogue.get_device_of(DEV_PART_ENUM(part));
        ASSERT_TRUE(device > DEV_DEVICE_INVALID && device < DEV_DEVICE_GENERIC) << part;
        EXPECT_TRUE(dstr_get_user_string(DEV_PART_ENUM(part)).starts_with(dstr_get_user_string(device))) << part;
    }
}

TEST(Catalogue, HasTheGenericOfTheGenericAndNothingOfNothing) {
    const DEV_PART_MANAGER catalogue;
    EXPECT_EQ(DEV_FAMILY_GENERIC, catalogue.get_family_of(DEV_DEVICE_GENERIC));
    EXPECT_EQ(DEV_DEVICE_GENERIC, catalogue.get_device_of(DEV_PART_GENERIC));
    for (const unsigned int device : {0U, 1048U, 0xFFFFFFFFU})
        EXPECT_EQ(DEV_FAMILY_INVALID, catalogue.get_family_of(DEV_DEVICE_ENUM(device)));
    for (const unsigned int part : {0U, unsigned{DEV_PART_MAX}, 0xFFFFFFFFU})
        EXPECT_EQ(DEV_DEVICE_INVALID, catalogue.get_device_of(DEV_PART_ENUM(part)));
}

TEST(Catalogue, NumbersAsTheDescriptionDoes) {
    EXPECT_EQ(1U, dstr_get_dev_family_enum_by_string("QUARN-1"));
    EXPECT_EQ(1U, dstr_get_dev_device_enum_by_string("QA02A"));
    EXPECT_EQ(55U, dstr_get_dev_device_enum_by_string("QA40E"));
    EXPECT_EQ(56U, dstr_get_dev_device_enum_by_string("QB01A"));
    EXPECT_EQ(1U, dstr_get_dev_part_enum_by_string("QA02AE144"));
}

// ---- the filter ----

// What a part is filtered by: the cells of its line in the part list, its family, and three flags.
struct LISTED_PART {
    DEV_PART_ENUM number;
    std::string name;
    std::string family;
    std::string package;
    std::string pin_count;
    std::string temperature_grade;
    std::string speed_grade;
    bool in_production;
    bool has_ordering_number;
    bool has_hard_processor;
};

std::vector<LISTED_PART> read_listed_parts() {
    std::ifstream input(SHIPPED_PRODUCT_ROOT "/h/pgm_parts.txt");
    std::vector<LISTED_PART> parts;
    const DEV_PART_MANAGER catalogue;
    for (std::string line; std::getline(input, line);) {
        if (line.starts_with("//"))
            continue;
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream cells(line);
        LISTED_PART part;
        std::string device;
        cells >> part.name >> device >> part.package >> part.pin_count >> part.temperature_grade >> part.speed_grade;
        part.number = DEV_PART_ENUM(parts.size() + 1);
        part.family = dstr_get_user_string(catalogue.get_family_of(dstr_get_dev_device_enum_by_string(device)));
        const TOVREN_CATALOGUE_PART& row = TOVREN_CATALOGUE_PARTS[parts.size() + 1];
        part.in_production = row.in_production;
        part.has_ordering_number = row.has_ordering_number;
        part.has_hard_processor = row.has_hard_processor;
        parts.push_back(part);
    }
    return parts;
}

const std::vector<LISTED_PART>& listed_parts() {
    static const std::vector<LISTED_PART> parts = read_listed_parts();
    return parts;
}

using PARTS = std::vector<DEV_PART_ENUM>;

struct FILTER {
    std::string family = "ANY";
    std::string package = "ANY";
    std::string pin_count = "ANY";
    std::string temperature_grade = "ANY";
    std::string speed_grade = "ANY";
    bool in_production = false;
    bool has_ordering_number = false;
    bool has_hard_processor = false;
    std::string name_part = "ANY";

    bool passes(const LISTED_PART& part) const {
        const auto fits = [](const std::string& wanted, const std::string& cell) {
            return lower(wanted) == "any" || lower(wanted) == lower(cell);
        };
        const bool has_name = lower(name_part) == "any" || lower(part.name).find(lower(name_part)) != std::string::npos;
        return fits(family, part.family) && fits(package, part.package) && fits(pin_count, part.pin_count) &&
               fits(temperature_grade, part.temperature_grade) && fits(speed_grade, part.speed_grade) && has_name &&
               (!in_production || part.in_production) && (!has_ordering_number || part.has_ordering_number) &&
               (!has_hard_processor || part.has_hard_processor);
    }

    PARTS expected() const {
        PARTS parts;
        for (const LISTED_PART& part : listed_parts())
            if (passes(part))
                parts.push_back(part.number);
        return parts;
    }

    PARTS answered() const {
        PARTS parts = {DEV_PART_GENERIC, DEV_PART_INVALID}; // must go
        EXPECT_TRUE(DEV_PART_MANAGER().filter_part_list(parts, family, package, pin_count, temperature_grade,
                                                        speed_grade, in_production, has_ordering_number,
                                                        has_hard_processor, name_part));
        return parts;
    }

    // The answer is the model's, and this is neither everything nor nothing.
    void expect_some() const {
        const PARTS parts = expected();
        EXPECT_EQ(parts, answered());
        EXPECT_FALSE(parts.empty());
        EXPECT_LT(parts.size(), listed_parts().size());
    }
};

TEST(PartFilter, OfNothingButWildCardsPassesEveryNamedPartInOrder) {
    PARTS all;
    for (unsigned int part = 1; part < DEV_PART_GENERIC; ++part)
        all.push_back(DEV_PART_ENUM(part));
    EXPECT_EQ(all, FILTER().answered());
    EXPECT_EQ(all, (FILTER{"any", "Any", "aNy", "any", "any", false, false, false, "any"}).answered());
    EXPECT_EQ(all, (FILTER{.name_part = ""}).answered()); // every name contains the empty text
}

TEST(PartFilter, PassesTheFamily) {
    for (unsigned int family = 1; family < 73; ++family) {
        FILTER filter;
        filter.family = dstr_get_user_string(DEV_FAMILY_ENUM(family));
        EXPECT_EQ(filter.expected(), filter.answered()) << filter.family;
        filter.family = lower(filter.family);
        EXPECT_EQ(filter.expected(), filter.answered()) << filter.family;
    }
}

TEST(PartFilter, FailsForAnUnknownFamilyWithAnEmptyList) {
    for (const char* family : {"", "NO_SUCH_FAMILY", "QUARN"}) {
        PARTS parts = {DEV_PART_GENERIC};
        EXPECT_FALSE(
            DEV_PART_MANAGER().filter_part_list(parts, family, "ANY", "ANY", "ANY", "ANY", false, false, false, "ANY"));
        EXPECT_TRUE(parts.empty());
    }
}

TEST(PartFilter, PassesEachPropertyByItself) {
    FILTER{.package = "FBGA"}.expect_some();
    FILTER{.package = "ubga"}.expect_some();
    FILTER{.pin_count = "256"}.expect_some();
    FILTER{.temperature_grade = "I"}.expect_some();
    FILTER{.temperature_grade = "c"}.expect_some();
    FILTER{.speed_grade = "7"}.expect_some();
    FILTER{.in_production = true}.expect_some();
    FILTER{.has_ordering_number = true}.expect_some();
    FILTER{.has_hard_processor = true}.expect_some();
    FILTER{.name_part = "QX2"}.expect_some();
    FILTER{.name_part = "af256"}.expect_some();
}

TEST(PartFilter, PassesWhatFitsAllAtOnce) {
    FILTER{.family = "QUARN-1", .package = "FBGA", .pin_count = "256"}.expect_some();
    FILTER{"ANY", "UBGA", "ANY", "I", "7", true, false, false, "ANY"}.expect_some();
    FILTER{.has_ordering_number = true, .has_hard_processor = true}.expect_some();
    FILTER{.in_production = true, .has_ordering_number = true}.expect_some();
}

TEST(PartFilter, PassesNothingThatNoPartHas) {
    EXPECT_TRUE((FILTER{.package = "NONE"}).answered().empty());
    EXPECT_TRUE((FILTER{.pin_count = "257"}).answered().empty());
    EXPECT_TRUE((FILTER{.pin_count = "x"}).answered().empty());
    EXPECT_TRUE((FILTER{.temperature_grade = "Z"}).answered().empty());
    EXPECT_TRUE((FILTER{.temperature_grade = "CI"}).answered().empty());
    EXPECT_TRUE((FILTER{.speed_grade = "1"}).answered().empty());
    EXPECT_TRUE((FILTER{.name_part = "NO_SUCH_PART"}).answered().empty());
    EXPECT_TRUE((FILTER{.family = "QUARN-2", .name_part = "QA"}).answered().empty());
}

TEST(PartFilter, TakesTheGenericFamilyForOneWithoutNamedParts) {
    EXPECT_TRUE((FILTER{.family = "GENERIC"}).answered().empty());
}

TEST(PartFilter, FlagsFollowTheDescription) {
    const auto& parts = listed_parts();
    const auto find = [&](const std::string& name) {
        return *std::find_if(parts.begin(), parts.end(), [&](const LISTED_PART& part) { return part.name == name; });
    };
    EXPECT_FALSE(find("QA02AE144").in_production); // retired, none
    EXPECT_FALSE(find("QA02AE144").has_ordering_number);
    EXPECT_TRUE(find("QB01AE144").in_production); // current, the first variant of each die
    EXPECT_TRUE(find("QB01AE144").has_ordering_number);
    EXPECT_TRUE(find("QB01BE144").in_production);
    EXPECT_FALSE(find("QB01BE144").has_ordering_number);
    EXPECT_FALSE(find("QB01AE144").has_hard_processor);
    EXPECT_TRUE(find("QS16AU358").has_hard_processor); // a family of systems
}

// ---- mail ----

class Mail : public HOST_TEST {
protected:
    std::string standard_error;

    bool send(const std::string& subject, const std::string& body) {
        bool is_sent = false;
        standard_error = standard_error_of([&] {
            is_sent = PGM_COMMON::send_auto_email_file({PGM_COMMON_INI_EMAIL_ADDR_DEVICE_DATA,
                                                        PGM_COMMON_INI_EMAIL_ADDR_BUILD},
                                                       subject, body);
        });
        return is_sent;
    }

    std::string sent(const std::string& subject, const std::string& body) {
        TOVREN_STANDALONE_HOST::set_setting("TOVREN_MAIL_OUTBOX", folder.path());
        EXPECT_TRUE(send(subject, body));
        EXPECT_EQ(1U, folder.names().size());
        return folder.names().empty() ? "" : read_text(folder.path(folder.names()[0]));
    }
};

TEST_F(Mail, SaysOnStandardErrorWhatItWouldSend) {
    EXPECT_FALSE(send("A title", "First line.\n\nLast line.\n"));
    for (const char* text : {"A title", "First line. Last line. (not sent"})
        EXPECT_NE(std::string::npos, standard_error.find(text)) << standard_error;
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(Mail, GoesToAllRecipientsInOneMessage) {
    const std::string text = sent("A title", "Body.\n");
    const size_t to = text.find("\r\nTo: ");
    ASSERT_NE(std::string::npos, to);
    const std::string line = text.substr(to + 2, text.find("\r\n", to + 2) - to - 2);
    EXPECT_EQ(2, std::count(line.begin(), line.end(), '@')) << line;
    EXPECT_NE(std::string::npos, text.find("\r\nSubject: A title\r\n"));
    EXPECT_TRUE(text.ends_with("\r\n\r\nBody.\r\n")) << text;
    EXPECT_NE("", standard_error);
}

TEST_F(Mail, LetsNoSubjectStartAHeaderOfItsOwn) {
    const std::string text = sent("A title\r\nBcc: someone@example.org\n\nBody of its own", "Body.\n");
    EXPECT_EQ(std::string::npos, text.find("\nBcc:")) << text;
    EXPECT_TRUE(text.ends_with("\r\n\r\nBody.\r\n")) << text;
    EXPECT_EQ(text.find("\r\n\r\n"), text.rfind("\r\n\r\n")) << text;
}

TEST_F(Mail, EndsEveryLineOfTheBodyInOneWay) {
    EXPECT_TRUE(sent("T", "one\ntwo\r\nthree").ends_with("\r\n\r\none\r\ntwo\r\nthree\r\n"));
}

TEST_F(Mail, FailsWhereTheOutboxCannotBeWritten) {
    write_text(folder.path("file"), "");
    TOVREN_STANDALONE_HOST::set_setting("TOVREN_MAIL_OUTBOX", folder.path("file"));
    EXPECT_FALSE(send("A title", "Body.\n"));
    EXPECT_NE(std::string::npos, standard_error.find(folder.path("file"))) << standard_error;
}

TEST_F(Mail, TellsWhereTheMessageIs) {
    sent("A title", "Body.\n");
    EXPECT_NE(std::string::npos, standard_error.find(folder.names()[0])) << standard_error;
}

} // namespace
