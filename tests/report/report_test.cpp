// HTML from templates, and the drawings of flashes that no shipped record is like.
#include "tool_html.h"
#include "tool_report.h"

#include <gtest/gtest.h>

namespace {

// 128 Mbit in 256 sectors, nothing special.
TOVREN_SFL_FLASH_INFO plain_flash() {
    TOVREN_SFL_FLASH_INFO flash;
    flash.device_name = "QXA";
    flash.die_count = 1;
    flash.device_bit_size = 134217728;
    flash.device_sector_byte = 65536;
    flash.protection_mask = 0x1C;
    flash.protection_value = 0x1C;
    flash.protection_division = 0xFF;
    return flash;
}

struct DRAWING {
    TOOL_RULINGS rulings;
    std::string markup;

    explicit DRAWING(const TOVREN_SFL_FLASH_INFO& flash) : markup(tool_report_geometry(flash, rulings).markup()) {}
    bool has(const std::string& text) const { return markup.find(text) != std::string::npos; }
};

TEST(Html, EscapesWhatIsMarkup) {
    EXPECT_EQ(TOOL_HTML("<a href=\"x\" title='&amp;'>").markup(),
              "&lt;a href=&quot;x&quot; title=&#39;&amp;amp;&#39;&gt;");
}

TEST(Html, ShowsBytesThatAreNoText) {
    EXPECT_EQ(TOOL_HTML("a\xFF\n").markup(), "a\\xFF\\x0A");
}

TEST(Html, KeepsCharactersBeyondAscii) {
    EXPECT_EQ(TOOL_HTML("\xC2\xB5s").markup(), "\xC2\xB5s");
}

TEST(Html, FillsEachPlaceOfAName) {
    const TOOL_HTML filled = tool_fill("<i>{{a}}</i>{{b}}{{a}}.", {{"a", TOOL_HTML("<")}, {"b", TOOL_HTML("2")}});
    EXPECT_EQ(filled.markup(), "<i>&lt;</i>2&lt;.");
}

TEST(Html, DoesNotFillWhatAValueAsksFor) {
    EXPECT_EQ(tool_fill("{{a}}", {{"a", TOOL_HTML("{{b}}")}, {"b", TOOL_HTML("no")}}).markup(), "{{b}}");
}

TEST(Html, TellsOfANameWithoutAValue) {
    EXPECT_THROW(tool_fill("{{a}}{{b}}", {{"a", TOOL_HTML("1")}}), std::logic_error);
}

TEST(ReportGeometry, RulesOneLineASector) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.device_bit_size = 1048576; // 128 KiB
    flash.device_sector_byte = 32768;
    const DRAWING drawing(flash);
    EXPECT_EQ(drawing.rulings, (TOOL_RULINGS{{4, 1}}));
    EXPECT_TRUE(drawing.has("4 sectors of 32 KiB."));
    EXPECT_FALSE(drawing.has("enlarged"));
}

TEST(ReportGeometry, GroupsManySectorsAndEnlargesAGroup) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.device_sector_byte = 4096; // 4096 sectors
    const DRAWING drawing(flash);
    EXPECT_EQ(drawing.rulings, (TOOL_RULINGS{{32, 1}, {128, 1}}));
    EXPECT_TRUE(drawing.has("4096 sectors of 4 KiB; a field is 32 of them."));
    EXPECT_TRUE(drawing.has("One field, enlarged: 32 sectors of 4 KiB."));
}

TEST(ReportGeometry, DoesNotEnlargeAGroupOfTooManySectors) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.device_sector_byte = 1; // 2^24 sectors
    const DRAWING drawing(flash);
    EXPECT_EQ(drawing.rulings, (TOOL_RULINGS{{128, 1}}));
    EXPECT_TRUE(drawing.has("a field is 131072 of them."));
}

