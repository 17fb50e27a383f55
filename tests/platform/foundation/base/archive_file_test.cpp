// SPDX-License-Identifier: Apache-2.0
#include "rz/archive_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "rz/archive.h"

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<unsigned char>;
using testing::HasSubstr;

class ArchiveFile : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "archive_file_XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
    path_ = (folder_ / "job.oca").string();
  }
  void TearDown() override { fs::remove_all(folder_); }

  Bytes content() const {
    std::ifstream in(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  void content(const Bytes& bytes) const {
    std::ofstream out(path_, std::ios::binary);
    for (const unsigned char byte : bytes) out.put(static_cast<char>(byte));
  }
  std::size_t numFiles() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }

  fs::path folder_;
  std::string path_;
};

std::string messageOf(const std::string& path) {
  try {
    rfReadArchiveFile(path);
  } catch (const rzException& error) {
    return error.what();
  }
  return "";
}

}  // namespace

TEST_F(ArchiveFile, FormIsMagicVersionLengthChecksumPayloadAndNoTemporaryStays) {
  const Bytes large(100000, 0xA5);
  rfWriteArchiveFile(path_, large);
  EXPECT_EQ(rfReadArchiveFile(path_), large);
  // The check value of this CRC for "123456789" is 0xCBF43926.
  rfWriteArchiveFile(path_, Bytes{'1', '2', '3', '4', '5', '6', '7', '8', '9'});
  EXPECT_THAT(content(),
              testing::ElementsAre('O', 'C', 'A', 'R', 1, 0, 0, 0, 9, 0, 0, 0, 0, 0, 0, 0, 0x26,
                                   0x39, 0xF4, 0xCB, '1', '2', '3', '4', '5', '6', '7', '8', '9'));
  EXPECT_EQ(numFiles(), 1u);
}

TEST_F(ArchiveFile, DamageTruncationAndALongerFileAreTold) {
  rfWriteArchiveFile(path_, Bytes{1, 2, 3, 4});
  Bytes whole = content();
  struct Case {
    std::size_t byte;
    const char* told;
  };
  const Case kCases[] = {
      {0, "Not an archive file"}, {4, "Unknown version"}, {8, "length"}, {23, "checksum"}};
  for (const Case& c : kCases) {
    Bytes damaged = whole;
    damaged[c.byte] ^= 0x80;
    content(damaged);
    EXPECT_THAT(messageOf(path_), HasSubstr(c.told)) << c.byte;
    EXPECT_THAT(messageOf(path_), HasSubstr("job.oca")) << c.byte;
  }
  for (std::size_t size = 0; size < whole.size(); ++size) {
    content(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    EXPECT_THROW(rfReadArchiveFile(path_), rzArchive::BadFormat) << size;
  }
  whole.push_back(0);
  content(whole);
  EXPECT_THROW(rfReadArchiveFile(path_), rzArchive::BadFormat);
}

TEST_F(ArchiveFile, FailuresOfTheDiskNamePathAndReasonAndLeaveNothingBehind) {
  EXPECT_THROW(rfReadArchiveFile(path_), rzFileError);
  EXPECT_THAT(messageOf(path_), testing::AllOf(HasSubstr("job.oca"), HasSubstr("No such file")));
  EXPECT_THROW(rfReadArchiveFile(folder_.string()), rzFileError);
  EXPECT_THROW(rfWriteArchiveFile((folder_ / "none" / "job.oca").string(), Bytes{1}), rzFileError);
  fs::create_directory(path_);
  fs::create_directory(fs::path(path_) / "full");
  EXPECT_THROW(rfWriteArchiveFile(path_, Bytes{1}), rzFileError);
  EXPECT_EQ(numFiles(), 1u);
}
