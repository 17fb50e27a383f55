// SPDX-License-Identifier: Apache-2.0
//
// Pictures of one character among others, with known truth, and how a search in them is judged.
#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

#include "rz/cx_align.h"
#include "tests/support/print/scene.h"

namespace scene {

inline const std::u32string kCapitals = U"ABCDEFGHJKLMNOPQRSTUVWXYZ0123456789";
inline const std::u32string kMixed = U"ABDEGHKNRSTabdefghkmnpqrstuwxyz234579";

/// A glyph and the pattern that was trained on it.
struct Trained {
  char32_t code;
  rzVector<2> origin;  // of the outline, in client units of the training image, as all places are
  rzVector<2> centre;  // of the ink box
  double height;
  double width;
  rzPelBuffer<unsigned char> image;
  rzCXAlignPattern pattern;
};

/// Small glyphs are trained at double size.
Trained trainGlyph(const Font& font, char32_t code, double blur);

/// The full turn and scales from 0.9 to 1.1.
rzCXAlignRunParams searchParams(double accept, int count);

/// The pose of a glyph that was drawn at `place`.
rzXform<2> truthOf(const Trained& t, const Placement& place);

inline constexpr int kWidth = 640;
inline constexpr int kHeight = 480;

struct Picture {
  struct Shown {
    char32_t code;
    Placement place;
  };
  Canvas canvas;
  rzPelBuffer<unsigned char> image;
  std::vector<Shown> glyphs;
};

/// One of each of `codes` at random poses, apart from one another; of each of them the share
/// `covered` of its ink is taken away, from a random side.
Picture makePicture(const Font& font, const std::u32string& codes, const Look& look,
                    std::mt19937& random, int width = kWidth, int height = kHeight,
                    double covered = 0.0);

/// Looks the same, or nearly so, after half a turn.
bool isHalfTurned(char32_t code);

/// The share of the trained glyph's ink, where it was found or a little beside it, that is ink of
/// the picture as well.
double containedShare(const Font& font, const Trained& t, const rzCXAlignResult& result,
                      const Canvas& shown);
/// The share from which on a glyph counts as part of what is shown.
inline constexpr double kContained = 0.94;

std::string name(char32_t code);

/// What came of a number of searches.
struct Tally {
  int trials = 0;
  int found = 0;  // in the right place
  int exact = 0;  // within 0.25 pel and 0.5 degree
  int below7 = 0;
  int below8 = 0;
  int falseOnes = 0;  // at 0.7, elsewhere and not contained in what is there
  int close = 0;      // enter the sums of squares
  double sumPlace = 0.0, sumAngle = 0.0, sumScale = 0.0;
  std::vector<double> scores;
  std::map<char32_t, int> missed;         // or not exact
  std::map<std::string, int> confusions;  // at 0.7: "A<V" is an A seen in a V

  double share(int count) const { return static_cast<double>(count) / trials; }
  double placeRms() const;
  double angleRms() const;  // degrees
  double scaleRms() const;  // relative
  double score(double quantile);
};

void judge(const Font& font, const Trained& t, const Placement& place,
           const std::vector<rzCXAlignResult>& results, const Picture& picture, Tally& tally);

/// Searches for each of some characters in pictures of 640x480 pels with thirty others.
struct Trials {
  Look look;
  double covered = 0.0;  // share of each character's ink
  int pictures = 40;     // eight searches in each
  unsigned seed = 4711;
  double trainBlur = 0.0;
  double accept = 0.4;
};

Tally runTrials(const Font& font, const std::u32string& alphabet, const Trials& trials);

}  // namespace scene
