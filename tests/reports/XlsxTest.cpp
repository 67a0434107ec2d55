#include <gtest/gtest.h>
#include <zlib.h>

#include <cstring>

#include "cli/CliRun.h"
#include "reports/Builders.h"
#include "reports/xlsx/XlsxFile.h"

namespace vortan {
namespace {

template <class Number>
Number NumberAt(const std::string& bytes, std::size_t at) {
    Number number;
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

/// A file of a ZIP archive.
std::string Unzipped(std::string zip, const std::string& name) {
    const std::string mark = "PK\x01\x02";
    for (std::size_t at = zip.find(mark); at != std::string::npos; at = zip.find(mark, at + 4)) {
        if (zip.compare(at + 46, name.size(), name) != 0) continue;
        const std::size_t local = NumberAt<std::uint32_t>(zip, at + 42);
        const std::size_t start =
            local + 30 + NumberAt<std::uint16_t>(zip, local + 26) + NumberAt<std::uint16_t>(zip, local + 28);
        std::string text(NumberAt<std::uint32_t>(zip, at + 24), '\0');
        z_stream stream{};
        stream.next_in = reinterpret_cast<Bytef*>(zip.data() + start);
        stream.avail_in = NumberAt<std::uint32_t>(zip, at + 20);
        stream.next_out = reinterpret_cast<Bytef*>(text.data());
        stream.avail_out = static_cast<uInt>(text.size());
        EXPECT_EQ(inflateInit2(&stream, -MAX_WBITS), Z_OK);
        EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
        inflateEnd(&stream);
        return text;
    }
    ADD_FAILURE() << "no " << name;
    return {};
}

Table ValuesTable(const std::string& name) {
    std::vector<TableColumn> columns{{"Name", Alignment::Left}};
    for (int i = 0; i < 6; ++i) columns.push_back({"July 2002", Alignment::DayColumn});
    Table table("Values", std::move(columns), 1);
    table.firstRowFixed = true;
    RowWriter(table).Skip(1).Number(1);
    RowWriter(table)
        .Text(name)
        .Date(FromParts({2002, 7, 24, 13, 0, 0}))
        .Amount(Money::FromUnits(-12345), "kr")
        .HoursOf(7.5F, true)
        .YorN(true)
        .Date(DateTime())
        .Date(DateTime(kLastDay));
    table.marks = {{1, 3, 9}};
    return table;
}

TEST(Xlsx, ValuesAreValuesAndTextsAreTexts) {
    const std::string book = XlsxOf(ValuesTable("=1+1"), {"Loading by day", "kr"});
    const std::string sheet = Unzipped(book, "xl/worksheets/sheet1.xml"),
                      styles = Unzipped(book, "xl/styles.xml");
    for (const char* part : {"<v>37461.54166666666</v>", "<v>-1.2345</v>", "<v>7.5</v>", "<v>2958465</v>",
                             "<mergeCell ref=\"B2:G2\"/>", "xSplit=\"1\" ySplit=\"3\"", "state=\"frozen\"",
                             "fitToHeight=\"0\"", "orientation=\"landscape\""})
        ExpectPart(sheet, part);
    ExpectNoPart(sheet, "<f>");
    ExpectPart(Unzipped(book, "xl/sharedStrings.xml"), "<t>=1+1</t>");
    ExpectPart(Unzipped(book, "xl/sharedStrings.xml"), "<t>12:00:00 AM</t>");
    ExpectPart(styles, "&quot;kr&quot;#,##0.00;&quot;kr&quot;-#,##0.00");
    ExpectPart(styles, "<fgColor rgb=\"FFFF8080\"/>");
    ExpectPart(Unzipped(book, "xl/workbook.xml"), "$1:$3</definedName>");
}

TEST(Xlsx, WhatACellCannotHoldIsCutOrWrittenOtherwise) {
    ExpectPart(
        Unzipped(XlsxOf(ValuesTable("a\x01" + std::string(40000, 'x')), {"S", "$"}), "xl/sharedStrings.xml"),
        "<t>a_x0001_xxx");
}

}  // namespace
}  // namespace vortan
