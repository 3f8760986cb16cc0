#include <gtest/gtest.h>
#include <string>

#include "common/ConversionUtils.h"
#include "common/InstTypes.h"

namespace marisonde {
namespace {

struct Row {
    int code;
    std::string_view name;
    bool corvane, tidal, delph;
    int slots, shown, delphChannels;
    double reference;
};

constexpr Row kRows[] = {
    {0, "Corvane-6", true, false, false, 8, 6, 0, 4.81}, {1, "Corvane-4", true, false, false, 4, 4, 0, 3.64},
    {2, "Corvane-2", true, false, false, 3, 2, 0, 4.81}, {3, "l-Tidal", false, true, false, 1, 1, 1, 4.83},
    {4, "n-Tidal", false, true, false, 1, 1, 1, 4.83},   {5, "x-Tidal", false, true, false, 1, 1, 1, 4.83},
    {6, "Fathom-2", false, false, true, 0, 2, 2, -1},    {7, "Delph-2", false, false, true, 0, 2, 2, -1},
    {8, "Delph-4", false, false, true, 0, 4, 4, -1},     {9, "Delph-6", false, false, true, 0, 6, 6, -1},
    {10, "unknown", false, false, false, -1, 0, 0, -1},
};

TEST(InstTypes, EveryRow) {
    for (const Row& row : kRows) {
        const auto code = static_cast<InstTypeCode>(row.code);
        EXPECT_EQ(InstTypeName(code), row.name);
        EXPECT_EQ(InstTypeFromName(row.name), code);
        EXPECT_EQ(InstTypeFromName(UpperCase(row.name)), code);
        EXPECT_EQ(InstTypeFromName(LowerCase(row.name)), code);
        EXPECT_EQ(IsCorvaneFamily(code), row.corvane);
        EXPECT_EQ(IsTidalFamily(code), row.tidal);
        EXPECT_EQ(IsDelphFamily(code), row.delph);
        EXPECT_EQ(ChannelSlots(code), row.slots);
        EXPECT_EQ(ChannelsShown(code), row.shown);
        EXPECT_EQ(DelphChannels(code), row.delphChannels);
        EXPECT_EQ(ReferenceConstant(code), row.reference);
    }
}

TEST(InstTypes, CodesOutsideTheTable) {
    for (const int number : {-1, 11, 12, 1000000}) {
        const auto code = static_cast<InstTypeCode>(number);
        EXPECT_EQ(InstTypeName(code), "unknown");
        EXPECT_FALSE(IsCorvaneFamily(code) || IsTidalFamily(code) || IsDelphFamily(code));
        EXPECT_EQ(ChannelSlots(code), -1);
    }
    EXPECT_EQ(static_cast<int>(InstTypeFromName("Corvane-8")), 11);
    EXPECT_EQ(static_cast<int>(InstTypeFromName("")), 11);
}

TEST(InstTypes, FluorescenceAndShutterByTheConfiguration) {
    struct Case {
        int code;
        std::string_view config;
        bool fluor, shutter;
    };
    const Case cases[] = {
        {0, "", false, false},   {0, "F2", true, false},     {0, "T1", false, true},
        {0, "T0", false, false}, {2, "F2T1", true, true},    {1, "F2T0", true, false},
        {0, "ft", false, false}, {3, "F2T1", false, false},  {6, "", true, false},
        {9, "T1", true, false},  {10, "F2T1", false, false},
    };
    for (const Case& row : cases) {
        const InstIdentity inst{
            .type = static_cast<InstTypeCode>(row.code), .config = row.config, .firmwareVersion = "0"};
        EXPECT_EQ(HasFluorChannels(inst), row.fluor) << row.code << row.config;
        EXPECT_EQ(HasShutter(inst), row.shutter) << row.code << row.config;
    }
}

TEST(InstTypes, OutputChunkSize) {
    struct Case {
        int code;
        std::string_view firmware;
        int size;
    };
    const Case cases[] = {{0, "0", 10}, {2, "9", 10}, {3, "9", 1},         {6, "1.02", 20},  {8, "1.01", 1},
                          {8, "0", 1},  {8, "", 1},   {9, "2.5 beta", 20}, {8, "1.011", 20}, {10, "9", 1}};
    for (const Case& row : cases) {
        InstIdentity inst{
            .type = static_cast<InstTypeCode>(row.code), .config = "", .firmwareVersion = row.firmware};
        EXPECT_EQ(OutputChunkSize(inst), row.size) << row.code << " " << row.firmware;
        inst.sleeping = true;
        EXPECT_EQ(OutputChunkSize(inst), 1);
    }
}

TEST(InstTypes, SerialMatches) {
    struct Case {
        std::string_view a, b;
        bool match;
    };
    const Case cases[] = {
        {"", "CV123", true},
        {"unknown", "CV123", true},
        {"CV00123", "cv09993", true},  // seven characters: digits from the seventh, 3 and 3
        {"CV123", "cv0123", true},     // short: digits from the third
        {"CV123", "CV124", false},
        {"CV123", "LT123", false},
        {"CVxxxx123", "cvyyyy0123", true},
        {"CVxxxx123", "CVxxxx124", false},
        {"CVxxxx123", "CV123", true},  // each by its own length
        {"CV", "cv", true},
        {"C", "CV", false},
        {"CV", "CV0", true},
        {"CV", "CV1", false},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(SerialMatches(row.a, row.b), row.match) << row.a << " " << row.b;
        EXPECT_EQ(SerialMatches(row.b, row.a), row.match) << row.a << " " << row.b;
    }
}

TEST(InstTypes, ShortSerialsOfTidalsAreOfTheSeriesThatStoresNoCalibration) {
    for (const auto type : {InstTypeCode::LTidal, InstTypeCode::NTidal, InstTypeCode::XTidal}) {
        EXPECT_FALSE(StoresCalibration(type, "LT0407"));
        EXPECT_TRUE(StoresCalibration(type, "LT04071"));
    }
    EXPECT_TRUE(StoresCalibration(InstTypeCode::Corvane6, "CV6"));
    EXPECT_TRUE(StoresCalibration(InstTypeCode::Delph4, ""));
}

}  // namespace
}  // namespace marisonde
