#include <gtest/gtest.h>

#include "app/CommandLine.h"

namespace marisonde {
namespace {

using Mode = CommandLine::Mode;

TEST(CommandLineTest, WithoutArgumentsAWindowOpens) {
    EXPECT_EQ(ParseCommandLine({}).mode, Mode::Window);
    EXPECT_EQ(ParseCommandLine({""}).mode, Mode::Window);
}

TEST(CommandLineTest, APortNeedsItsModel) {
    const CommandLine line = ParseCommandLine({"--port", "3", "--baud=9600", "--model", "CORVANE-6"});
    EXPECT_EQ(line.mode, Mode::Direct);
    EXPECT_EQ(line.port, 3);
    EXPECT_EQ(line.baud, 9600);
    EXPECT_EQ(line.model, InstTypeCode::Corvane6);
    EXPECT_EQ(ParseCommandLine({"--port", "3"}).mode, Mode::Bad);
    EXPECT_EQ(ParseCommandLine({"--port", "32", "--model", "delph-2"}).message,
              "The port must be a number from 1 to 31.");
    EXPECT_EQ(ParseCommandLine({"--model", "delph-2"}).message, "--model goes with --port.");
    EXPECT_EQ(ParseCommandLine({"--baud", "1200"}).mode, Mode::Bad);
    EXPECT_EQ(ParseCommandLine({"--port"}).message, "--port needs a value: N.");
    EXPECT_EQ(ParseCommandLine({"--nothing"}).message, "Unknown option '--nothing'.");
}

TEST(CommandLineTest, FilesToOpenAreNamedOneByOneOrTogether) {
    const CommandLine line =
        ParseCommandLine({"--open", "a b.raw", "c.cal", "--open=two.dat", "--open", "three.dat"});
    EXPECT_EQ(line.mode, Mode::Window);
    EXPECT_EQ(line.openFiles, (std::vector<std::string>{"a b.raw", "c.cal", "two.dat", "three.dat"}));
    EXPECT_TRUE(line.files.empty());
    // Another option ends the names.
    EXPECT_EQ(ParseCommandLine({"--open", "a.raw", "--cal=b.cal", "c.raw"}).message,
              "--open does not go with 'c.raw'.");
}

TEST(CommandLineTest, WhatWouldBeForgottenIsRefused) {
    struct Case {
        std::vector<std::string> arguments;
        const char* message;
    };
    const Case cases[] = {
        {{"--cal", "b.cal", "a.raw"},
         "--cal does not go with 'a.raw'; write \"DATAFILE;CALFILE\", or convert --cal FILE DATAFILE."},
        {{"--demo", "delph-2", "a.raw"}, "--demo does not go with 'a.raw'."},
        {{"a.raw;b.cal", "--demo", "delph-2"}, "--demo does not go with 'a.raw;b.cal'."},
        {{"--demo", "delph-2", "--open", "a.raw"}, "--demo does not go with --open."},
        {{"--demo", "delph-2", "--cal", "b.cal"}, "--cal does not go with --demo."},
        {{"--port", "3", "--model", "delph-2", "--open", "a.raw"}, "--port does not go with --open."},
        {{"--port", "3", "--model", "delph-2", "--demo", "delph-2"}, "--port does not go with --demo."},
        {{"--baud", "9600"}, "--baud goes with --port."},
        {{"--baud", "9600", "a.raw"}, "--baud goes with --port."},
        {{"--seconds", "5"}, "--seconds goes with --demo."},
        {{"convert", "--housekeeping", "a.raw"}, "--housekeeping goes with --to dec."},
    };
    for (const Case& row : cases) {
        const CommandLine line = ParseCommandLine(row.arguments);
        EXPECT_EQ(line.mode, Mode::Bad) << row.message;
        EXPECT_EQ(line.message, row.message);
    }
    EXPECT_EQ(ParseCommandLine({"--cal", "b.cal"}).mode, Mode::Window);
    EXPECT_EQ(ParseCommandLine({"--open", "a.raw", "--cal", "b.cal"}).mode, Mode::Window);
    EXPECT_EQ(ParseCommandLine({"--port", "3", "--model", "delph-2", "--open"}).mode, Mode::Direct)
        << "nothing is opened";
}

TEST(CommandLineTest, ADesktopThatNamesNoFileStartsTheProgram) {
    const CommandLine line = ParseCommandLine({"--open"});
    EXPECT_EQ(line.mode, Mode::Window);
    EXPECT_TRUE(line.openFiles.empty());
}

TEST(CommandLineTest, DemonstrationsOfUpToSixModels) {
    const CommandLine line = ParseCommandLine({"--demo", "delph-4, N-Tidal", "--seconds", "5"});
    EXPECT_EQ(line.mode, Mode::Demo);
    EXPECT_EQ(line.demoModels, (std::vector<InstTypeCode>{InstTypeCode::Delph4, InstTypeCode::NTidal}));
    EXPECT_EQ(line.runSeconds, 5);
    EXPECT_EQ(ParseCommandLine({"--demo", "delph-4,delph-4,delph-4,delph-4,delph-4,delph-4,delph-4"}).message,
              "Cannot open more than 6 windows.");
    EXPECT_EQ(ParseCommandLine({"--demo", "unknown"}).mode, Mode::Bad);
}

TEST(CommandLineTest, WhatDoesNotBeginWithADashIsThePairOfFiles) {
    EXPECT_EQ(ParseCommandLine({"cast.raw;instrument.cal"}).mode, Mode::Convert);
    EXPECT_EQ(ParseCommandLine({"cast.raw;instrument.cal"}).files, "cast.raw;instrument.cal");
    EXPECT_EQ(ParseCommandLine({"my", "cast.raw;my", "own.cal"}).files, "my cast.raw;my own.cal");
}

TEST(CommandLineTest, PairsAreTrimmedAndFreedOfQuotes) {
    struct Case {
        const char* text;
        const char* data;
        const char* calibration;
    };
    const Case cases[] = {
        {"a.raw;b.cal", "a.raw", "b.cal"},
        {" a.raw ; b.cal ", "a.raw", "b.cal"},
        {"\"a b.raw\";\"c d.cal\"", "a b.raw", "c d.cal"},
        {"\"a b.raw; c d.cal\"", "a b.raw", "c d.cal"},
        {"a.raw", "a.raw", ""},
        {"\"a.raw\"", "a.raw", ""},
        {"\" a.raw ; b.cal \"", "a.raw", "b.cal"},
        {"a.raw;", "a.raw", ""},
        {";b.cal", "", "b.cal"},
        {"a;b;c", "a", "b;c"},
        {"\"", "", ""},
        {"", "", ""},
    };
    for (const Case& row : cases) {
        const FilePair pair = SplitFilePair(row.text);
        EXPECT_EQ(pair.data, row.data) << row.text;
        EXPECT_EQ(pair.calibration, row.calibration) << row.text;
    }
}

TEST(CommandLineTest, ConvertWithItsOptions) {
    const CommandLine line =
        ParseCommandLine({"convert", "--cal", "x.cal", "a.raw", "--to=DEC", "--housekeeping", "--out",
                          "there", "--overwrite", "--", "-b.raw"});
    EXPECT_EQ(line.mode, Mode::ConvertFiles);
    EXPECT_EQ(line.calFile, "x.cal");
    EXPECT_EQ(line.convert.files, (std::vector<std::string>{"a.raw", "-b.raw"}));
    EXPECT_TRUE(line.convert.decimal);
    EXPECT_TRUE(line.convert.housekeeping);
    EXPECT_TRUE(line.convert.overwrite);
    EXPECT_EQ(line.convert.folder, "there");
    const CommandLine plain = ParseCommandLine({"convert", "--to", "dat", "a.raw"});
    EXPECT_FALSE(plain.convert.decimal || plain.convert.housekeeping || plain.convert.overwrite);
}

TEST(CommandLineTest, WhatConvertDoesNotUnderstand) {
    EXPECT_EQ(ParseCommandLine({"convert"}).message, "convert needs the names of files.");
    EXPECT_EQ(ParseCommandLine({"convert", "--to", "csv", "a"}).message, "--to needs a value: dat|dec.");
    EXPECT_EQ(ParseCommandLine({"convert", "a", "--cal"}).message, "--cal needs a value: FILE.");
    EXPECT_EQ(ParseCommandLine({"convert", "--overwrite=no", "a"}).message, "--overwrite takes no value.");
    EXPECT_EQ(ParseCommandLine({"convert", "--port", "3"}).message, "Unknown option '--port' of convert.");
    for (const auto& arguments : {std::vector<std::string>{"convert"}, {"convert", "--x"}})
        EXPECT_EQ(ParseCommandLine(arguments).mode, Mode::Bad);
}

TEST(CommandLineTest, HelpNamesEveryOption) {
    EXPECT_EQ(ParseCommandLine({"--help"}).mode, Mode::Help);
    EXPECT_EQ(ParseCommandLine({"convert", "-h"}).mode, Mode::Help);
    EXPECT_EQ(ParseCommandLine({"--version"}).mode, Mode::Version);
    const std::string help = HelpText();
    for (const char* option : {"--port", "--baud", "--model", "--cal", "--demo", "--seconds", "--help",
                               "--version", "convert", "--to", "--housekeeping", "--out", "--overwrite"})
        EXPECT_NE(help.find(option), std::string::npos) << option;
}

}  // namespace
}  // namespace marisonde
