// SPDX-License-Identifier: Apache-2.0
#include "rz/archive.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <istream>
#include <iterator>
#include <limits>
#include <ostream>

#include "platform/foundation/base/archive_state.h"
#include "rz/archive_file.h"

namespace {

std::vector<unsigned char> restOf(std::istream& stream) {
  std::vector<unsigned char> bytes;
  std::array<char, 4096> block;
  do {
    stream.read(block.data(), static_cast<std::streamsize>(block.size()));
    bytes.insert(bytes.end(), block.begin(), block.begin() + stream.gcount());
  } while (stream);
  if (!stream.eof() || stream.bad()) throw rzFileError("Stream cannot be read");
  return bytes;
}

// Moves the low bytes of `bits`, the lowest first.
template <class Bits>
void moveBits(rzArchive& archive, Bits& bits) {
  std::array<unsigned char, sizeof(Bits)> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<unsigned char>(std::uint64_t{bits} >> (8 * i));
  archive.moveBytes(bytes.data(), bytes.size());
  if (archive.isStoring()) return;
  std::uint64_t moved = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) moved |= std::uint64_t{bytes[i]} << (8 * i);
  bits = static_cast<Bits>(moved);
}

template <class Bits, class Value>
rzArchive& moveAs(rzArchive& archive, Value& value) {
  static_assert(sizeof(Bits) == sizeof(Value));
  auto bits = std::bit_cast<Bits>(value);
  moveBits(archive, bits);
  if (archive.isLoading()) value = std::bit_cast<Value>(bits);
  return archive;
}

static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

}  // namespace

rzArchive::rzArchive(bool loading, std::vector<unsigned char>* sink, std::ostream* stream)
    : loading_(loading), sink_(sink), stream_(stream), state_(std::make_unique<State>()) {}

rzArchive::~rzArchive() = default;

rzArchive rzArchive::storingTo(std::vector<unsigned char>& bytes) {
  return rzArchive(false, &bytes, nullptr);
}

rzArchive rzArchive::storingTo(std::ostream& stream) { return rzArchive(false, nullptr, &stream); }

rzArchive::rzArchive(std::span<const unsigned char> source) : rzArchive(true, nullptr, nullptr) {
  source_ = source;
}

rzArchive::rzArchive(std::vector<unsigned char>&& source) : rzArchive(true, nullptr, nullptr) {
  owned_ = std::move(source);
  source_ = owned_;
}

rzArchive rzArchive::loadingFrom(std::span<const unsigned char> bytes) { return rzArchive(bytes); }

rzArchive rzArchive::loadingFrom(std::istream& stream) { return rzArchive(restOf(stream)); }

void rzArchive::moveBytes(void* bytes, std::size_t size) {
  if (loading_) {
    if (size > remaining()) throw BadFormat("Archive ends too early");
    if (size > 0) std::memcpy(bytes, source_.data() + position_, size);
    position_ += size;
  } else if (sink_) {
    const auto* first = static_cast<const unsigned char*>(bytes);
    sink_->insert(sink_->end(), first, first + size);
  } else if (!stream_->write(static_cast<const char*>(bytes), static_cast<std::streamsize>(size))) {
    throw rzFileError("Stream cannot be written");
  }
}

rzULong rzArchive::checkedCount(std::size_t stored, std::size_t smallestElementSize) {
  rstd_assert_(smallestElementSize > 0, __LINE__);
  constexpr std::size_t kMostElements = std::numeric_limits<rzLong>::max();
  if (!loading_ && stored > kMostElements) throw BadFormat("Too many elements for an archive");
  auto count = static_cast<rzULong>(stored);
  *this || count;
  if (loading_ && (count > kMostElements || count > remaining() / smallestElementSize))
    throw BadFormat("Count exceeds what is left of the archive");
  return count;
}

bool rzArchive::storeShared_(std::shared_ptr<const void> shared) {
  rzULong id = 0;
  if (!shared) {
    *this || id;
    return false;
  }
  const auto next = static_cast<rzULong>(state_->storedShared.size() + 1);
  const auto [entry, isNew] = state_->storedSharedIds.try_emplace(shared.get(), next);
  id = entry->second;
  if (isNew) state_->storedShared.push_back(std::move(shared));
  *this || id;
  return isNew;
}

bool rzArchive::loadShared_(std::shared_ptr<const void>& shared, std::type_index type) {
  rzULong id = 0;
  *this || id;
  const std::vector<State::LoadedShared>& known = state_->loadedShared;
  if (id == known.size() + 1) return true;
  if (id > known.size()) throw BadFormat("Unknown id of shared data");
  if (id == 0) return false;
  if (known[id - 1].type != type) throw BadFormat("Shared data of another kind");
  shared = known[id - 1].shared;
  return false;
}

void rzArchive::addShared_(std::shared_ptr<const void> shared, std::type_index type) {
  state_->loadedShared.push_back({std::move(shared), type});
}

rzArchive& operator||(rzArchive& archive, bool& value) {
  unsigned char byte = value ? 1 : 0;
  archive || byte;
  if (byte > 1) throw rzArchive::BadFormat("Neither true nor false");
  if (archive.isLoading()) value = byte == 1;
  return archive;
}

rzArchive& operator||(rzArchive& archive, char& value) {
  return moveAs<std::uint8_t>(archive, value);
}

rzArchive& operator||(rzArchive& archive, signed char& value) {
  return moveAs<std::uint8_t>(archive, value);
}

rzArchive& operator||(rzArchive& archive, unsigned char& value) {
  archive.moveBytes(&value, 1);
  return archive;
}

rzArchive& operator||(rzArchive& archive, std::int16_t& value) {
  return moveAs<std::uint16_t>(archive, value);
}

rzArchive& operator||(rzArchive& archive, rzLong& value) {
  return moveAs<std::uint32_t>(archive, value);
}

rzArchive& operator||(rzArchive& archive, rzULong& value) {
  moveBits(archive, value);
  return archive;
}

rzArchive& operator||(rzArchive& archive, std::uint64_t& value) {
  moveBits(archive, value);
  return archive;
}

rzArchive& operator||(rzArchive& archive, float& value) {
  return moveAs<std::uint32_t>(archive, value);
}

rzArchive& operator||(rzArchive& archive, double& value) {
  return moveAs<std::uint64_t>(archive, value);
}

rzArchive& operator||(rzArchive& archive, std::string& value) {
  const rzULong count = archive.checkedCount(value.size(), 1);
  if (archive.isLoading()) value.resize(count);
  archive.moveBytes(value.data(), count);
  return archive;
}

rzArchive& operator||(rzArchive& archive, rzString32& value) {
  const rzULong count = archive.checkedCount(value.size(), 4);
  if (archive.isLoading()) value.resize(count);
  for (char32_t& character : value) moveAs<std::uint32_t>(archive, character);
  return archive;
}

void rf_RequireStoring(const rzArchive& archive) {
  if (!archive.isStoring()) throw rzArchive::BadFormat("The archive is for loading");
}

void rf_RequireLoading(const rzArchive& archive) {
  if (!archive.isLoading()) throw rzArchive::BadFormat("The archive is for storing");
}
