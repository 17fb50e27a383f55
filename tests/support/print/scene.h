// SPDX-License-Identifier: Apache-2.0
//
// Synthetic pictures of print with known truth, for measuring the pattern finder.
#pragma once

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "rz/pel_buffer.h"
#include "rz/xform.h"

namespace scene {

/// Ink coverage of a picture's pels, 0 to 1.
struct Canvas {
  int width = 0;
  int height = 0;
  std::vector<float> ink;
};

/// Where a glyph lies: the origin of its outline, turn in degrees, scale.
struct Placement {
  double x = 0.0;
  double y = 0.0;
  double degrees = 0.0;
  double scale = 1.0;
};

/// The extent of a glyph's ink in its own frame, pels, y downwards.
struct InkBox {
  double left = 0.0;
  double top = 0.0;
  double right = 0.0;
  double bottom = 0.0;
};

class Font {
 public:
  Font(const std::string& file, double sizePx);
  ~Font();
  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;

  /// The size at which capitals are `height` pels high.
  static double sizeForCapHeight(const std::string& file, double height);

  InkBox inkBox(char32_t code) const;
  /// Adds the glyph's exact area coverage.
  void draw(char32_t code, const Placement& place, Canvas& canvas) const;

 private:
  struct Face;
  std::unique_ptr<Face> face_;
};

struct Look {
  double ink = 40.0;
  double paper = 210.0;
  double blur = 0.7;
  double noise = 4.0;
  double ramp =
      30.0;  // grey levels that the light falls from the left upper corner to the right lower
};

rzPelBuffer<unsigned char> photograph(const Canvas& canvas, const Look& look, std::mt19937& random);

/// An upright glyph with a margin of three pels; `origin` becomes the place of its outline's
/// origin.
rzPelBuffer<unsigned char> trainingImage(const Font& font, char32_t code, double blur,
                                         rzVector<2>& origin);

}  // namespace scene
