#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "files/DatColumns.h"
#include "files/DatFile.h"

namespace marisonde {
namespace {

/// Whole numbers that tell field and channel, so that every column of a line can be recognised.
CalibratedSample Recognisable() {
    CalibratedSample sample;
    sample.Time = 40000.25;
    sample.Elapsed = 7;
    sample.Depth = 12.5F;
    sample.Temp = 21.5F;
    sample.K = 600;
    sample.a = 601;
    for (std::size_t i = 0; i < kChannelSlots; ++i) {
        const auto channel = static_cast<float>(i);
        sample.bb[i] = 100 + channel;
        sample.bbUncorr[i] = 200 + channel;
        sample.beta[i] = 300 + channel;
        sample.betaUncorr[i] = 400 + channel;
        sample.k[i] = 500 + channel;
        sample.Sigma[i] = 700 + channel;
    }
    return sample;
}

std::string LineOf(const CalibratedSample& sample, InstTypeCode type, bool writeBetaColumns) {
    std::string line;
    WriteDatLine(line, sample, type, writeBetaColumns);
    return line;
}

struct LineCase {
    InstTypeCode type;
    const char* plain;
    const char* withBeta;
};

// Column order: time, depth, then the columns of the model. Corvane lines end in a comma, as do the lines of
// models without columns; Tidal and Delph lines do not.
const LineCase kLines[] = {
    {InstTypeCode::Corvane6,
     "40000.25,12.5,100,101,102,103,104,105,106,107,200,201,202,203,204,205,206,207,\r\n",
     "40000.25,12.5,100,101,102,103,104,105,106,107,200,201,202,203,204,205,206,207,"
     "300,301,302,303,304,305,306,307,400,401,402,403,404,405,406,407,\r\n"},
    {InstTypeCode::Corvane4, "40000.25,12.5,100,101,102,103,200,201,202,203,\r\n",
     "40000.25,12.5,100,101,102,103,200,201,202,203,300,301,302,303,400,401,402,403,\r\n"},
    {InstTypeCode::Corvane2, "40000.25,12.5,100,101,102,200,201,202,\r\n",
     "40000.25,12.5,100,101,102,200,201,202,300,301,302,400,401,402,\r\n"},
    {InstTypeCode::LTidal, "40000.25,12.5,100,200,600,601\r\n", "40000.25,12.5,100,200,600,601,300,400\r\n"},
    {InstTypeCode::NTidal, "40000.25,12.5,100,200,500\r\n", "40000.25,12.5,100,200,500,300,400\r\n"},
    {InstTypeCode::XTidal, "40000.25,12.5,\r\n", "40000.25,12.5,\r\n"},
    {InstTypeCode::Fathom2, "40000.25,12.5,500,501,21.5\r\n", "40000.25,12.5,500,501,21.5\r\n"},
    {InstTypeCode::Delph2, "40000.25,12.5,500,501,21.5\r\n", "40000.25,12.5,500,501,21.5\r\n"},
    {InstTypeCode::Delph4, "40000.25,12.5,500,501,502,503,21.5\r\n",
     "40000.25,12.5,500,501,502,503,21.5\r\n"},
    {InstTypeCode::Delph6, "40000.25,12.5,500,501,502,503,504,505,21.5\r\n",
     "40000.25,12.5,500,501,502,503,504,505,21.5\r\n"},
    {InstTypeCode::Unknown, "40000.25,12.5,\r\n", "40000.25,12.5,\r\n"},
};

TEST(DatLineTest, EveryModelHasItsColumnsInOrder) {
    ASSERT_EQ(std::size(kLines), kInstTypeCount);
    for (const LineCase& row : kLines) {
        SCOPED_TRACE(InstTypeName(row.type));
        EXPECT_EQ(LineOf(Recognisable(), row.type, false), row.plain);
        EXPECT_EQ(LineOf(Recognisable(), row.type, true), row.withBeta);
    }
}

TEST(DatLineTest, ACodeOutsideTheTableIsWrittenAsUnknown) {
    EXPECT_EQ(LineOf(Recognisable(), InstTypeCode::NoSuchName, true), "40000.25,12.5,\r\n");
    EXPECT_EQ(LineOf(Recognisable(), static_cast<InstTypeCode>(-1), true), "40000.25,12.5,\r\n");
}

TEST(DatLineTest, ASampleWithoutAClockShowsItsElapsedTime) {
    CalibratedSample sample = Recognisable();
    sample.Time = 0;
    sample.Elapsed = 1.5;
    EXPECT_EQ(LineOf(sample, InstTypeCode::XTidal, false), "1.5,12.5,\r\n");
    sample.Elapsed = 0;
    EXPECT_EQ(LineOf(sample, InstTypeCode::XTidal, false), "0,12.5,\r\n");
}

TEST(DatLineTest, TimeKeepsTheDigitsOfADouble) {
    CalibratedSample sample = Recognisable();
    // A hundredth of a second is 1.2E-7 days; a 32-bit value of 40000 could not even hold a minute.
    sample.Time = 40000.2512345678;
    EXPECT_EQ(LineOf(sample, InstTypeCode::XTidal, false), "40000.2512345678,12.5,\r\n");
}

TEST(DatLineTest, AFailedValueIsWrittenLikeAnyOther) {
    CalibratedSample sample = Recognisable();
    sample.bb[0] = 1e308;
    sample.bbUncorr[0] = -std::numeric_limits<double>::quiet_NaN();
    sample.K = std::numeric_limits<float>::infinity();
    EXPECT_EQ(LineOf(sample, InstTypeCode::LTidal, false), "40000.25,12.5,1E+308,1E+308,1E+308,601\r\n");
}

TEST(DatLineTest, ValuesAreRoundedTo32Bits) {
    CalibratedSample sample = Recognisable();
    // 1 + 1E-8 lies within half of 2^-23 of 1. 16777217 = 2^24 + 1 lies halfway between 2^24 and 2^24 + 2 and
    // goes to the even one, 16777216, whose eight digits need the exponent form. 1.234568E-03 needs nine
    // decimals.
    sample.bb[0] = 1.00000001;
    sample.bbUncorr[0] = 16777217;
    sample.k[0] = 1.234568e-3F;
    EXPECT_EQ(LineOf(sample, InstTypeCode::NTidal, false), "40000.25,12.5,1,1.6777216E+07,1.234568E-03\r\n");
}

TEST(DatLineTest, LinesAreAppendedAndNeedNoMemoryOnceThereIsRoom) {
    std::string out = "before\r\n";
    out.reserve(4096);
    const char* const room = out.data();
    for (int i = 0; i < 3; ++i) WriteDatLine(out, Recognisable(), InstTypeCode::NTidal, false);
    EXPECT_EQ(out,
              "before\r\n"
              "40000.25,12.5,100,200,500\r\n"
              "40000.25,12.5,100,200,500\r\n"
              "40000.25,12.5,100,200,500\r\n");
    EXPECT_EQ(out.data(), room);
}

TEST(DatLineTest, TheLongestNumbersFitALine) {
    CalibratedSample sample = Recognisable();
    sample.Time = -1.2345678901234567e-300;
    sample.Depth = -1.23456789e-30F;
    for (auto* values : {&sample.bb, &sample.bbUncorr, &sample.beta, &sample.betaUncorr})
        values->fill(-1.17549449e-38);
    const std::string line = LineOf(sample, InstTypeCode::Corvane6, true);
    EXPECT_EQ(std::count(line.begin(), line.end(), ','), static_cast<std::ptrdiff_t>(kMaxDatColumns));
    EXPECT_EQ(line.substr(line.size() - 2), "\r\n");
}

}  // namespace
}  // namespace marisonde