TEST(ReportGeometry, CutsTheLastSectorWhereSectorsDoNotFillTheFlash) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.device_bit_size = 7 * 8 * 1024;
    flash.device_sector_byte = 2048;
    const DRAWING drawing(flash);
    EXPECT_EQ(drawing.rulings, (TOOL_RULINGS{{7, 2}}));
    EXPECT_TRUE(drawing.has("Sectors of 2 KiB, which do not fill the flash evenly."));
    EXPECT_NE(tool_report_rulings(drawing.rulings).markup().find("M2 0v1M4 0v1M6 0v1\""), std::string::npos);
}

TEST(ReportGeometry, DrawsNoLinesForASectorAsLargeAsTheFlash) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.device_sector_byte = 16777216;
    EXPECT_TRUE(DRAWING(flash).rulings.empty());
}

TEST(ReportGeometry, SaysThatARecordGivesNoSector) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.device_sector_byte = 0;
    const DRAWING drawing(flash);
    EXPECT_TRUE(drawing.has("The record gives no sector size."));
    EXPECT_TRUE(drawing.rulings.empty());
}

TEST(ReportGeometry, SaysThatARecordGivesNoDensity) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.device_bit_size = 0;
    const DRAWING drawing(flash);
    EXPECT_TRUE(drawing.has("The record gives no density"));
    EXPECT_FALSE(drawing.has("class=\"cell\""));
}

TEST(ReportGeometry, DrawsTheLargestFlash) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.device_bit_size = 0xFFFFFFFF;
    flash.device_sector_byte = 0xFFFFFFFF;
    flash.die_count = 255;
    const DRAWING drawing(flash);
    EXPECT_TRUE(drawing.rulings.empty());
    EXPECT_TRUE(drawing.has("255 dies"));
}

TEST(ReportGeometry, MarksWhereAddressesOfThreeBytesEnd) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    EXPECT_FALSE(DRAWING(flash).has("class=\"far\""));
    flash.device_bit_size = 402653184; // 48 MiB
    EXPECT_TRUE(DRAWING(flash).has("class=\"far\" x=\"33.3333%\""));
}

TEST(ReportGeometry, DrawsDiesAsEqualParts) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.die_count = 2;
    const DRAWING drawing(flash);
    EXPECT_TRUE(drawing.rulings.contains({2, 1}));
    EXPECT_TRUE(drawing.has("2 dies, drawn as equal parts"));
}

TEST(ReportProtection, IsUnknownWithoutBits) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.protection_mask = 0;
    const DRAWING drawing(flash);
    EXPECT_TRUE(drawing.has("Protection: unknown."));
    EXPECT_FALSE(drawing.has("class=\"guard\""));
}

TEST(ReportProtection, SaysThatItsExtentIsNotKnownWithoutADivisor) {
    const DRAWING drawing(plain_flash());
    EXPECT_TRUE(drawing.has("The record has no divisor"));
    EXPECT_TRUE(drawing.has("status bits 0x1C as 0x1C protect, as 0x00 they do not"));
}

TEST(ReportProtection, DrawsItsDivisor) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.protection_division = 8;
    const DRAWING drawing(flash);
    EXPECT_TRUE(drawing.has("Divisor 8, drawn as 8 equal parts"));
    EXPECT_TRUE(drawing.rulings.contains({8, 1}));
}

TEST(ReportProtection, ShowsTheBitsOfTheStatusRegister) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    flash.bottom_value = 0x20;
    EXPECT_TRUE(DRAWING(flash).has("<i>7</i><i>6</i><u>5</u><b>4</b><b>3</b><b>2</b><i>1</i><i>0</i>"));
}

TEST(ReportProtection, TellsOfPowerUp) {
    TOVREN_SFL_FLASH_INFO flash = plain_flash();
    EXPECT_TRUE(DRAWING(flash).has("Not marked as write-protected after power-up."));
    flash.startup_protected = true;
    EXPECT_TRUE(DRAWING(flash).has("Write-protected after power-up."));
}

} // namespace
