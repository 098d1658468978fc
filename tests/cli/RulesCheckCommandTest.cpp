// lumenor-cli rules check end to end: a good rule file, one with problems, plain and as
// JSON, and the files it cannot read as rules.
#include "base/TextEncoding.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lumenor {
namespace {

using testing::ProgramResult;

constexpr char kGoodRules[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<rules version="1">
  <category name="Applications Today">
    <application name="7-Zip">
      <detect key="HKCU\Software\7-Zip"/>
      <item name="History" default="true">
        <registry key="HKCU\Software\7-Zip\FM" value="FolderHistory"/>
      </item>
      <item name="Temporary files">
        <files folder="%Temp%" masks="7z*.tmp"/>
      </item>
    </application>
  </category>
</rules>
)";

// The second item's folder and the third item's element are at fault.
constexpr char kRulesWithTwoProblems[] = R"(<rules version="1">
  <category name="Tests">
    <application name="Tool">
      <item name="Logs">
        <files folder="%Temp%\Tool" masks="*.log"/>
        <files folder="Tool\logs" masks="*.log"/>
      </item>
      <item name="Cache">
        <files folder="%LocalAppData%\Tool\Cache" masks="*"/>
        <exclud folder="%LocalAppData%\Tool\Cache\keep"/>
      </item>
    </application>
  </category>
</rules>
)";

class RulesCheck : public ::testing::Test {
 protected:
  std::wstring Write(std::wstring_view name, std::string_view bytes) {
    const std::wstring path = folder_ / name;
    EXPECT_TRUE(testing::WriteFileBytes(path, bytes));
    return path;
  }

  static ProgramResult Check(const std::wstring& arguments) {
    ProgramResult result = testing::RunProgram(testing::CliProgram(), L"rules check " + arguments);
    EXPECT_TRUE(result.finished);
    return result;
  }

  testing::TempFolder folder_;
};

TEST_F(RulesCheck, AGoodFileLoadsWithoutProblemsAndTheSummaryCountsIt) {
  const std::wstring file = Write(L"good.xml", kGoodRules);
  const ProgramResult plain = Check(testing::QuotedArgument(file));
  EXPECT_EQ(plain.exitCode, 0u) << plain.err;
  EXPECT_EQ(plain.out, "1 applications, 2 items, 0 problems\n");

  const ProgramResult json = Check(testing::QuotedArgument(file) + L" --json");
  EXPECT_EQ(json.exitCode, 0u) << json.err;
  EXPECT_EQ(json.out, "{\"type\":\"summary\",\"applications\":1,\"items\":2,\"problems\":0}\n");
}

TEST_F(RulesCheck, EachProblemIsPrintedWithItsLineAndColumnAndTheExitStatusIsOne) {
  const std::wstring file = Write(L"two problems.xml", kRulesWithTwoProblems);
  const std::string shown = ToUtf8(file);
  const ProgramResult plain = Check(testing::QuotedArgument(file));
  EXPECT_EQ(plain.exitCode, 1u) << plain.err;
  EXPECT_EQ(testing::SplitLines(plain.out),
            (std::vector<std::string>{
                shown + ":6:9: <files> folder: \"Tool\\logs\" is relative: it must start with a folder variable such "
                        "as %LocalAppData%; left out",
                shown + ":10:9: unknown element <exclud> in <item>; item \"Cache\" left out",
                "1 applications, 1 items, 2 problems",
            }));

  const ProgramResult json = Check(L"--json " + testing::QuotedArgument(file));
  EXPECT_EQ(json.exitCode, 1u) << json.err;
  const std::string fileField = "{\"type\":\"problem\",\"file\":\"" + testing::JsonEscaped(file) + "\",";
  EXPECT_EQ(testing::SplitLines(json.out),
            (std::vector<std::string>{
                fileField + "\"line\":6,\"column\":9,\"message\":\"<files> folder: \\\"Tool\\\\logs\\\" is relative: "
                            "it must start with a folder variable such as %LocalAppData%; left out\"}",
                fileField + "\"line\":10,\"column\":9,\"message\":\"unknown element <exclud> in <item>; item "
                            "\\\"Cache\\\" left out\"}",
                "{\"type\":\"summary\",\"applications\":1,\"items\":1,\"problems\":2}",
            }));
}

