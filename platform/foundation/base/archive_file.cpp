// SPDX-License-Identifier: Apache-2.0
#include "rz/archive_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "rz/archive.h"
#include "rz/text.h"

namespace {

constexpr std::array<unsigned char, 4> kMagic{'O', 'C', 'A', 'R'};
constexpr rzULong kFormatVersion = 1;
constexpr std::size_t kHeaderSize = 20;

struct Header {
  std::array<unsigned char, 4> magic = kMagic;
  rzULong formatVersion = kFormatVersion;
  std::uint64_t length = 0;
  rzULong checksum = 0;
};

void moveHeader(rzArchive& archive, Header& header) {
  archive.moveBytes(header.magic.data(), header.magic.size());
  archive || header.formatVersion || header.length || header.checksum;
}

// CRC-32 of ISO/IEC 13239 with the reflected polynomial 0xEDB88320, by bytes (D. V. Sarwate,
// "Computation of cyclic redundancy checks via table look-up", Comm. ACM 31(8), 1988).
constexpr std::array<rzULong, 256> makeCrcTable() {
  std::array<rzULong, 256> table{};
  for (rzULong i = 0; i < 256; ++i) {
    rzULong remainder = i;
    for (int bit = 0; bit < 8; ++bit)
      remainder = (remainder >> 1) ^ (remainder & 1 ? 0xEDB88320U : 0U);
    table[i] = remainder;
  }
  return table;
}

rzULong crc32(std::span<const unsigned char> bytes) {
  static constexpr std::array<rzULong, 256> kTable = makeCrcTable();
  rzULong crc = 0xFFFFFFFF;
  for (const unsigned char byte : bytes) crc = kTable[(crc ^ byte) & 0xFF] ^ (crc >> 8);
  return ~crc;
}

[[noreturn]] void throwFileError(const std::string& what, const std::string& path) {
  const std::string reason = std::generic_category().message(errno);
  throw rzFileError(what + " " + path + ": " + reason);
}

// An open file, closed at the end of its scope.
class File {
 public:
  explicit File(int descriptor) : descriptor_(descriptor) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (isOpen()) ::close(descriptor_);
  }

  bool isOpen() const { return descriptor_ >= 0; }
  int descriptor() const { return descriptor_; }

  bool write(std::span<const unsigned char> bytes) const {
    while (!bytes.empty()) {
      const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return false;
      bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
  }

  // Reads until the buffer is full or the file ends; answers the number of bytes, or -1.
  ssize_t read(std::span<unsigned char> bytes) const {
    std::size_t total = 0;
    while (total < bytes.size()) {
      const ssize_t got = ::read(descriptor_, bytes.data() + total, bytes.size() - total);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) return -1;
      if (got == 0) break;
      total += static_cast<std::size_t>(got);
    }
    return static_cast<ssize_t>(total);
  }

  bool flushAndClose() {
    const bool flushed = ::fsync(descriptor_) == 0;
    return ::close(std::exchange(descriptor_, -1)) == 0 && flushed;
  }

 private:
  int descriptor_;
};

// A name in the folder of `path` that no other writer uses. What an earlier process of this number
// left behind is passed over.
std::string temporaryName(const std::string& path) {
  static std::atomic<rzULong> numWritten = 0;
  std::string name;
  do {
    name =
        path + ".tmp" + rfStr(static_cast<rzLong>(::getpid())) + "-" + rfStr(rzULong{numWritten++});
  } while (::access(name.c_str(), F_OK) == 0);
  return name;
}

// The new name in the folder reaches the disk too; where folders cannot be flushed, it just takes
// its time.
void flushFolderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  const File file(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.isOpen()) ::fsync(file.descriptor());
}

void writeWhole(const std::string& path, std::span<const unsigned char> header,
                std::span<const unsigned char> payload) {
  File file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file.isOpen()) throwFileError("Cannot create", path);
  if (file.write(header) && file.write(payload) && file.flushAndClose()) return;
  const int reason = errno;
  ::unlink(path.c_str());
  errno = reason;
  throwFileError("Cannot write", path);
}

// The size of a regular file.
std::uint64_t sizeOf(const File& file, const std::string& path) {
  struct stat status {};
  if (::fstat(file.descriptor(), &status) != 0) throwFileError("Cannot read", path);
  if (!S_ISREG(status.st_mode)) throw rzFileError("Not a regular file: " + path);
  return static_cast<std::uint64_t>(status.st_size);
}

Header readHeader(const File& file, const std::string& path) {
  std::array<unsigned char, kHeaderSize> bytes{};
  const ssize_t got = file.read(bytes);
  if (got < 0) throwFileError("Cannot read", path);
  if (!std::equal(kMagic.begin(), kMagic.end(), bytes.begin()))
    throw rzArchive::BadFormat("Not an archive file: " + path);
  if (got < static_cast<ssize_t>(kHeaderSize))
    throw rzArchive::BadFormat("Archive file ends inside its header: " + path);
  Header header;
  auto archive = rzArchive::loadingFrom(bytes);
  moveHeader(archive, header);
  return header;
}

}  // namespace

void rfWriteArchiveFile(const std::string& path, std::span<const unsigned char> payload) {
  Header header;
  header.length = payload.size();
  header.checksum = crc32(payload);
  std::vector<unsigned char> headerBytes;
  auto archive = rzArchive::storingTo(headerBytes);
  moveHeader(archive, header);

  const std::string temporary = temporaryName(path);
  writeWhole(temporary, headerBytes, payload);
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    const int reason = errno;
    ::unlink(temporary.c_str());
    errno = reason;
    throwFileError("Cannot replace", path);
  }
  flushFolderOf(path);
}

std::vector<unsigned char> rfReadArchiveFile(const std::string& path) {
  const File file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) throwFileError("Cannot open", path);
  const std::uint64_t size = sizeOf(file, path);
  const Header header = readHeader(file, path);
  if (header.formatVersion != kFormatVersion)
    throw rzArchive::UnknownVersion("format of archive file " + path,
                                    static_cast<rzLong>(header.formatVersion));
  if (size < kHeaderSize || header.length != size - kHeaderSize)
    throw rzArchive::BadFormat("Archive file has not the length it tells: " + path);
  std::vector<unsigned char> payload(header.length);
  const ssize_t got = file.read(payload);
  if (got < 0) throwFileError("Cannot read", path);
  if (static_cast<std::uint64_t>(got) != header.length)
    throw rzArchive::BadFormat("Archive file has not the length it tells: " + path);
  if (crc32(payload) != header.checksum)
    throw rzArchive::BadFormat("Archive file is damaged, its checksum is wrong: " + path);
  return payload;
}
