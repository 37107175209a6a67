// The dialogue that defines flashes: its questions one by one at a terminal, every answer at its limits and one past
// them, and what comes out.
#include "definition_model.h"
#include "fixtures.h"
#include "terminal.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <gtest/gtest.h>
#include <iostream>
#include <sstream>

namespace {

using M = TOVREN_FLASH_MANAGER;

constexpr char VERSION_TEXT[] = "Morvath Version: 7.1.0 SP2 Build 345";
constexpr char COUNT_QUESTION[] = "Number of 3rd party flash to define (max 3) : ";
constexpr char TOO_MANY[] = "Invalid input or too many flash to define\n";
constexpr char INVALID[] = "Invalid input\n";
constexpr char BAD_NAME[] = "Empty name or name too long\nInvalid input\n";
constexpr char SAME_LOCATION[] = "Memory ID, Memory Type and Manufacturer ID index cannot be at the same location";

struct ACCEPTED {
    std::string answer;
    std::string field;
};

// One question and what is to be answered to it. The first accepted answer is the one of DEFINITION.
struct QUESTION {
    size_t number; // of the field, from 1
    std::string text;
    std::vector<ACCEPTED> accepted;
    std::vector<std::string> refused;
    std::string message = INVALID;
};

const std::string TWENTY(20, 'X');
const std::string NINETEEN(19, 'X');

// At every number question: nothing typed, no number, a sign, a blank number, more than 32 bits.
const std::vector<std::string> NO_NUMBERS = {"", "X", "-", "+1", "-2", "1.", "0x", "100000000", "FFFFFFFFFFFFFFFFF"};

std::vector<std::string> and_no_numbers(std::vector<std::string> refused) {
    refused.insert(refused.end(), NO_NUMBERS.begin(), NO_NUMBERS.end());
    return refused;
}

QUESTION name(size_t number, const std::string& text, const std::string& good) {
    return {number, text, {{good, good}, {"x", "X"}, {NINETEEN, NINETEEN}, {"a.b-c", "A.B-C"}}, {"", TWENTY}, BAD_NAME};
}

QUESTION yes_no(size_t number, const std::string& text, const std::string& good) {
    return {number,
            text,
            {{good, good == "Y" ? "1" : "0"}, {"Y", "1"}, {"N", "0"}, {"y", "1"}, {"n", "0"}},
            {"", "1", "0", "YES", "NO", "YN", "-1"}};
}

// Hexadecimal questions without -1: "0x1" becomes "0x0X1".
QUESTION hex(size_t number, const std::string& text, std::vector<ACCEPTED> accepted, std::vector<std::string> refused) {
    refused.insert(refused.end(), {"-1", "0x1", "0X1", "FFFFFFFF", "G"});
    return {number, text, std::move(accepted), and_no_numbers(std::move(refused))};
}

QUESTION hex_or_none(size_t number, const std::string& text, std::vector<ACCEPTED> accepted,
                     std::vector<std::string> refused) {
    refused.insert(refused.end(), {"0x1", "0X1", "FFFFFFFE", "G"});
    return {number, text, std::move(accepted), and_no_numbers(std::move(refused))};
}

QUESTION dec(size_t number, const std::string& text, std::vector<ACCEPTED> accepted, std::vector<std::string> refused) {
    refused.insert(refused.end(), {"-1", "1F", "4294967295", "4294967296", "1,000"});
    return {number, text, std::move(accepted), and_no_numbers(std::move(refused))};
}

const std::vector<QUESTION>& questions() {
    static const std::vector<QUESTION> list = {
        name(1, "Manufacture Name : ", "QXMAKER"),
        name(2, "Device Name : ", "QX25"),
        hex(4, "Memory ID (hex) [1 - FE] : ", {{"18", "24"}, {"1", "1"}, {"FE", "254"}, {"fe", "254"}, {"001", "1"}},
            {"0", "FF", "101"}),
        hex(5, "Memory ID Index [0/1/2] : ", {{"2", "2"}}, {"3", "FF", "100"}),
        hex(6, "Memory Type (hex) [0 - FF] : ", {{"20", "32"}, {"0", "0"}, {"ff", "255"}}, {"100"}),
        hex_or_none(7, "Memory Type Index [-1/0/1/2] : ", {{"1", "1"}, {"-1", "255"}, {"ffffffff", "255"}},
                    {"3", "FF", "100"}),
        hex(8, "Manufacturer ID (hex) [1 - FE] : ", {{"A1", "161"}, {"1", "1"}, {"FE", "254"}}, {"0", "FF"}),
        hex(9, "Manufacturer ID Index [0/1/2] : ", {{"0", "0"}}, {"3", "FF"}),
        yes_no(13, "Support Extended Mode [Y/N] : ", "N"),
        yes_no(14, "Micron flow [Y/N] : ", "Y"),
        yes_no(15, "Spansion flow [Y/N] : ", "N"),
        yes_no(16, "Protected after power-up [Y/N] : ", "Y"),
        yes_no(17, "Is AAI mode [Y/N] : ", "N"),
        yes_no(18, "Read flag status [Y/N] : ", "Y"),
        hex(19, "Die count [1/2] : ", {{"2", "2"}, {"1", "1"}}, {"0", "3"}),
        dec(20, "Memory Density [1 - 2048 Mbit] : ",
            {{"256", "268435456"},
             {"1", "1048576"},
             {"128", "134217728"},
             {"1024", "1073741824"},
             {"2048", "-2147483648"},
             {"0x10", "16777216"}},
            {"0", "3", "255", "2047", "2049", "4096", "10h"}),
        dec(21, "Sector Size [1 - 1024 Kbyte] : ", {{"64", "65536"}, {"1", "1024"}, {"1024", "1048576"}},
            {"0", "3", "1023", "1025", "2048"}),
        dec(24, "Bulk Erase time [1 - 900 seconds] : ", {{"250", "250"}, {"1", "1"}, {"900", "900"}}, {"0", "901"}),
        dec(25, "Sector Erase Time [1 - 60 seconds] : ", {{"3", "3"}, {"1", "1"}, {"60", "60"}}, {"0", "61"}),
        dec(26, "Page Program Time [1000 - 1000000 microseconds] : ",
            {{"5000", "5000"}, {"1000", "1000"}, {"1000000", "1000000"}}, {"0", "999", "1000001"}),
        hex(27, "Protection Mask (hex) [0 - FF] : ", {{"7C", "124"}, {"0", "0"}, {"FF", "255"}}, {"100"}),
        hex(28, "Protection Value (hex) [0 - FF] : ", {{"5C", "92"}, {"0", "0"}, {"FF", "255"}}, {"100"}),
        hex(29, "Unprotect Value (hex) [0 - FF] : ", {{"4", "4"}, {"0", "0"}, {"FF", "255"}}, {"100"}),
        hex_or_none(30, "Protection Divisor (hex) [-1/3 - 20] : ",
                    {{"-1", "255"}, {"3", "3"}, {"20", "32"}, {"1f", "31"}}, {"0", "2", "21", "FF"}),
        hex_or_none(31, "Bottom Value (bit location) [-1/0 - 7] : ",
                    {{"5", "32"}, {"0", "1"}, {"7", "128"}, {"-1", "0"}}, {"8", "FF"}),
        yes_no(32, "SDM Support [Y/N] : ", "N"),
        name(33, "AS Configuration Voltage : ", "1.8V"),
    };
    return list;
}

// Good answers to all questions, each in a line of its own, but for the given ones.
std::string answers_with(const std::vector<std::pair<size_t, std::string>>& others) {
    std::string typed;
    for (const QUESTION& question : questions()) {
        std::string answer = question.accepted[0].answer;
        for (const auto& [number, other] : others)
            answer = number == question.number ? other : answer;
        typed += answer + "\n";
    }
    return typed;
}

// All questions one behind the other, as they appear where nothing is echoed; those up to field `last` only.
std::string all_questions(size_t last = 33) {
    std::string text;
    for (const QUESTION& question : questions())
        text += question.number <= last ? question.text : "";
    return text;
}

// Standard input from a text.
class TYPED {
public:
    explicit TYPED(const std::string& text) : m_text(text), m_former(std::cin.rdbuf(m_text.rdbuf())) {
        std::cin.clear();
    }
    ~TYPED() {
        std::cin.rdbuf(m_former);
        std::cin.clear();
    }
    TYPED(const TYPED&) = delete;
    TYPED& operator=(const TYPED&) = delete;

private:
    std::istringstream m_text;
    std::streambuf* m_former;
};

// What prompt_flash_info gives.
struct OUTCOME {
    bool is_whole = false;
    std::string definition = "former";
    std::string printed;
};

class FlashPrompt : public HOST_TEST {
protected:
    FlashPrompt() { TOVREN_STANDALONE_HOST::set_version("7.1.0", 2, 345); }
    ~FlashPrompt() override { TOVREN_STANDALONE_HOST::reset_version(); }