TEST_F(RulesCheck, AFileThatCannotBeReadAsRulesEndsWithStatusTwo) {
  const std::wstring missing = folder_ / L"missing.xml";
  const ProgramResult absent = Check(testing::QuotedArgument(missing));
  EXPECT_EQ(absent.exitCode, 2u);
  EXPECT_EQ(absent.out, "");
  EXPECT_EQ(absent.err, "lumenor-cli: " + ToUtf8(missing) + ": no such file\n");

  const std::wstring text = Write(L"notes.txt", "shopping: milk, bread\r\n");
  const ProgramResult notRules = Check(testing::QuotedArgument(text) + L" --json");
  EXPECT_EQ(notRules.exitCode, 2u);
  EXPECT_EQ(notRules.out,
            "{\"type\":\"error\",\"file\":\"" + testing::JsonEscaped(text) + "\",\"message\":\"not a rule file\"}\n");
  EXPECT_EQ(notRules.err, "lumenor-cli: " + ToUtf8(text) + ": not a rule file\n");

  std::wstring folder = folder_.Path();
  folder.pop_back();
  EXPECT_EQ(Check(testing::QuotedArgument(folder)).err, "lumenor-cli: " + ToUtf8(folder) + ": a folder, not a file\n");

  // Refused by its size before a byte of it is read.
  const std::wstring huge = Write(L"huge.xml", "<rules version=\"1\"/>" + std::string(64 * 1024 * 1024, ' '));
  const ProgramResult tooBig = Check(testing::QuotedArgument(huge));
  EXPECT_EQ(tooBig.exitCode, 2u);
  EXPECT_EQ(tooBig.err, "lumenor-cli: " + ToUtf8(huge) + ": larger than 64 MiB\n");
}

TEST_F(RulesCheck, ACommunityFileIsReadAsOneWithItsFaultsAtTheirLinesAndWhatItHolds) {
  const std::wstring ini = Write(L"winapp2.ini",
                                 "; Version: 260101\r\n"
                                 "[Tool *]\r\n"
                                 "LangSecRef=3021\r\n"
                                 "FileKey1=%Temp%\\Tool|*.tmp\r\n"
                                 "FileKey2=%Package%\\Tool|*.log\r\n"
                                 "RegKey1=HKCU\\Software\\Tool\r\n"
                                 "ExcludeKey1=FILE|%Temp%\\Tool\\|keep.tmp\r\n"
                                 "[Never Installed *]\r\n"
                                 "LangSecRef=3021\r\n"
                                 "DetectFile=%ProgramFiles%\\Never Installed\r\n"
                                 "FileKey1=%ProgramFiles%\\Never Installed|*.log\r\n");
  const ProgramResult json = Check(testing::QuotedArgument(ini) + L" --json");
  EXPECT_EQ(json.exitCode, 1u) << json.out << json.err;
  const std::vector<std::string> lines = testing::SplitLines(json.out);
  ASSERT_EQ(lines.size(), 2u) << json.out;
  EXPECT_NE(lines[0].find("\"line\":5,"), std::string::npos) << lines[0];
  EXPECT_NE(lines[0].find("%Package%"), std::string::npos) << lines[0];
  EXPECT_EQ(lines[1],
            "{\"type\":\"summary\",\"entries\":2,\"fileKeys\":3,\"regKeys\":1,\"excludeKeys\":1,"
            "\"detected\":1,\"problems\":1}")
      << "the tool without a detect applies everywhere; the other is not installed";
}

TEST_F(RulesCheck, AMissingFileOrSubCommandIsAUsageError) {
  for (const std::wstring& arguments :
       {std::wstring(L"rules"), std::wstring(L"rules check"), std::wstring(L"rules check a.xml b.xml"),
        std::wstring(L"rules verify a.xml")}) {
    const ProgramResult result = testing::RunProgram(testing::CliProgram(), arguments);
    EXPECT_EQ(result.exitCode, 2u) << ToUtf8(arguments);
    EXPECT_NE(result.err.find("usage: lumenor-cli"), std::string::npos) << ToUtf8(arguments);
  }
}

}  // namespace
}  // namespace lumenor
