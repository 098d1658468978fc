// The shred job on real files: what each pass leaves in the file, how progress runs,
// which failures end the job and which go on to the deletion, and what is left behind.
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include "base/UniqueHandle.h"
#include "shred/PatternBuffers.h"
#include "shred/ShredJob.h"
#include "shred/ShredList.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lumenor {
namespace {

using testing::FileExists;
using testing::ReadFileBytes;
using testing::TempFolder;

struct Failure {
  size_t index;
  ShredFailure failure;
  bool operator==(const Failure&) const = default;
};

void PrintTo(const Failure& failure, std::ostream* out) {
  *out << "{" << failure.index << ", " << static_cast<int>(failure.failure) << "}";
}

class RecordingReports final : public ShredReports {
 public:
  void RangeSet(uint64_t totalBytes) override { range = totalBytes; }
  void ProgressMoved(uint64_t position) override {
    positions.push_back(position);
    if (afterProgress) afterProgress(position);
  }
  void PassFinished(size_t index, int pass) override {
    if (afterPass) afterPass(index, pass);
  }
  void FileShredded(size_t index, int passes) override { shredded[index] = passes; }
  void FileFailed(size_t index, ShredFailure failure, const std::wstring& path) override {
    failures.push_back({index, failure});
    failedPaths.push_back(path);
  }

  uint64_t range = 0;
  std::vector<uint64_t> positions;
  std::map<size_t, int> shredded;
  std::vector<Failure> failures;
  std::vector<std::wstring> failedPaths;
  std::function<void(size_t, int)> afterPass;
  std::function<void(uint64_t)> afterProgress;
};

// A stop request that a test makes, as the page does.
class StopSwitch {
 public:
  StopToken Token() const { return StopToken(&signal_); }
  void Stop() { signal_.Request(); }

 private:
  StopSignal signal_;
};

std::string Repeated(char byte, size_t size) { return std::string(size, byte); }

// Lists the files as the page does, so each target carries its size.
std::vector<ShredTarget> Listed(const std::vector<std::wstring>& paths) {
  ShredList list;
  for (const std::wstring& path : paths) {
    EXPECT_EQ(list.AddFile(path), AddResult::kAdded) << ::testing::PrintToString(path);
  }
  return list.Targets();
}

// A random pass writes the same 64 KiB again and again from the file's start.
bool RepeatsOneRandomBlock(const std::string& bytes) {
  for (size_t index = PatternBuffers::kSize; index < bytes.size(); ++index) {
    if (bytes[index] != bytes[index % PatternBuffers::kSize]) return false;
  }
  return bytes.find_first_not_of('\0') != std::string::npos && bytes.find_first_not_of('\x01') != std::string::npos;
}

struct MethodCase {
  ShredMethod method;
  std::vector<char> passes;  // 'R' random, '0' zero, '1' ones
};

TEST(ShredJob, EachMethodWritesItsPassesInOrderAndKeepsTheLengthUntilTheDeletion) {
  const MethodCase cases[] = {
      {ShredMethod::kQuick, {'R'}},
      {ShredMethod::kSafe, {'0', '1', 'R'}},
      {ShredMethod::kThorough, {'R', '0', '1', 'R', '0', '1', 'R'}},
  };
  for (const MethodCase& c : cases) {
    SCOPED_TRACE(PassCount(c.method));
    TempFolder folder;
    const std::wstring file = folder / L"secret.doc";
    constexpr size_t kSize = 150000;  // two whole chunks and a part
    ASSERT_TRUE(testing::WriteFileBytes(file, Repeated('S', kSize)));
    RecordingReports reports;
    std::vector<std::string> afterEachPass;
    reports.afterPass = [&](size_t index, int pass) {
      EXPECT_EQ(index, 0u);
      EXPECT_EQ(pass, static_cast<int>(afterEachPass.size()) + 1);
      afterEachPass.push_back(ReadFileBytes(file));
    };
    EXPECT_EQ(RunShredJob(Listed({file}), c.method, reports, StopToken()), ShredJobEnd::kDone);

    ASSERT_EQ(afterEachPass.size(), c.passes.size());
    std::string randomBytes;
    for (size_t pass = 0; pass < c.passes.size(); ++pass) {
      const std::string& bytes = afterEachPass[pass];
      ASSERT_EQ(bytes.size(), kSize) << "pass " << pass + 1;
      switch (c.passes[pass]) {
        case '0':
          EXPECT_EQ(bytes, Repeated('\0', kSize)) << "pass " << pass + 1;
          break;
        case '1':
          EXPECT_EQ(bytes, Repeated('\x01', kSize)) << "pass " << pass + 1;
          break;
        default:
          EXPECT_TRUE(RepeatsOneRandomBlock(bytes)) << "pass " << pass + 1;
          if (randomBytes.empty()) randomBytes = bytes;
          EXPECT_EQ(bytes, randomBytes) << "every random pass writes the job's one random buffer";
      }
    }
    EXPECT_EQ(reports.shredded, (std::map<size_t, int>{{0, PassCount(c.method)}}));
    EXPECT_TRUE(reports.failures.empty());
    EXPECT_TRUE(testing::EntriesBelow(folder.Path()).empty()) << "no file left under another name";
  }
}

TEST(ShredJob, EveryFileOfAJobGetsTheSameRandomBytes) {
  TempFolder folder;
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"a.txt", Repeated('a', 70000)));
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"b.txt", Repeated('b', 70000)));
  RecordingReports reports;
  std::vector<std::string> contents;
  reports.afterPass = [&](size_t index, int) {
    contents.push_back(ReadFileBytes(index == 0 ? folder / L"a.txt" : folder / L"b.txt"));
  };
  EXPECT_EQ(RunShredJob(Listed({folder / L"a.txt", folder / L"b.txt"}), ShredMethod::kQuick, reports, StopToken()),
            ShredJobEnd::kDone);
  ASSERT_EQ(contents.size(), 2u);
  EXPECT_TRUE(RepeatsOneRandomBlock(contents[0]));
  EXPECT_EQ(contents[0], contents[1]);
}