    OUTCOME prompt(const std::string& text) {
        const TYPED typed(text);
        OUTCOME outcome;
        outcome.printed = standard_output_of([&] { outcome.is_whole = manager.prompt_flash_info(outcome.definition); });
        return outcome;
    }

    std::string generate(const std::string& text) {
        const TYPED typed(text);
        return standard_output_of([&] { manager.gen_flash_ini(); });
    }

    TOVREN_FLASH_MANAGER manager{false, 0, true, false};
};

std::string list_of(const std::vector<std::string>& definitions) {
    std::string list;
    for (const std::string& definition : definitions)
        list += definition + "#" + model_tag(definition, VERSION_TEXT) + ";";
    return list;
}

// ---- how many ----

TEST_F(FlashPrompt, EndsSilentlyAtACountOutsideOneToThree) {
    for (const char* count : {"0", "4", "0x4", "4294967295"})
        EXPECT_EQ(COUNT_QUESTION, generate(count)) << count;
}

TEST_F(FlashPrompt, RefusesACountThatIsNoNumber) {
    for (const char* count : {"", "x", "-1", "1x", "0x", "4294967296", "one"})
        EXPECT_EQ(std::string(COUNT_QUESTION) + TOO_MANY, generate(count)) << count;
}

TEST_F(FlashPrompt, TakesACountInHexadecimalToo) {
    const std::string printed = generate("0X2\n" + answers_with({}));
    EXPECT_TRUE(printed.starts_with(std::string(COUNT_QUESTION) + "Manufacture Name : ")) << printed;
}

// ---- a whole dialogue ----

TEST_F(FlashPrompt, WritesTheDefinitionThatTheAnswersMake) {
    const OUTCOME outcome = prompt(answers_with({}));
    EXPECT_TRUE(outcome.is_whole);
    EXPECT_EQ("@QXMAKER@QX25@0@24@2@32@1@161@0@32@1@NONE@0@1@0@1@0@1@2@268435456@65536@0@1@250@3@5000@124@92@4@255@32@0"
              "@1.8V@",
              outcome.definition);
    EXPECT_EQ(all_questions() + "Prompt outcome: " + outcome.definition + "\n", outcome.printed);
}

TEST_F(FlashPrompt, TakesLowerCaseAnswersOnOneLine) {
    const OUTCOME outcome =
        prompt("qxmaker\tqx25 18 2  20 1 a1 0 n y n y n y 2 256 64 250 3 5000 7c 5c 4 -1 5 n 1.8v more");
    EXPECT_TRUE(outcome.is_whole);
    EXPECT_EQ(DEFINITION().text(), outcome.definition);
}

TEST_F(FlashPrompt, WritesEachAcceptedAnswerIntoItsField) {
    for (const QUESTION& question : questions()) {
        for (const ACCEPTED& accepted : question.accepted) {
            const OUTCOME outcome = prompt(answers_with({{question.number, accepted.answer}}));
            EXPECT_TRUE(outcome.is_whole) << question.text << accepted.answer;
            DEFINITION expected = DEFINITION().with(question.number, accepted.field);
            if (question.number == 20)
                expected =
                    expected.with(23, accepted.answer == "1" || accepted.answer == "128" || accepted.answer == "0x10"
                                          ? "0"
                                          : "1");
            EXPECT_EQ(expected.text(), outcome.definition) << question.text << accepted.answer;
        }
    }
}

TEST_F(FlashPrompt, HasAQuestionForEachFieldThatIsNotFixed) {
    std::string asked;
    for (const QUESTION& question : questions())
        asked += std::to_string(question.number) + " ";
    EXPECT_EQ("1 2 4 5 6 7 8 9 13 14 15 16 17 18 19 20 21 24 25 26 27 28 29 30 31 32 33 ", asked);
}

TEST_F(FlashPrompt, NeedsFourAddressBytesAbove128Mbit) {
    EXPECT_EQ(DEFINITION().with(20, "134217728").with(23, "0").text(), prompt(answers_with({{20, "128"}})).definition);
    EXPECT_EQ(DEFINITION().with(20, "268435456").with(23, "1").text(), prompt(answers_with({{20, "256"}})).definition);
    EXPECT_EQ(DEFINITION().with(20, "-2147483648").with(23, "1").text(),
              prompt(answers_with({{20, "2048"}})).definition);
}

// ---- refusals ----

TEST_F(FlashPrompt, EndsAtTheFirstRefusedAnswer) {
    for (const QUESTION& question : questions()) {
        for (const std::string& refused : question.refused) {
            if (refused.empty())
                continue; // cannot be typed; the end of the input is
            const OUTCOME outcome = prompt(answers_with({{question.number, refused}}));
            EXPECT_FALSE(outcome.is_whole) << question.text << refused;
            EXPECT_EQ("", outcome.definition) << question.text << refused;
            EXPECT_EQ(all_questions(question.number) + question.message, outcome.printed) << refused;
        }
    }
}

TEST_F(FlashPrompt, TakesTheEndOfTheInputAsAnEmptyAnswer) {
    const std::string all = answers_with({});
    size_t position = 0;
    for (const QUESTION& question : questions()) {
        const OUTCOME outcome = prompt(all.substr(0, position));
        EXPECT_FALSE(outcome.is_whole) << question.text;
        EXPECT_EQ("", outcome.definition) << question.text;
        EXPECT_EQ(all_questions(question.number) + question.message, outcome.printed);
        position = all.find('\n', position) + 1;
    }
}

TEST_F(FlashPrompt, AcceptsTheThreeIndexesOnlyAtDifferentPlaces) {
    const std::vector<std::string> places = {"0", "1", "2", "-1"}; // the last one for the memory type alone
    for (size_t combination = 0; combination < 3 * 4 * 3; ++combination) {
        const std::string& id = places[combination % 3];
        const std::string& type = places[combination / 3 % 4];
        const std::string& maker = places[combination / 12];
        const bool is_different = id != type && id != maker && type != maker;
        const OUTCOME outcome = prompt(answers_with({{5, id}, {7, type}, {9, maker}}));
        EXPECT_EQ(is_different, outcome.is_whole) << id << type << maker;
        EXPECT_EQ(is_different, !outcome.definition.empty());
        const std::string last = is_different ? "Prompt outcome: " + outcome.definition + "\n" : SAME_LOCATION;
        EXPECT_EQ(all_questions() + last, outcome.printed);
    }
}

// ---- the list ----

TEST_F(FlashPrompt, PrintsTheListAfterEachFlashAndTheEncodedTextAtTheEnd) {
    const std::string first = DEFINITION().text();
    const std::string second = DEFINITION().with(2, "QX26").text();
    const std::string third = DEFINITION().with(2, "QX27").text();
    const auto flash = [](const std::string& definition, const std::string& list) {
        return all_questions() + "Prompt outcome: " + definition + "\nRaw: " + list + "\n";
    };
    EXPECT_EQ(COUNT_QUESTION + flash(first, list_of({first})) + flash(second, list_of({first, second})) +
                  flash(third, list_of({first, second, third})) +
                  "INI : " + model_encoded(list_of({first, second, third})) + "\n",
              generate("3\n" + answers_with({}) + answers_with({{2, "qx26"}}) + answers_with({{2, "QX27"}})));
}

TEST_F(FlashPrompt, PrintsOneFlashAlone) {
    const std::string list = list_of({DEFINITION().text()});
    EXPECT_EQ(COUNT_QUESTION + all_questions() + "Prompt outcome: " + DEFINITION().text() + "\nRaw: " + list +
                  "\nINI : " + model_encoded(list) + "\n",
              generate("1\n" + answers_with({})));
}

TEST_F(FlashPrompt, EndsAtTheFirstFlashThatFails) {
    const std::string list = list_of({DEFINITION().text()});
    EXPECT_EQ(COUNT_QUESTION + all_questions() + "Prompt outcome: " + DEFINITION().text() + "\nRaw: " + list + "\n" +
                  all_questions(2) + BAD_NAME + TOO_MANY,
              generate("2\n" + answers_with({}) + answers_with({{2, TWENTY}})));
}

TEST_F(FlashPrompt, EndsWhereTheIndexesFallTogether) {
    EXPECT_EQ(COUNT_QUESTION + all_questions() + SAME_LOCATION + TOO_MANY,
              generate("3\n" + answers_with({{7, "2"}}) + answers_with({}) + answers_with({})));
}

TEST_F(FlashPrompt, LooksAtNothingElseInNames) {
    const std::string printed = generate("1\n" + answers_with({{1, "A@B#C;D"}, {2, "A@B#C;D"}}));
    const std::string list = list_of({DEFINITION().with(1, "A@B#C;D").with(2, "A@B#C;D").text()});
    EXPECT_TRUE(printed.ends_with("Raw: " + list + "\nINI : " + model_encoded(list) + "\n")) << printed;
}

TEST_F(FlashPrompt, PrintsNoTextThatDoesNotDecodeToTheList) {
    // A decoded list ends at its first zero byte.
    const std::string name("Q\0X", 3);
    const std::string list = list_of({DEFINITION().with(1, name).text()});
    EXPECT_EQ(COUNT_QUESTION + all_questions() + "Prompt outcome: " + DEFINITION().with(1, name).text() +
                  "\nRaw: " + list + "\nFail to generate INI because fail to counter-check cmp-encode-decode-decmp\n",
              generate("1\n" + answers_with({{1, name}})));
}

TEST_F(FlashPrompt, ReturnsTheEncodedTextThatItPrints) {
    const auto returned = [&](const std::string& text) {
        const TYPED typed(text);
        std::string encoded = "former";
        standard_output_of([&] { encoded = manager.prompt_flash_ini(); });
        return encoded;
    };
    EXPECT_EQ(model_encoded(list_of({DEFINITION().text()})), returned("1\n" + answers_with({})));
    EXPECT_EQ("", returned("4\n" + answers_with({})));
    EXPECT_EQ("", returned("x\n"));
    EXPECT_EQ("", returned("2\n" + answers_with({})));
    EXPECT_EQ("", returned("1\n" + answers_with({{1, std::string("Q\0X", 3)}})));
}

TEST_F(FlashPrompt, LeavesTheManagersRecordAlone) {
    manager.m_ext_flash_info.device_name = "QX1";
    generate("1\n" + answers_with({}));
    EXPECT_EQ("QX1", manager.m_ext_flash_info.device_name);
}

// ---- at a terminal ----

// Answers question after question, up to and with the one of field `last`. Gives what was on the screen until then.
std::string talk(TERMINAL& terminal, size_t last, const std::string& last_answer) {
    std::string seen;
    for (const QUESTION& question : questions()) {
        if (question.number > last)
            break;
        seen += terminal.expect(question.text);
        terminal.type(question.number == last ? last_answer : question.accepted[0].answer + "\n");
    }
    return seen;
}

// The same, and what appears until the dialogue ends.
std::string talk_to_the_end(TERMINAL& terminal, size_t last, const std::string& last_answer) {
    const std::string seen = talk(terminal, last, last_answer);
    return seen + terminal.rest();
}

// What stands on the screen then, the answers echoed.
std::string talked(size_t last, const std::string& last_answer) {
    std::string text;
    for (const QUESTION& question : questions())
        if (question.number <= last)
            text += question.text + (question.number == last ? last_answer : question.accepted[0].answer + "\n");
    return text;
}

TEST_F(FlashPrompt, AsksAtATerminalQuestionByQuestion) {
    TERMINAL terminal([&] { manager.gen_flash_ini(); });
    EXPECT_EQ(COUNT_QUESTION, terminal.expect(COUNT_QUESTION));
    terminal.type("1\n");
    const std::string list = list_of({DEFINITION().text()});
    EXPECT_EQ("1\n" + talked(33, "1.8v\n") + "Prompt outcome: " + DEFINITION().text() + "\nRaw: " + list +
                  "\nINI : " + model_encoded(list) + "\n",
              talk_to_the_end(terminal, 33, "1.8v\n"));
}

TEST_F(FlashPrompt, RefusesEachBadAnswerAtATerminal) {
    for (const QUESTION& question : questions()) {
        std::vector<std::string> refusals = question.refused;
        std::erase(refusals, ""); // an empty line is no answer
        TERMINAL terminal([&] {
            for (size_t i = 0; i < refusals.size(); ++i)
                manager.gen_flash_ini();
        });
        std::string seen = terminal.expect(COUNT_QUESTION);
        for (const std::string& refused : refusals) {
            terminal.type("2\n");
            seen += talk(terminal, question.number, refused + "\n");
            seen += terminal.expect(refused == refusals.back() ? TOO_MANY : COUNT_QUESTION);
            EXPECT_EQ(COUNT_QUESTION + ("2\n" + talked(question.number, refused + "\n")) + question.message + TOO_MANY,
                      seen.substr(0, seen.rfind(TOO_MANY) + std::string(TOO_MANY).size()));
            seen = COUNT_QUESTION;
        }
        EXPECT_EQ("", terminal.rest());
    }
}

TEST_F(FlashPrompt, EndsAtATerminalWhereThePersonEndsTheInput) {
    for (const QUESTION& question : questions()) {
        TERMINAL terminal([&] { manager.gen_flash_ini(); });
        terminal.expect(COUNT_QUESTION);
        terminal.type("1\n");
        EXPECT_EQ("1\n" + talked(question.number, "") + question.message + TOO_MANY,
                  talk_to_the_end(terminal, question.number, std::string(1, TERMINAL::END_OF_INPUT)));
    }
}

TEST_F(FlashPrompt, WaitsAtATerminalBehindAnEmptyLine) {
    TERMINAL terminal([&] { manager.gen_flash_ini(); });
    terminal.expect(COUNT_QUESTION);
    terminal.type("\n\n");
    terminal.expect("\n\n");
    terminal.type("4\n");
    EXPECT_EQ("4\n", terminal.rest());
}

// ---- the questions as data ----

TEST_F(FlashPrompt, OffersItsQuestionsInRecordOrder) {
    const auto prompts = M::get_flash_prompts();
    ASSERT_EQ(33U, prompts.size());
    auto question = questions().begin();
    for (size_t i = 0; i < prompts.size(); ++i) {
        EXPECT_EQ(M::m_name_list[i], prompts[i].member);
        const bool is_asked = question != questions().end() && question->number == i + 1;
        EXPECT_EQ(is_asked, prompts[i].question != nullptr) << prompts[i].member;
        if (is_asked) {
            EXPECT_EQ(question->text, prompts[i].question);
            ++question;
        }
    }
}

TEST_F(FlashPrompt, ChecksOneAnswerAsTheDialogueDoes) {
    const auto prompts = M::get_flash_prompts();
    for (const QUESTION& question : questions()) {
        std::string field;
        for (const ACCEPTED& accepted : question.accepted) {
            EXPECT_EQ(TOVREN_FLASH_ANSWER_GOOD,
                      M::check_flash_answer(prompts[question.number - 1], accepted.answer, field));
            EXPECT_EQ(accepted.field, field);
        }
        for (const std::string& refused : question.refused) {
            field = "former";
            EXPECT_NE(TOVREN_FLASH_ANSWER_GOOD, M::check_flash_answer(prompts[question.number - 1], refused, field));
            EXPECT_EQ("", field) << question.text << refused;
        }
    }
}

TEST_F(FlashPrompt, SaysWhyAnAnswerIsRefused) {
    const auto why = [](size_t number, const char* answer) {
        std::string field;
        return M::check_flash_answer(M::get_flash_prompts()[number - 1], answer, field);
    };
    EXPECT_EQ(TOVREN_FLASH_ANSWER_BAD_LENGTH, why(1, ""));
    EXPECT_EQ(TOVREN_FLASH_ANSWER_BAD_LENGTH, why(33, TWENTY.c_str()));
    EXPECT_EQ(TOVREN_FLASH_ANSWER_NOT_ASKED, why(3, "0"));
    EXPECT_EQ(TOVREN_FLASH_ANSWER_NOT_ASKED, why(23, "1"));
    EXPECT_EQ(TOVREN_FLASH_ANSWER_NOT_YES_OR_NO, why(13, "1"));
    EXPECT_EQ(TOVREN_FLASH_ANSWER_NOT_A_NUMBER, why(4, "-1"));
    EXPECT_EQ(TOVREN_FLASH_ANSWER_NOT_A_NUMBER, why(20, "1F"));
    EXPECT_EQ(TOVREN_FLASH_ANSWER_OUT_OF_RANGE, why(4, "FF"));
    EXPECT_EQ(TOVREN_FLASH_ANSWER_OUT_OF_RANGE, why(4, "100000000"));
    EXPECT_EQ(TOVREN_FLASH_ANSWER_OUT_OF_RANGE, why(20, "4096"));
    EXPECT_EQ(TOVREN_FLASH_ANSWER_NO_POWER_OF_TWO, why(20, "3"));
}

TEST_F(FlashPrompt, MakesADefinitionOfFieldsAndFillsInTheRest) {
    DEFINITION given;
    for (const size_t number : {3U, 10U, 11U, 12U, 22U, 23U})
        given = given.with(number, "");
    std::string definition = "former";
    EXPECT_EQ("", standard_output_of([&] { EXPECT_TRUE(M::gen_flash_definition(given.fields, definition)); }));
    EXPECT_EQ(DEFINITION().text(), definition);
}

TEST_F(FlashPrompt, MakesNoDefinitionOfIndexesAtOnePlace) {
    DEFINITION given = DEFINITION().with(7, "2");
    std::string definition = "former";
    EXPECT_EQ("", standard_output_of([&] { EXPECT_FALSE(M::gen_flash_definition(given.fields, definition)); }));
    EXPECT_EQ("", definition);
}

} // namespace
