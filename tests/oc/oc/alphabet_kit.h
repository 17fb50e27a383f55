// SPDX-License-Identifier: Apache-2.0
//
// Characters, alphabets and archives for the tests of the alphabet model.
#pragma once

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "oc/alphabet.h"
#include "rz/archive.h"
#include "rz/pel_buffer.h"
#include "rz/pel_functions.h"

using Image = rzPelBuffer_const<unsigned char>;
using Model = rzPtrHandle_const<rzOCModel>;
using Models = std::vector<Model>;
using AlphabetHandle = rzPtrHandle_const<rzOCAlphabet>;
using Bytes = std::vector<unsigned char>;

inline const rzPelRect kCharWindow(0, 0, 8, 10);

inline Image greyImage(const rzPelRect& window = kCharWindow, unsigned char value = 100) {
  rzPelBuffer<unsigned char> image(window, 32);
  rfPelSet(image, value);
  return image;
}

inline rzXform<2> shift(double x, double y) { return rzXform<2>(rzMatrix<2>(), rzVector<2>(x, y)); }

inline Model normalChar(rzLong key, const std::string& name = "") {
  return new rzOCModel(key, greyImage(), kCharWindow, rzOCModel::eNormal, name);
}

inline Model blankChar(rzLong key, const std::string& name = "") {
  return new rzOCModel(key, Image(), kCharWindow, rzOCModel::eBlank, name);
}

// What an action raises, as "class: message"; "nothing" when it succeeds.
template <class Action>
std::string failureOf(Action action) {
  try {
    action();
  } catch (const std::exception& e) {
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(typeid(e).name(), nullptr, nullptr, nullptr), &std::free);
    return std::string(name.get()) + ": " + e.what();
  }
  return "nothing";
}

template <class T>
Bytes stored(T& object) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  archive || object;
  return bytes;
}

template <class T>
void load(T& object, const Bytes& bytes) {
  auto archive = rzArchive::loadingFrom(bytes);
  archive || object;
}

// Loading any true beginning of the bytes fails and leaves `untouched` as it was.
template <class T>
bool everyTruncationIsRefused(const Bytes& bytes, const T& untouched) {
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    T target = untouched;
    const Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
    if (failureOf([&] { load(target, cut); }) == "nothing" || target != untouched) return false;
  }
  return true;
}

// The present archive form of an alphabet, field by field, so that tables can be given at will.
inline Bytes alphabetBytes(Models models, bool isCompiled, rzNMMatrix matrix,
                           std::vector<std::vector<rzXform<2>>> offsets) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  unsigned char version = 1;
  std::string name = "by hand";
  double threshold = 0.5;
  archive || version;
  archive || name;
  archive || threshold;
  rf_SerializeHandles(archive, models);
  archive || isCompiled;
  archive || matrix;
  rf_SerializeVector(
      archive, offsets,
      [](rzArchive& a, std::vector<rzXform<2>>& row) { rf_SerializeVector(a, row, 1); }, 1);
  return bytes;
}

// A compiled alphabet in which confusion (i, j) is values[i][j] and the offset of i against j is a
// shift by (i, j).
inline rzPtrHandle<rzOCAlphabet> compiledAlphabet(const Models& models,
                                                  const std::vector<std::vector<double>>& values) {
  const rzLong n = rf_Count(models.size());
  rzNMMatrix matrix(n, n);
  std::vector<std::vector<rzXform<2>>> offsets(models.size());
  for (rzLong i = 0; i < n; ++i) {
    for (rzLong j = 0; j < n; ++j) {
      matrix.element(i, j, values.at(static_cast<std::size_t>(i)).at(static_cast<std::size_t>(j)));
      offsets[static_cast<std::size_t>(i)].push_back(shift(i, j));
    }
  }
  rzPtrHandle<rzOCAlphabet> alphabet(new rzOCAlphabet);
  load(*alphabet, alphabetBytes(models, true, matrix, offsets));
  return alphabet;
}