TEST(ShredJob, SafeShredOf100000BytesWritesTwoChunksAPassAndProgressEndsAtTheSize) {
  TempFolder folder;
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"f.bin", Repeated('x', 100000)));
  RecordingReports reports;
  EXPECT_EQ(RunShredJob(Listed({folder / L"f.bin"}), ShredMethod::kSafe, reports, StopToken()), ShredJobEnd::kDone);
  EXPECT_EQ(reports.range, 100000u);
  // Chunks of 65,536 and 34,464 bytes, three passes: 300,000 bytes counted, divided by 3.
  EXPECT_EQ(reports.positions,
            (std::vector<uint64_t>{65536 / 3, 100000 / 3, 165536 / 3, 200000 / 3, 265536 / 3, 300000 / 3}));
}

TEST(ShredJob, AFileThatCannotBeOpenedForWritingInQuickEndsTheJobAndTouchesNothing) {
  TempFolder folder;
  const std::vector<std::wstring> files = {folder / L"1.txt", folder / L"2.txt", folder / L"3.txt"};
  for (const std::wstring& file : files) ASSERT_TRUE(testing::WriteFileBytes(file, "keep"));
  const std::vector<ShredTarget> targets = Listed(files);
  ASSERT_TRUE(SetFileAttributesW(files[0].c_str(), FILE_ATTRIBUTE_READONLY));  // after it was listed
  RecordingReports reports;
  EXPECT_EQ(RunShredJob(targets, ShredMethod::kQuick, reports, StopToken()), ShredJobEnd::kEndedEarly);
  EXPECT_EQ(reports.failures,
            (std::vector<Failure>{
                {0, ShredFailure::kCannotOpen}, {1, ShredFailure::kNotReached}, {2, ShredFailure::kNotReached}}));
  EXPECT_TRUE(reports.shredded.empty());
  for (const std::wstring& file : files) EXPECT_EQ(ReadFileBytes(file), "keep");
  ASSERT_TRUE(SetFileAttributesW(files[0].c_str(), FILE_ATTRIBUTE_NORMAL));
}

// Another program holds the file open and lets nobody else write to it; it lets others
// read, and rename or delete it when `letDelete`.
class Holder {
 public:
  Holder(const std::wstring& path, bool letDelete)
      : file_(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | (letDelete ? FILE_SHARE_DELETE : 0), nullptr,
                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {}
  bool Holds() const { return static_cast<bool>(file_); }

 private:
  UniqueHandle file_;
};

TEST(ShredJob, AFailedPassInSafeEndsTheJobWithTheFileInPlace) {
  TempFolder folder;
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"a.txt", "first"));
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"b.txt", "second"));
  std::unique_ptr<Holder> holder;
  RecordingReports reports;
  reports.afterPass = [&](size_t, int pass) {
    if (pass == 1) holder = std::make_unique<Holder>(folder / L"a.txt", true);  // the second pass cannot open it
  };
  EXPECT_EQ(RunShredJob(Listed({folder / L"a.txt", folder / L"b.txt"}), ShredMethod::kSafe, reports, StopToken()),
            ShredJobEnd::kEndedEarly);
  ASSERT_TRUE(holder && holder->Holds());
  EXPECT_EQ(reports.failures, (std::vector<Failure>{{0, ShredFailure::kCannotOpen}, {1, ShredFailure::kNotReached}}));
  EXPECT_EQ(ReadFileBytes(folder / L"a.txt"), Repeated('\0', 5)) << "the zero pass stays, the file is not deleted";
  EXPECT_EQ(ReadFileBytes(folder / L"b.txt"), "second");
}

TEST(ShredJob, AFailureInThoroughsSecondTripleGoesOnToTheDeletionAndTheNextFile) {
  TempFolder folder;
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"a.txt", Repeated('a', 1000)));
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"b.txt", Repeated('b', 1000)));
  std::unique_ptr<Holder> holder;
  RecordingReports reports;
  reports.afterPass = [&](size_t index, int pass) {
    if (index == 0 && pass == 4) holder = std::make_unique<Holder>(folder / L"a.txt", true);  // pass 5 fails
  };
  EXPECT_EQ(RunShredJob(Listed({folder / L"a.txt", folder / L"b.txt"}), ShredMethod::kThorough, reports, StopToken()),
            ShredJobEnd::kDone);
  ASSERT_TRUE(holder && holder->Holds());
  holder.reset();  // the deletion completes when the last handle goes
  EXPECT_EQ(reports.shredded, (std::map<size_t, int>{{0, 4}, {1, 7}}));
  EXPECT_TRUE(reports.failures.empty());
  EXPECT_TRUE(testing::EntriesBelow(folder.Path()).empty());
}

TEST(ShredJob, AFailedFirstPassInThoroughEndsTheJob) {
  TempFolder folder;
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"a.txt", "first"));
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"b.txt", "second"));
  const std::vector<ShredTarget> targets = Listed({folder / L"a.txt", folder / L"b.txt"});
  const Holder holder(folder / L"a.txt", false);
  ASSERT_TRUE(holder.Holds());
  RecordingReports reports;
  EXPECT_EQ(RunShredJob(targets, ShredMethod::kThorough, reports, StopToken()), ShredJobEnd::kEndedEarly);
  EXPECT_EQ(reports.failures, (std::vector<Failure>{{0, ShredFailure::kCannotOpen}, {1, ShredFailure::kNotReached}}));
  EXPECT_EQ(ReadFileBytes(folder / L"a.txt"), "first");
  EXPECT_EQ(ReadFileBytes(folder / L"b.txt"), "second");
}

TEST(ShredJob, StopInTheMiddleOfAFileLeavesItListedPartlyOverwrittenAndWholeInLength) {
  TempFolder folder;
  const std::wstring file = folder / L"big.bin";
  constexpr size_t kSize = 5 * PatternBuffers::kSize;
  ASSERT_TRUE(testing::WriteFileBytes(file, Repeated('o', kSize)));
  StopSwitch stop;
  RecordingReports reports;
  reports.afterProgress = [&](uint64_t) { stop.Stop(); };  // after the first chunk
  EXPECT_EQ(RunShredJob(Listed({file}), ShredMethod::kQuick, reports, stop.Token()), ShredJobEnd::kEndedEarly);
  EXPECT_EQ(reports.failures, (std::vector<Failure>{{0, ShredFailure::kStopped}}));
  EXPECT_EQ(reports.positions.size(), 1u);
  const std::string bytes = ReadFileBytes(file);
  ASSERT_EQ(bytes.size(), kSize);
  EXPECT_NE(bytes.substr(0, PatternBuffers::kSize), Repeated('o', PatternBuffers::kSize));
  EXPECT_EQ(bytes.substr(PatternBuffers::kSize), Repeated('o', kSize - PatternBuffers::kSize));
}

TEST(ShredJob, StopDuringThoroughsFifthPassDeletesThatFileAndEndsAtTheNext) {
  TempFolder folder;
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"a.txt", Repeated('a', 100)));
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"b.txt", ""));  // an empty file has no chunk to stop at
  StopSwitch stop;
  RecordingReports reports;
  reports.afterPass = [&](size_t, int pass) {
    if (pass == 4) stop.Stop();
  };
  EXPECT_EQ(RunShredJob(Listed({folder / L"a.txt", folder / L"b.txt"}), ShredMethod::kThorough, reports, stop.Token()),
            ShredJobEnd::kEndedEarly);
  EXPECT_EQ(reports.shredded, (std::map<size_t, int>{{0, 4}}));
  EXPECT_EQ(reports.failures, (std::vector<Failure>{{1, ShredFailure::kStopped}}));
  EXPECT_FALSE(FileExists(folder / L"a.txt"));
  EXPECT_TRUE(FileExists(folder / L"b.txt"));
}

TEST(ShredJob, AnEmptyFileIsDeletedByEveryMethodAndAnEmptyListDoesNothing) {
  for (const ShredMethod method : {ShredMethod::kQuick, ShredMethod::kSafe, ShredMethod::kThorough}) {
    TempFolder folder;
    ASSERT_TRUE(testing::WriteFileBytes(folder / L"empty.txt", ""));
    RecordingReports reports;
    EXPECT_EQ(RunShredJob(Listed({folder / L"empty.txt"}), method, reports, StopToken()), ShredJobEnd::kDone);
    EXPECT_EQ(reports.shredded, (std::map<size_t, int>{{0, PassCount(method)}}));
    EXPECT_TRUE(reports.positions.empty());
    EXPECT_FALSE(FileExists(folder / L"empty.txt"));
  }
  RecordingReports reports;
  EXPECT_EQ(RunShredJob({}, ShredMethod::kThorough, reports, StopToken()), ShredJobEnd::kDone);
  EXPECT_EQ(reports.range, 0u);
  EXPECT_TRUE(reports.shredded.empty());
  EXPECT_TRUE(reports.failures.empty());
}

TEST(ShredJob, AFileThatCannotBeDeletedIsOverwrittenAndReported) {
  TempFolder folder;
  const std::wstring file = folder / L"held.txt";
  ASSERT_TRUE(testing::WriteFileBytes(file, Repeated('h', 5000)));
  const std::vector<ShredTarget> targets = Listed({file});
  // Held open by another program that lets others write, but not rename or delete.
  const UniqueHandle holder(CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  ASSERT_TRUE(holder);
  RecordingReports reports;
  EXPECT_EQ(RunShredJob(targets, ShredMethod::kSafe, reports, StopToken()), ShredJobEnd::kDone);
  EXPECT_EQ(reports.failures, (std::vector<Failure>{{0, ShredFailure::kDeleteFailed}}));
  ASSERT_EQ(reports.failedPaths.size(), 1u);
  EXPECT_TRUE(RepeatsOneRandomBlock(ReadFileBytes(reports.failedPaths[0])));
}

TEST(ShredJob, AFileWithAnotherHardLinkIsRefusedAndTheJobGoesOn) {
  TempFolder folder;
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"a.txt", "first"));
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"b.txt", "second"));
  const std::vector<ShredTarget> targets = Listed({folder / L"a.txt", folder / L"b.txt"});
  ASSERT_TRUE(CreateHardLinkW((folder / L"other-name.txt").c_str(), (folder / L"a.txt").c_str(), nullptr));
  RecordingReports reports;
  EXPECT_EQ(RunShredJob(targets, ShredMethod::kQuick, reports, StopToken()), ShredJobEnd::kDone);
  EXPECT_EQ(reports.failures, (std::vector<Failure>{{0, ShredFailure::kHardLinks}}));
  EXPECT_EQ(reports.shredded, (std::map<size_t, int>{{1, 1}}));
  EXPECT_EQ(ReadFileBytes(folder / L"other-name.txt"), "first");
}

}  // namespace
}  // namespace lumenor
